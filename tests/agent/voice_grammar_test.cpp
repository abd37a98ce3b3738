#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "agent/voice_vocabulary.h"

namespace {

using namespace agent;
using testing::ElementsAre;

/// The score of the words under one grammar, 0 if they do not fit.
int score(std::string_view grammar, std::string_view words) {
    const auto heard = VoiceVocabulary({grammar}).recognise(words, [](std::size_t) { return true; });
    return heard ? heard->score : 0;
}

std::string repeated(std::string_view text, std::size_t times) {
    std::string whole;
    for (std::size_t i = 0; i < times; ++i) whole += text;
    return whole;
}

TEST(VoiceGrammarTest, SignsSayWhatMayBeSaid) {
    struct Case {
        std::string_view grammar;
        std::vector<std::string_view> fit;
        std::vector<std::string_view> others;
    };
    const Case cases[] = {
        {"[e]mail",
         {"email", "e mail", "mail", "MAIL", "  E\t mail "},
         {"", "e", "e mail e", "ma il", "xmail"}},
        {"[show|open]file[window|dialog]",
         {"file", "show file", "open file dialog", "file window", "showfile"},
         {"show open file", "show", "file window dialog", "file show"}},
        {"(move to|go to|follow)mouse[pointer|cursor]",
         {"move to mouse", "go to mouse cursor", "follow mouse pointer", "go tomouse"},
         {"mouse", "move mouse", "moveto mouse", "move to go to mouse"}},
        {"[open|show]a c o", {"a c o", "open a c o"}, {"aco", "a co", "open aco"}},
        {"tell [a] joke", {"tell joke", "tell a joke"}, {"tell an joke", "a joke"}},
        {"[start|new][inter net]search",
         {"search", "inter net search", "new inter net search"},
         {"internet search"}},
        {"a[b[c]](d|e[f])", {"a d", "a b d", "a b c e f", "abcef"}, {"a c d", "a b", "a d e"}},
        {"[[x]]", {"x"}, {"", "x x"}},
        {"ol\xc3\xa9 [\xff]", {"OL\xc3\x89", "ol\xe9", "ol\xc3\xa9 \xff", "OL\xc9 \xff"}, {"ole"}},
        {"\u0141\u00d3D\u0179 \u03a9\u0416", {"\u0142\u00f3d\u017a \u03c9\u0436"}, {"\u0142\u00f3d\u017a"}},
        {"\u0142 \u00d7 \u20ac", {"\u0141 \u00d7 \u20ac"}, {"\u0142 \u00f7 \u20ac"}},
    };
    for (const Case& expected : cases) {
        for (const auto words : expected.fit)
            EXPECT_EQ(score(expected.grammar, words), 100) << expected.grammar << ": " << words;
        for (const auto words : expected.others)
            EXPECT_EQ(score(expected.grammar, words), 0) << expected.grammar << ": " << words;
    }
}

TEST(VoiceGrammarTest, EachWordLeftToTheDotsCostsFiveDownToMinusFiftyNine) {
    constexpr std::string_view general = "[...]general[...]";
    EXPECT_EQ(score(general, "general"), 100);
    EXPECT_EQ(score(general, "the general menu please"), 85);
    EXPECT_EQ(score(general, "general general"), 95);
    EXPECT_EQ(score(general, repeated("um ", 31) + "general"), -55);
    EXPECT_EQ(score(general, repeated("um ", 32) + "general"), -59);
    EXPECT_EQ(score(general, "generals"), 0);  // a whole word or nothing
    EXPECT_EQ(score(general, "mygeneral"), 0);
    EXPECT_EQ(score("a [ ... ] b[...]", "a x b y b"), 85);
    // The fewest words are left over that can be, however it is divided.
    EXPECT_EQ(score("[...](net|inter net) menu[...]", "inter net menu"), 100);
    EXPECT_EQ(score("[...][a b c]x", "a b c x"), 100);
    EXPECT_EQ(score("[...]", "any thing"), 90);
}

TEST(VoiceGrammarTest, WhatIsNoGrammarIsTakenAsItsPlainWords) {
    for (const std::string_view text : {"[open", "open]", "(a|b", "a|b", "[a|]", "[|]", "()", "[]", "a()b",
                                        "(a]", "[a)", "|", "][", "[[]]", "(|a)", "C:\\x) run"}) {
        EXPECT_EQ(score(text, text), 100) << text;
        EXPECT_THAT(readVoiceGrammar(text).arcs.front().kind, VoiceArc::Kind::word) << text;
    }
    EXPECT_EQ(score("[|]", "x"), 0);
    EXPECT_EQ(score("(...)", "anything"), 0);
    for (const std::string_view nothing : {"", "  \t"}) EXPECT_EQ(score(nothing, nothing), 0);
}

TEST(VoiceGrammarTest, DepthAndSizeOnlyCostTime) {
    constexpr std::size_t deep = 50'000;
    EXPECT_EQ(score(repeated("[", 100) + "x" + repeated("]", 100), "x"), 100);
    EXPECT_EQ(score(repeated("(", deep) + "x" + repeated("]", deep), "x"), 0);
    EXPECT_EQ(score(repeated("(", deep) + "x" + repeated(")", deep), "x"), 100);

    const std::string text = repeated("word ", deep);
    EXPECT_EQ(score(text, text), 100);
    EXPECT_EQ(score("[...]general", text + "general"), -59);
    // Many ways to divide few words, and more work than is done.
    EXPECT_EQ(score(repeated("[a]", 300) + "[...]b", repeated("a ", 100) + "b"), 100);
    EXPECT_EQ(score(repeated("[a]", 5'000), repeated("a ", 4'000)), 0);
}

TEST(VoiceGrammarTest, FormTellsARecogniserItsWordsAndWhereTheyLead) {
    const VoiceForm form = readVoiceGrammar("[e]mail Now[...]");
    std::vector<std::string> arcs;
    for (const VoiceArc& arc : form.arcs) {
        constexpr const char* kinds[] = {"", "space", "empty", "any"};
        arcs.push_back(std::to_string(arc.from) + "-" + std::to_string(arc.to) + " " +
                       kinds[static_cast<std::size_t>(arc.kind)] + arc.word);
    }
    EXPECT_THAT(arcs, ElementsAre("0-1 empty", "0-3 empty", "1-2 e", "2-3 empty", "3-4 mail", "4-5 space",
                                  "5-6 now", "6-7 empty", "7-7 any"));
    EXPECT_EQ(form.last(), 7U);
}

TEST(VoiceVocabularyTest, BestScoreWinsAndOfEqualsTheEarlierCommand) {
    const VoiceVocabulary vocabulary({"[check][e]mail", "[new][e]mail", "[...]mail[...]", "mail",
                                      "(a|[b])[...]", "", "[c]", "[open] [d|e]"});
    std::vector<bool> listening(8, true);
    const auto heard = [&](std::string_view words) {
        const auto found =
            vocabulary.recognise(words, [&](std::size_t command) { return listening[command]; });
        return found ? std::pair(static_cast<int>(found->command), found->score) : std::pair(-1, 0);
    };
    EXPECT_EQ(heard("Mail"), std::pair(0, 100));
    EXPECT_EQ(heard("new mail"), std::pair(1, 100));
    EXPECT_EQ(heard("my mail"), std::pair(2, 95));
    EXPECT_EQ(heard("b now"), std::pair(4, 95));
    EXPECT_EQ(heard("what"), std::pair(4, 95));
    EXPECT_EQ(heard("c"), std::pair(6, 100));
    EXPECT_EQ(heard("d"), std::pair(7, 100));
    EXPECT_EQ(heard(" "), std::pair(-1, 0));
    listening = {false, true, true, true, false, true, true, true};
    EXPECT_EQ(heard("mail"), std::pair(1, 100));
    EXPECT_EQ(heard("check mail"), std::pair(2, 95));
    EXPECT_EQ(heard("what"), std::pair(-1, 0));
}

}  // namespace
