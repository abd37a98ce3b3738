#include "core/file_dialogs.h"

#include <functional>
#include <optional>

#include "base/failure.h"

namespace velmora {
namespace {

const std::string filterEnd(2, '\0');

void choose(Dialogs& dialogs, const std::string& title, std::string& chosen,
            const std::function<std::optional<std::string>()>& ask) {
    try {
        if (auto path = ask()) {
            path->erase(0, path->find_first_not_of(' '));
            chosen = std::move(*path);
        }
    } catch (const Failure& failure) {
        dialogs.MsgBox(std::to_string(failure.number) + "\n" + failure.description, title,
                       BoxIcon::exclamation);
    }
}

}  // namespace

void FileDialogs::MyDialog(const std::string& Filter) {
    choose(dialogs_, "Dialog", DialogFile,
           [&] { return dialogs_.openFile("Open File", Filter + filterEnd); });
}

void FileDialogs::SaveDialog(const std::string& Filter) {
    choose(dialogs_, "Dialog [save]", DialogFile,
           [&] { return dialogs_.saveFile("Save File", Filter + filterEnd, "txt"); });
}

}  // namespace velmora
