#include "platform/qt/text.h"

#include <gtest/gtest.h>

using namespace velmora::qt;
using namespace std::string_view_literals;

TEST(ShownText, IsUtf8OrElseWindows1252AndHoldsNoControlCharacters) {
    const std::pair<std::string_view, QStringView> cases[]{
        {"plain"sv, u"plain"},
        {"caf\xc3\xa9"sv, u"café"},
        {"caf\xe9"sv, u"café"},
        {"\x80uro \x93quoted\x94"sv, u"€uro “quoted”"},
        {"cut \xe2\x82"sv, u"cut â‚"},
        {"\xed\xa0\x80"sv, u"í\u00a0€"},
        {"\xf0\x9f\xa7\x99"sv, u"🧙"},
        {"one\r\ntwo\rthree\nfour\tfive"sv, u"one\ntwo\nthree\nfour\tfive"},
        {"a\0b\x1b[31m\x7f"sv, u"ab[31m"},
        {"\xef\xbb\xbfmark"sv, u"\ufeffmark"},
        {"not assigned \x81\xff"sv, u"not assigned ÿ"},
    };
    for (const auto& [bytes, text] : cases) EXPECT_EQ(shown(bytes), text) << bytes;
}

TEST(ShownText, PlacesAreTheSameInBytesAndCharacters) {
    struct Case {
        std::string_view bytes;
        std::size_t byte;
        int character;
    };
    const Case cases[]{
        {"caf\xc3\xa9s", 3, 3},
        {"caf\xc3\xa9s", 5, 4},
        {"caf\xe9s", 4, 4},
        {"a\r\nb", 3, 2},
        {"\xf0\x9f\xa7\x99 wizard", 4, 2},
        {"a\x01z", 2, 1},
        {"end", 3, 3},
        {"\xe2\x82\xac!", 3, 1},
        {"", 0, 0},
    };
    for (const auto& [bytes, byte, character] : cases) {
        EXPECT_EQ(shownOffset(bytes, byte), character) << bytes;
        EXPECT_EQ(byteOffset(bytes, character), byte) << bytes;
    }
    EXPECT_EQ(shownOffset("short", 99), 5);
    EXPECT_EQ(byteOffset("short", 99), 5U);
}
