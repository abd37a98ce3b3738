#pragma once

#include <optional>
#include <string>

namespace velmora {

enum class BoxIcon { none, exclamation, information, question };
enum class BoxButtons { ok, yesNo };
enum class BoxAnswer { ok, yes, no };

/// Message boxes and file dialogs. A call returns when the person has answered; other events run meanwhile,
/// so several can be open, and the newest is answered first. Throws `Ended` when the program is over before
/// that.
class Dialogs {
public:
    virtual ~Dialogs() = default;

    virtual BoxAnswer MsgBox(const std::string& text, const std::string& title, BoxIcon icon = BoxIcon::none,
                             BoxButtons buttons = BoxButtons::ok) = 0;

    /// The path of the chosen file, which may be gone by the time it is used; nothing if the person cancels.
    /// `filter`: pairs of description and pattern, each ended by a NUL.
    virtual std::optional<std::string> openFile(const std::string& title, const std::string& filter) = 0;

    /// The path of a file to write, with the extension added if the person gave none.
    virtual std::optional<std::string> saveFile(const std::string& title, const std::string& filter,
                                                const std::string& extension) = 0;
};

}  // namespace velmora
