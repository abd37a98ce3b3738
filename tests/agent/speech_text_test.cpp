#include "agent/speech_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "agent/bytes.h"

namespace {

using namespace agent;

std::string spoken(const SpokenLine& line) {
    std::string all;
    for (const auto& word : line.words) all += "[" + word.spoken + "]";
    return all;
}

TEST(SpeechText, TagsAreNeitherShownNorSaidAndMapSaysOneTextAndShowsTheOther) {
    struct Case {
        std::string text, shown, said;
    };
    const std::vector<Case> cases = {
        {"Good  day", "Good  day", "[Good][day]"},
        {R"(\Map="see you"="CU"\ later)", "CU later", "[see you][later]"},
        {R"((\MAP="a"="b c"\).)", "(b c).", "[(a).]"},
        {R"(\map=""="shown"\\Map="said"=""\)", "shown", "[said]"},
        {R"(One\Pau=200\two \Emp\three\RST\)", "Onetwo three", "[Onetwo][three]"},
        {R"(\Chr="whisper"\\Ctx="E-mail"\\Lst\\Mrk=7\\Pit=90\\Spd=120\\Vol=65535\x)", "x", "[x]"},
        {R"(\\Emp\\)", R"(\Emp\)", R"([\Emp\])"},
        {R"(C:\Temp\Song.mid)", R"(C:\Temp\Song.mid)", R"([C:\Temp\Song.mid])"},
    };
    for (const auto& c : cases) {
        const auto line = parseSpeech(c.text);
        EXPECT_EQ(line.shown, c.shown);
        EXPECT_EQ(spoken(line), c.said) << c.text;
        EXPECT_EQ(shownText(c.text), c.shown);
        EXPECT_EQ(line.words.back().shownEnd, c.shown.size());
    }
}

TEST(SpeechText, WhatIsNotQuiteATagIsText) {
    for (const std::string text :
         {R"(\Pau\)", R"(\Pau=x\)", R"(\Pau=99999999999\)", R"(\Vol=65536\)", R"(\Mrk=0\)", R"(\Chr="Loud"\)",
          R"(\Map="a"\)", R"(\Map="a"="b")", R"(\Map="a)", R"(\Emp =\)", R"(\Foo=1\)", R"(\)", R"(\Rst)"}) {
        EXPECT_EQ(shownText(text), text);
    }
}

TEST(SpeechText, AnyBytesAreTakenAndEveryWordEndsInsideTheLine) {
    std::string text;
    for (int i = 0; i < 512; ++i) text += static_cast<char>(i * 37);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto line = parseSpeech("\\Map=\"" + text.substr(i));
        std::size_t end = 0;
        for (const auto& word : line.words) {
            EXPECT_GE(word.shownEnd, end);
            end = word.shownEnd;
        }
        EXPECT_LE(end, line.shown.size());
    }
}

TEST(SpeechText, OneOfTheAlternativesIsChosen) {
    const auto pick = [](std::size_t index) { return [index](std::size_t) { return index; }; };
    EXPECT_EQ(chooseAlternative("a|b||d", pick(0)), "a");
    EXPECT_EQ(chooseAlternative("a|b||d", pick(2)), "");
    EXPECT_EQ(chooseAlternative("a|b||d", pick(3)), "d");
    EXPECT_EQ(chooseAlternative("a|b", pick(5)), "b");
    EXPECT_EQ(
        chooseAlternative("alone", [](std::size_t) -> std::size_t { throw std::logic_error("no choice"); }),
        "alone");
}

TEST(Bytes, AreUtf8OrElseWindows1252) {
    EXPECT_EQ(toUtf8("na\xc3\xafve"), "na\xc3\xafve");
    EXPECT_EQ(toUtf8("na\xefve \x80"), "na\xc3\xafve \xe2\x82\xac");
    for (const std::string bad : {"\xc0\x80", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\xe2\x82", "\x80"}) {
        EXPECT_FALSE(isUtf8(bad));
        EXPECT_TRUE(isUtf8(toUtf8(bad)));
    }
}

TEST(SpeechText, LongLineIsTakenInPartsThatBreakNoWordTagOrLetter) {
    const struct {
        std::string line;
        std::vector<std::string> parts;
    } cases[] = {
        {"", {""}},
        {"one two three", {"one two", " three"}},
        {R"(ab \Map="four five"="x y"\ six)", {"ab x y", " six"}},
        {"aaaaaaa\xc3\xa9"
         "bbbb",
         {"aaaaaaa\xc3\xa9", "bbbb"}},
    };
    for (const auto& [line, parts] : cases) {
        std::string_view rest = line;
        std::vector<std::string> taken;
        do taken.push_back(takeSpeech(rest, 4).shown);
        while (!rest.empty());
        EXPECT_EQ(taken, parts) << line;
    }
}

}  // namespace
