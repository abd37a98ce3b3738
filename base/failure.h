#pragma once

#include <exception>
#include <string>
#include <type_traits>
#include <utility>

namespace velmora {

/// The numbers of the failures that the program's logic reacts to. Platform code throws these and no others.
namespace errors {
inline constexpr long invalidCall = 5;       ///< an argument outside what the call takes
inline constexpr long overflow = 6;          ///< a number outside its 16 bits
inline constexpr long typeMismatch = 13;     ///< a text that is no number, Boolean or date
inline constexpr long outOfStackSpace = 28;  ///< no memory for what has to be held
inline constexpr long fileNotFound = 53;
inline constexpr long pathFileAccess = 75;  ///< the file is there, but can't be used this way
inline constexpr long pathNotFound = 76;
inline constexpr long objectNotSet = 91;         ///< a call on an object that is not (or no longer) there
inline constexpr long noDdeAnswer = 282;         ///< no other program answers a question put to it
inline constexpr long cannotCreateObject = 429;  ///< a program or service to be driven is not there
inline constexpr long duplicateKey = 457;        ///< a collection already holds this key
inline constexpr long duplicateRowKey = 35602;   ///< a list control already holds a row with this key
inline constexpr long portNotPermitted = 10013;  ///< a port that only a privileged program may have
inline constexpr long messageTooLong = 10040;    ///< more than a datagram can hold
inline constexpr long addressInUse = 10048;
inline constexpr long addressNotAvailable = 10049;  ///< an empty or unusable address
inline constexpr long connectionTimedOut = 10060;
inline constexpr long connectionRefused = 10061;
inline constexpr long hostUnreachable = 10065;
inline constexpr long hostNotFound = 11001;
inline constexpr long malformedUrl = 35752;
inline constexpr long protocolNotSupported = 35753;
inline constexpr long transferNotConnected = 35754;
inline constexpr long transferIncomplete = 35756;
inline constexpr long transferTimedOut = 35761;
inline constexpr long stillExecuting = 35764;  ///< a transfer control that is asked for a second transfer
inline constexpr long wrongSocketState = 40006;
inline constexpr long characterUnavailable = static_cast<long>(0x80042002);
inline constexpr long characterRefuses = static_cast<long>(0x80042003);  ///< the character can't do this now
}  // namespace errors

/// A failing statement. Its number is what the logic reacts to; description and source are what a box shows.
struct Failure : std::exception {
    /// `description` empty: the standing text for the number. `source` names the part of the program that
    /// failed.
    explicit Failure(long number_, std::string description_ = {}, std::string source_ = "Velmora");

    const char* what() const noexcept override { return description.c_str(); }

    long number;
    std::string source;
    std::string description;
};

/// The standing text for an error number, "Application-defined error" for one that has none.
std::string describe(long number);

/// How a handler goes on after a failure, or a step after itself.
enum class After { next, leave };

namespace detail {
template <class Step>
After run(Step&& step) {
    if constexpr (std::is_same_v<decltype(step()), After>) {
        return step();
    } else {
        step();
        return After::next;
    }
}
}  // namespace detail

/// Runs the steps in order; one that fails is told to `handler(const Failure&)`, which says whether the next
/// one runs. A step may itself answer `After::leave`. Whatever is no `Failure` (a bug, the end of the
/// program) goes through.
template <class Handler, class... Steps>
void guarded(Handler&& handler, Steps&&... steps) {
    const auto attempt = [&](auto&& step) {
        try {
            return detail::run(step) == After::next;
        } catch (const Failure& failure) {
            return handler(failure) == After::next;
        }
    };
    static_cast<void>((attempt(steps) && ...));
}

/// Runs the steps in order; one that fails is passed over and the next one runs.
template <class... Steps>
void passOver(Steps&&... steps) {
    guarded([](const Failure&) { return After::next; }, std::forward<Steps>(steps)...);
}

}  // namespace velmora
