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
    Description{errors::fileNotFound, "File not found"},
    Description{errors::pathFileAccess, "Path/File access error"},
    Description{errors::pathNotFound, "Path not found"},
    Description{errors::objectNotSet, "Object variable not set"},
    Description{errors::duplicateKey, "This key is already associated with an element of this collection"},
    Description{errors::duplicateRowKey, "Key is not unique in collection"},
    Description{errors::wrongSocketState,
                "Wrong protocol or connection state for the requested transaction or request"},
    Description{errors::addressInUse, "Address in use"},
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
