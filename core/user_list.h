#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class Files;

/// The user list: one line per user, first name, ":" and password, each line enciphered on its own.
class UserList {
public:
    /// The list's name in the application folder.
    static constexpr std::string_view fileName = "Users.vlu";

    /// `files` must outlive this object; `file` is the whole path.
    UserList(Files& files, std::string file);

    /// The deciphered lines in file order, lines that are rubbish included. Fails with 53 if there is no
    /// list, 75, 76.
    std::vector<std::string> read() const;

    /// Replaces the list by `encode(entries)`, readable by its owner only. Fails with 75, 76.
    void write(const std::vector<std::string>& entries);

    /// The deciphered lines of a list's content.
    static std::vector<std::string> decode(std::string_view content);

    /// The content of a list of these entries. Neighbours that are equal become one, and an empty first entry
    /// is left out; both are meant, as is that an entry whose cipher holds a line end reads back as two.
    static std::string encode(const std::vector<std::string>& entries);

private:
    Files& files_;
    std::string file_;
};

/// The first name in an entry, the text before its first ":"; nothing for an entry without one.
std::optional<std::string_view> firstNameOf(std::string_view entry);

}  // namespace velmora
