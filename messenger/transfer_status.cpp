#include "messenger/transfer_status.h"

#include <algorithm>
#include <array>

namespace velmora {
namespace {

struct Status {
    TransferState state;
    std::string_view text;
};

constexpr std::array statuses{
    Status{TransferState::resolvingHost, "Resolving Host"},
    Status{TransferState::hostResolved, "Host Resolved"},
    Status{TransferState::connecting, "Connecting"},
    Status{TransferState::connected, "Connected"},
    Status{TransferState::requesting, "Requesting"},
    Status{TransferState::requestSent, "Request Sent"},
    Status{TransferState::receivingResponse, "Recieving Response"},
    Status{TransferState::responseReceived, "Response Recieved"},
    Status{TransferState::disconnecting, "Disconnecting"},
    Status{TransferState::disconnected, "Disconnected"},
    Status{TransferState::error, "Error !"},
    Status{TransferState::complete, "Complete"},
};

}  // namespace

std::optional<std::string_view> transferStatus(TransferState state) {
    const auto* found = std::find_if(statuses.begin(), statuses.end(),
                                     [state](const Status& status) { return status.state == state; });
    return found == statuses.end() ? std::nullopt : std::optional(found->text);
}

}  // namespace velmora
