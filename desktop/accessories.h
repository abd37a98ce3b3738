#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/agent_control.h"
#include "platform/machine_settings.h"
#include "platform/menu.h"

namespace velmora {

/// The entries of the main menu that start a program of the desktop: the accessories, each with a word from
/// the character first, and a new mail.
class Accessories {
public:
    struct Needs {
        std::function<Menu&(std::string_view)> menu;
        const MachineSettings& machine;
        std::function<AgentCharacter&()> Character;  ///< fails with 91 while there is none
        std::function<void(const std::string&)> Execute;
    };
    explicit Accessories(Needs needs);

    void MnuEMail_Click();

private:
    Needs needs_;
};

}  // namespace velmora
