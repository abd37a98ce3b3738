#pragma once

#include "character/command_lists.h"
#include "platform/agent_control.h"

namespace velmora {

/// Teaches the character every command of the program, those of the user's two lists among them. What fails
/// (a name that is taken already) is passed over.
void InitCommands(AgentCommands& commands, const CommandLists& lists);

}  // namespace velmora
