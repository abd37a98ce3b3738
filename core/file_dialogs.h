#pragma once

#include <string>

#include "platform/dialogs.h"

namespace velmora {

/// The system's file dialogs as the whole program uses them.
class FileDialogs {
public:
    explicit FileDialogs(Dialogs& dialogs) : dialogs_(dialogs) {}

    /// The path that was chosen last, without blanks in front. A dialog that is cancelled leaves it as it
    /// was, so that whoever does not compare acts on the earlier choice once more: this is meant.
    std::string DialogFile;

    /// Asks for an existing file. `Filter`: pairs of description and pattern with a NUL between any two of
    /// them. A failure is told in a box.
    void MyDialog(const std::string& Filter);
    /// Asks for a file to write; without an extension it gets "txt".
    void SaveDialog(const std::string& Filter);

private:
    Dialogs& dialogs_;
};

}  // namespace velmora
