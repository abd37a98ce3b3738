#pragma once

#include <map>
#include <set>
#include <string>

#include "platform/files.h"

namespace velmora {

/// The file system of a simulated machine. The folder "/" and the current one ("") exist from the start.
class InMemoryFiles final : public Files {
public:
    bool exists(const std::string& path) const override;
    std::string read(const std::string& path) const override;
    void replace(const std::string& path, std::string_view content, Privacy privacy) override;
    void remove(const std::string& path) override;
    std::vector<std::string> list(const std::string& folder, std::string_view ending) const override;

    /// Makes a folder and those above it.
    void createFolder(const std::string& path);

    /// Puts a file there as someone else would, its folders included; counts as no write.
    void put(const std::string& path, std::string content);

    /// The file refuses to be replaced from now on, as one without write permission does.
    void makeReadOnly(const std::string& path);

    /// The file refuses to be read from now on, as one without read permission does.
    void makeUnreadable(const std::string& path);

    /// The `number`th `replace` or `remove` from now (1 is the next one) fails with 75 and changes nothing.
    void failWrite(int number);

    /// How many calls of `replace` and `remove` there have been, failed ones included.
    int writes() const { return writes_; }

    /// Who may read the file; `shared` for one that was only `put`.
    Privacy privacyOf(const std::string& path) const;

private:
    struct File {
        std::string content;
        Privacy privacy = Privacy::shared;
        bool readOnly = false;
        bool unreadable = false;
    };

    const File& find(const std::string& path) const;
    void countWrite();

    std::map<std::string, File> files_;
    std::set<std::string> folders_{"", "/"};
    int writes_ = 0;
    int failingWrite_ = 0;
};

}  // namespace velmora
