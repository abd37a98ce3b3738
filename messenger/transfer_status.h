#pragma once

#include <optional>
#include <string_view>

#include "platform/inet.h"

namespace velmora {

/// What a status line says at that state of a transfer; nothing for a state that leaves the line as it is.
std::optional<std::string_view> transferStatus(TransferState state);

}  // namespace velmora
