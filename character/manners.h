#pragma once

#include <string>
#include <string_view>

namespace velmora {

/// How a character says hello: an animation (none if empty) and a line.
struct Greeting {
    std::string_view animation;
    std::string spoken;
};

/// The greeting of the character of that name, for that part of the day and user.
Greeting greetingOf(std::string_view character, std::string_view part, std::string_view user);

/// The farewell of the character of that name.
Greeting farewellOf(std::string_view character);

}  // namespace velmora
