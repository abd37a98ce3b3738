#include "core/crypter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>

namespace velmora {
namespace {

/// The cipher written the long way, one step per line of its rule.
std::string encipheredStepByStep(const std::string& text, const std::string& key) {
    long sum = 0;
    for (std::size_t i = 1; i <= key.size(); ++i) {
        sum = sum + static_cast<long>(i) * static_cast<unsigned char>(key[i - 1]);
        if (sum > 255) sum = sum - 255;
    }
    while (sum > 255) sum = sum - 255;
    std::string result;
    for (const char character : text) {
        long code = sum + static_cast<unsigned char>(character);
        if (code > 255) code = code - 255;
        result += static_cast<char>(code);
        sum = sum + code;
        if (sum > 255) sum = sum - 255;
    }
    return result;
}

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

TEST(Crypter, FollowsTheRuleForEveryKeyLengthAndByte) {
    std::string key;
    for (int length = 0; length < 300; ++length) {
        EXPECT_EQ(Encipher(everyByte(), key), encipheredStepByStep(everyByte(), key)) << length;
        key += static_cast<char>(length * 7);
    }
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
