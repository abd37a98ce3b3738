#include "base/failure.h"

#include <algorithm>
#include <array>

namespace velmora {
namespace {

struct Description {
    long number;
    const char* text;
};

constexpr std::array descriptions{
    Description{errors::invalidCall, "Invalid procedure call or argument"},
    Description{errors::overflow, "Overflow"},
    Description{errors::typeMismatch, "Type mismatch"},
    Description{errors::outOfStackSpace, "Out of stack space"},
    Description{errors::fileNotFound, "File not found"},
    Description{errors::pathFileAccess, "Path/File access error"},
    Description{errors::pathNotFound, "Path not found"},
    Description{errors::objectNotSet, "Object variable not set"},
    Description{errors::noDdeAnswer, "No program answers"},
    Description{errors::cannotCreateObject, "The program can't be started or reached"},
    Description{errors::duplicateKey, "This key is already associated with an element of this collection"},
    Description{errors::duplicateRowKey, "Key is not unique in collection"},
    Description{errors::portNotPermitted, "This user may not use the port"},
    Description{errors::messageTooLong, "The message is too long for a datagram"},
    Description{errors::addressInUse, "Address in use"},
    Description{errors::addressNotAvailable, "The address is not available"},
    Description{errors::connectionTimedOut, "The connection has timed out"},
    Description{errors::connectionRefused, "The connection was refused"},
    Description{errors::hostUnreachable, "There is no way to the host"},
    Description{errors::hostNotFound, "Host not found"},
    Description{errors::malformedUrl, "The URL is malformed"},
    Description{errors::protocolNotSupported, "The protocol is not supported"},
    Description{errors::transferNotConnected, "Unable to connect to the remote host"},
    Description{errors::transferIncomplete, "Unable to complete the request"},
    Description{errors::transferTimedOut, "The request has timed out"},
    Description{errors::stillExecuting, "Still executing the last request"},
    Description{errors::wrongSocketState,
                "Wrong protocol or connection state for the requested transaction or request"},
    Description{errors::characterUnavailable, "The character can't be loaded"},
    Description{errors::characterRefuses, "The character can't do this now"},
};

}  // namespace

std::string describe(long number) {
    const auto* found = std::find_if(descriptions.begin(), descriptions.end(),
                                     [number](const Description& row) { return row.number == number; });
    return found == descriptions.end() ? "Application-defined error" : found->text;
}

Failure::Failure(long number_, std::string description_, std::string source_)
    : number(number_),
      source(std::move(source_)),
      description(description_.empty() ? describe(number_) : std::move(description_)) {}

}  // namespace velmora
