#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/failure.h"
#include "core/file_dialogs.h"
#include "platform/agent_control.h"
#include "platform/dialogs.h"
#include "platform/files.h"
#include "platform/menu.h"

namespace velmora {

/// What the file dialogs offer for action scripts.
inline std::string actionScriptFilter() {
    return {"Action Scripts\0*.vls", 20};
}

/// The lines of an action script, which a CR or a CRLF ends and a lone LF does not; the last may lack its
/// line end. They stand in `content`. Fails with 6 for more than 32,767 lines: 16 bits count them.
std::vector<std::string_view> scriptLines(std::string_view content);

/// Action scripts: files of lines that the character says and plays, one after the other.
class ActionScripts {
public:
    struct Needs {
        Menu& mnuScriptOpen;
        FileDialogs& fileDialogs;
        const Files& files;
        Dialogs& dialogs;
        std::function<AgentCharacter&()> Character;  ///< fails with 91 while there is none
        std::function<void()> AgentVisible;
    };
    explicit ActionScripts(Needs needs);

    /// Lets the person choose a script, and runs it.
    void mnuScriptOpen_Click();

    /// Hands every line of the file to the character, which performs them later. A line that fails is told,
    /// and the next one has its turn; so is a file that can't be read.
    void run(const std::string& path);

    /// Tells what has failed in a box, unless the character refused it, and answers to go on.
    After failed(const Failure& failure);

private:
    void perform(std::string_view line);

    Needs needs_;
};

}  // namespace velmora
