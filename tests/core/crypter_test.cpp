#include "core/crypter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>

namespace velmora {
namespace {

std::string everyByte() {
    std::string bytes;
    for (int code = 0; code < 256; ++code) bytes += static_cast<char>(code);
    return bytes;
}

TEST(Crypter, GivesTheKnownCodes) {
    EXPECT_EQ(Encipher("Hi there", "abc"), "\x98\x52\x5B\x0B\x0A\x11\x2F\x51");
    EXPECT_EQ(Decipher("\x98\x52\x5B\x0B\x0A\x11\x2F\x51", "abc"), "Hi there");
    EXPECT_EQ(Encipher("A", ""), "A");
    EXPECT_EQ(Encipher("", mainKey), "");
}

TEST(Crypter, GivesTheSameCodesForEveryKeyLengthAndByteAsItAlwaysDid) {
    unsigned long sum = 0;
    std::string key;
    for (int length = 0; length < 300; ++length) {
        for (const unsigned char code : Encipher(everyByte(), key)) sum = (sum * 31 + code) % 1'000'000'007;
        key += static_cast<char>(length * 7);
    }
    EXPECT_EQ(sum, 739'155'415U);
}

TEST(Crypter, LosesCode255Only) {
    for (const auto key : {mainKey, userListKey, std::string_view("abc"), std::string_view()}) {
        const auto back = Decipher(Encipher(everyByte(), key), key);
        EXPECT_EQ(back.substr(0, 255), everyByte().substr(0, 255));
    }
    EXPECT_EQ(Decipher(Encipher("a\xFF", mainKey), mainKey), std::string("a\0", 2));
}

TEST(Crypter, HasKeysOfLettersAndDigits) {
    for (const auto key : {mainKey, userListKey}) {
        EXPECT_TRUE(
            std::all_of(key.begin(), key.end(), [](unsigned char c) { return std::isalnum(c) != 0; }));
    }
    // What was enciphered once must decipher in every later build.
    EXPECT_EQ(Encipher("Velmora", mainKey), "\x60\xCF\xA6\x4E\x9E\x40\x6F");
    EXPECT_EQ(Encipher("Velmora", userListKey), "\x5F\xCD\xA2\x46\x8E\x20\x2F");
}

}  // namespace
}  // namespace velmora
