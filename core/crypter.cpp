#include "core/crypter.h"

#include <cstdint>

namespace velmora {
namespace {

constexpr int modulus = 255;

constexpr int wrapped(int value) {
    return value > modulus ? value - modulus : value;
}

int codeOf(char character) {
    return static_cast<unsigned char>(character);
}

/// The running sum behind the key, 0 to 255.
int sumOf(std::string_view key) {
    std::int64_t sum = 0;
    std::int64_t position = 0;
    for (const char character : key) {
        sum += ++position * codeOf(character);
        if (sum > modulus) sum -= modulus;
    }
    // The same as taking 255 away until at most 255 is left: a multiple of it ends at 255, not at 0.
    return static_cast<int>(sum > modulus ? (sum - 1) % modulus + 1 : sum);
}

}  // namespace

std::string Encipher(std::string_view text, std::string_view key) {
    std::string cipher;
    cipher.reserve(text.size());
    int sum = sumOf(key);
    for (const char character : text) {
        const int code = wrapped(sum + codeOf(character));
        cipher += static_cast<char>(code);
        sum = wrapped(sum + code);
    }
    return cipher;
}

std::string Decipher(std::string_view cipher, std::string_view key) {
    std::string text;
    text.reserve(cipher.size());
    int sum = sumOf(key);
    for (const char character : cipher) {
        const int code = codeOf(character) - sum;
        text += static_cast<char>(code < 0 ? code + modulus : code);
        sum = wrapped(sum + codeOf(character));
    }
    return text;
}

}  // namespace velmora
