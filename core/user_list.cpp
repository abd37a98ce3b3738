#include "core/user_list.h"

#include <utility>

#include "base/text.h"
#include "core/crypter.h"
#include "platform/files.h"

namespace velmora {

UserList::UserList(Files& files, std::string file) : files_(files), file_(std::move(file)) {}

std::vector<std::string> UserList::read() const {
    return decode(files_.read(file_));
}

void UserList::write(const std::vector<std::string>& entries) {
    files_.replace(file_, encode(entries), Privacy::ownersOnly);
}

std::vector<std::string> UserList::decode(std::string_view content) {
    std::vector<std::string> entries;
    for (const auto line : splitLines(content)) entries.push_back(Decipher(line, userListKey));
    return entries;
}

std::string UserList::encode(const std::vector<std::string>& entries) {
    std::string content;
    std::string_view previous;
    for (const auto& entry : entries) {
        if (entry == previous) continue;
        content.append(Encipher(entry, userListKey)).append("\n");
        previous = entry;
    }
    return content;
}

std::optional<std::string_view> firstNameOf(std::string_view entry) {
    const auto colon = entry.find(':');
    if (colon == std::string_view::npos) return std::nullopt;
    return entry.substr(0, colon);
}

}  // namespace velmora
