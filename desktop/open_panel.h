#pragma once

#include <functional>
#include <string>

#include "core/file_dialogs.h"
#include "platform/agent_control.h"
#include "platform/controls.h"
#include "platform/menu.h"

namespace velmora {

/// The panel that opens any file, program or address.
class OpenPanel {
public:
    struct Needs {
        TextBox& txtOpenFile;
        Button& cmdOpenBrowse;
        Button& cmdOpenGo;
        Menu& mnuOpenFile;
        FileDialogs& dialogs;
        std::function<AgentCharacter&()> Character;  ///< fails with 91 while there is none
        std::function<void(const std::string&)> Execute;
        std::function<void()> show;  ///< the window, with this panel
    };
    explicit OpenPanel(Needs needs);

    void mnuOpenFile_Click();
    void cmdOpenBrowse_Click();
    void cmdOpenGo_Click();

private:
    Needs needs_;
};

}  // namespace velmora
