#include "agent/hearing/phones.h"

#include <gtest/gtest.h>

#include "agent/hearing/sound_out.h"

namespace {

using namespace agent;

TEST(Phones, ReadsTheSignsOfTheSynthesiserLongestFirst) {
    const struct {
        const char* ipa;
        const char* phones;
    } cases[] = {
        {"tʃˈɛk", "CH EH K"},          {"kˈaʊ", "K AW"},      {"dʒˈəʊk", "JH OW K"},
        {"wˈɜːdpæd", "W ER D P AE D"}, {"(de)ʁ(en)", "R"},    {"", ""},
        {"123 ??? \xff\xfe", ""},      {"(never closed", ""}, {"bˈʌʔn̩", "B AH T AH N"},
    };
    for (const auto& c : cases) EXPECT_EQ(phoneText(phonesFromIpa(c.ipa)), c.phones) << c.ipa;
}

TEST(Phones, SoundsOutWordsThatNoDictionaryHas) {
    const SoundOut soundOut = soundOutByVoice();
    EXPECT_EQ(phoneText(soundOut("wordpad")), "W ER D P AE D");
    EXPECT_FALSE(soundOut("zx81").empty());
    EXPECT_FALSE(soundOut("Gr\xfc\xdf").empty());
    EXPECT_TRUE(soundOut("").empty());
    EXPECT_LE(soundOut(std::string(100'000, 'a')).size(), 1000U);
}

TEST(Phones, AreTheLessAlikeTheFurtherApartTheyAreSpoken) {
    const auto difference = [](const char* left, const char* right) {
        return phoneDifference(readPhones(left).at(0), readPhones(right).at(0));
    };
    EXPECT_EQ(difference("M", "M"), 0);
    EXPECT_LT(difference("M", "N"), difference("M", "K"));
    EXPECT_LT(difference("M", "K"), difference("M", "AA"));
}

}  // namespace
