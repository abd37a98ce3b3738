#include "character/manners.h"

#include <algorithm>
#include <array>

namespace velmora {
namespace {

// In a greeting, % stands for the part of the day and @ for the user's name.
struct Manners {
    std::string_view character;
    std::string_view helloAnimation;
    std::string_view hello;
    std::string_view goodbyeAnimation;
    std::string_view goodbye;
};

// The last row is for any other character; that no blank goes before its name is meant.
constexpr std::array manners{
    Manners{"Genie", "Greet", "Hello master", "Sad", "Goodbye master."},
    Manners{"Merlin", "Wave", "% @.", "Confused", "Are we finished already?"},
    Manners{"Robby", "Wave", "Hi @!", "Sad", "Goodbye"},
    Manners{"Peedy", "Wave", "Hi @.", "Sad", "OK, bye"},
    Manners{"", "", "Good %@!", "", "Goodbye"},
};

const Manners& mannersOf(std::string_view character) {
    const auto* found = std::find_if(manners.begin(), manners.end() - 1,
                                     [character](const Manners& row) { return row.character == character; });
    return *found;
}

}  // namespace

Greeting greetingOf(std::string_view character, std::string_view part, std::string_view user) {
    const Manners& row = mannersOf(character);
    Greeting greeting{row.helloAnimation, {}};
    for (const char sign : row.hello) {
        switch (sign) {
            case '%':
                greeting.spoken += part;
                break;
            case '@':
                greeting.spoken += user;
                break;
            default:
                greeting.spoken += sign;
        }
    }
    return greeting;
}

Greeting farewellOf(std::string_view character) {
    const Manners& row = mannersOf(character);
    return {row.goodbyeAnimation, std::string(row.goodbye)};
}

}  // namespace velmora
