#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace velmora {

/// The numbers are what a status line's table is looked up by.
enum class TransferState {
    none = 0,
    resolvingHost = 1,
    hostResolved = 2,
    connecting = 3,
    connected = 4,
    requesting = 5,
    requestSent = 6,
    receivingResponse = 7,
    responseReceived = 8,
    disconnecting = 9,
    disconnected = 10,
    error = 11,
    complete = 12,
};

/// A web transfer control: one HTTP `GET` at a time. Not to be destroyed while `OpenURL` is on the stack
/// (`Loop::retire`).
class Inet {
public:
    virtual ~Inet() = default;

    /// Fetches the address and gives the whole body, byte for byte, whatever the server's status: the page of
    /// an error is a body too. Redirections are followed. Returns when the body is complete; other events run
    /// meanwhile. Throws `Ended` when the program is over before that.
    ///
    /// http and https; an address without a scheme means http. The address goes out as it is: of its
    /// characters only those that would break a request line (blanks, controls, bytes above 126) are escaped,
    /// and a '#' behind the '?'. A fragment ("#part") in front of one stays behind, and so do blanks around
    /// the address.
    ///
    /// Fails at once with 35764 while a transfer of this control is under way, 35752 for an address without a
    /// host, 35753 for another scheme; later with 35754 if the host can't be reached or its certificate does
    /// not hold, 35756 if the answer is broken, cut short or longer than the platform takes, 35761 after 60
    /// seconds without a byte.
    virtual std::string OpenURL(const std::string& url) = 0;
    std::string OpenURL() { return OpenURL(URL); }

    /// Whether a transfer is under way. False as soon as the transfer is over, even if its `OpenURL` can't
    /// return yet because a handler that waits is above it on the stack.
    virtual bool StillExecuting() const = 0;

    /// The header's value in the answer to the latest `OpenURL` that began, its name in any case. Empty if
    /// the answer lacks it, if there is no answer yet, or if the transfer failed.
    virtual std::string GetHeader(std::string_view name) const = 0;

    /// The address that `OpenURL` without an argument fetches.
    std::string URL;

    /// How far the transfer is, each state in a turn of its own, ascending; states that the transport does
    /// not tell are left out. The last is `complete` or `error`, and comes before `OpenURL` returns or fails.
    /// A transfer that fails at once raises nothing.
    std::function<void(TransferState)> StateChanged;
};

/// Makes transfer controls. They belong to the caller, and do not outlive what made them.
class Inets {
public:
    virtual ~Inets() = default;
    virtual std::unique_ptr<Inet> create() = 0;
};

}  // namespace velmora
