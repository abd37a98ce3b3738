#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace agent {

/// A sound of English: a row of the acoustic model's 39, counted from 0.
using Phone = std::uint8_t;
using Phones = std::vector<Phone>;

/// The sounds by the names that the acoustic model gives them ("AA" to "ZH"), in the order of their numbers.
const std::vector<std::string_view>& phoneNames();

/// Sounds from names with blanks between them ("CH EH K"). Unknown names are left out.
Phones readPhones(std::string_view names);
/// The reverse of `readPhones`.
std::string phoneText(const Phones& phones);

/// How unlike two sounds are to the ear: 0 for the same, up to 1.
double phoneDifference(Phone left, Phone right);

/// The sounds of a text in the International Phonetic Alphabet (UTF-8), as an English synthesiser writes it.
/// Stress, length and whatever is no sound of English are left out.
Phones phonesFromIpa(std::string_view ipa);

}  // namespace agent
