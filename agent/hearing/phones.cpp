#include "agent/hearing/phones.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

namespace agent {
namespace {

/// Sounds that a recogniser takes for one another share a family.
struct Sound {
    std::string_view name;
    int family;
};

enum Family : int { openVowels, frontVowels, roundVowels, stops, voicedStops, hisses, nasals, glides };

constexpr std::array sounds{
    Sound{"AA", openVowels},  Sound{"AE", openVowels},  Sound{"AH", openVowels},  Sound{"AO", roundVowels},
    Sound{"AW", openVowels},  Sound{"AY", openVowels},  Sound{"B", voicedStops},  Sound{"CH", hisses},
    Sound{"D", voicedStops},  Sound{"DH", voicedStops}, Sound{"EH", frontVowels}, Sound{"ER", roundVowels},
    Sound{"EY", frontVowels}, Sound{"F", stops},        Sound{"G", voicedStops},  Sound{"HH", stops},
    Sound{"IH", frontVowels}, Sound{"IY", frontVowels}, Sound{"JH", hisses},      Sound{"K", stops},
    Sound{"L", glides},       Sound{"M", nasals},       Sound{"N", nasals},       Sound{"NG", nasals},
    Sound{"OW", roundVowels}, Sound{"OY", roundVowels}, Sound{"P", stops},        Sound{"R", glides},
    Sound{"S", hisses},       Sound{"SH", hisses},      Sound{"T", stops},        Sound{"TH", stops},
    Sound{"UH", roundVowels}, Sound{"UW", roundVowels}, Sound{"V", voicedStops},  Sound{"W", glides},
    Sound{"Y", glides},       Sound{"Z", hisses},       Sound{"ZH", hisses},
};

bool isVowel(Phone phone) {
    return sounds.at(phone).family <= roundVowels;
}

struct Sign {
    std::string_view ipa;
    std::string_view phones;
};

// Longer signs stand before their own beginnings.
constexpr std::array signs{
    Sign{"aɪ", "AY"},  Sign{"aʊ", "AW"},    Sign{"eɪ", "EY"},  Sign{"oʊ", "OW"}, Sign{"əʊ", "OW"},
    Sign{"ɔɪ", "OY"},  Sign{"iə", "IY AH"}, Sign{"oː", "AO"},  Sign{"tʃ", "CH"}, Sign{"dʒ", "JH"},
    Sign{"n̩", "AH N"}, Sign{"l̩", "AH L"},   Sign{"m̩", "AH M"}, Sign{"ɑ", "AA"},  Sign{"ɒ", "AA"},
    Sign{"æ", "AE"},   Sign{"a", "AE"},     Sign{"ʌ", "AH"},   Sign{"ə", "AH"},  Sign{"ɐ", "AH"},
    Sign{"ɔ", "AO"},   Sign{"ɛ", "EH"},     Sign{"e", "EH"},   Sign{"ɚ", "ER"},  Sign{"ɝ", "ER"},
    Sign{"ɜ", "ER"},   Sign{"ɪ", "IH"},     Sign{"ᵻ", "IH"},   Sign{"ɨ", "IH"},  Sign{"i", "IY"},
    Sign{"o", "OW"},   Sign{"ʊ", "UH"},     Sign{"u", "UW"},   Sign{"y", "UW"},  Sign{"ø", "ER"},
    Sign{"b", "B"},    Sign{"d", "D"},      Sign{"ð", "DH"},   Sign{"f", "F"},   Sign{"ɡ", "G"},
    Sign{"g", "G"},    Sign{"h", "HH"},     Sign{"ç", "HH"},   Sign{"k", "K"},   Sign{"x", "K"},
    Sign{"q", "K"},    Sign{"l", "L"},      Sign{"ɬ", "L"},    Sign{"ɫ", "L"},   Sign{"m", "M"},
    Sign{"n", "N"},    Sign{"ɲ", "N Y"},    Sign{"ŋ", "NG"},   Sign{"p", "P"},   Sign{"ɹ", "R"},
    Sign{"r", "R"},    Sign{"ʁ", "R"},      Sign{"s", "S"},    Sign{"ʃ", "SH"},  Sign{"t", "T"},
    Sign{"ɾ", "T"},    Sign{"ʔ", "T"},      Sign{"θ", "TH"},   Sign{"v", "V"},   Sign{"β", "V"},
    Sign{"w", "W"},    Sign{"ʍ", "W"},      Sign{"j", "Y"},    Sign{"z", "Z"},   Sign{"ʒ", "ZH"},
};

std::optional<Phone> phoneNamed(std::string_view name) {
    const auto found = std::ranges::lower_bound(sounds, name, {}, &Sound::name);
    if (found == sounds.end() || found->name != name) return {};
    return static_cast<Phone>(found - sounds.begin());
}

}  // namespace

const std::vector<std::string_view>& phoneNames() {
    static const std::vector<std::string_view> names = [] {
        std::vector<std::string_view> all;
        all.reserve(sounds.size());
        for (const Sound& sound : sounds) all.push_back(sound.name);
        return all;
    }();
    return names;
}

Phones readPhones(std::string_view names) {
    Phones phones;
    while (!names.empty()) {
        const auto end = std::min(names.find(' '), names.size());
        if (const auto phone = phoneNamed(names.substr(0, end))) phones.push_back(*phone);
        names.remove_prefix(std::min(end + 1, names.size()));
    }
    return phones;
}

std::string phoneText(const Phones& phones) {
    std::string text;
    for (const Phone phone : phones) text.append(text.empty() ? "" : " ").append(sounds.at(phone).name);
    return text;
}

double phoneDifference(Phone left, Phone right) {
    constexpr double sameFamily = 0.5;
    constexpr double sameKind = 0.8;
    if (left == right) return 0;
    if (sounds.at(left).family == sounds.at(right).family) return sameFamily;
    return isVowel(left) == isVowel(right) ? sameKind : 1;
}

Phones phonesFromIpa(std::string_view ipa) {
    Phones phones;
    while (!ipa.empty()) {
        if (ipa.front() == '(') {  // the synthesiser says that it changes its language
            ipa.remove_prefix(std::min(ipa.find(')'), ipa.size() - 1) + 1);
            continue;
        }
        const auto sign = std::ranges::find_if(
            signs, [ipa](const Sign& candidate) { return ipa.starts_with(candidate.ipa); });
        if (sign == signs.end()) {
            ipa.remove_prefix(1);
            continue;
        }
        for (const Phone phone : readPhones(sign->phones)) phones.push_back(phone);
        ipa.remove_prefix(sign->ipa.size());
    }
    return phones;
}

}  // namespace agent
