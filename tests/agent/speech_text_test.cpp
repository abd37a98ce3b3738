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
        {R"(One\Pau=200\two \Emp\three\RST\)", "Onetwo three", "[One][two][three]"},
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

// What is not as usual about a word.
std::string manner(const SpokenWord& word) {
    const auto& how = word.delivery;
    std::string text = word.spoken;
    if (how.pitch) text += " pitch " + std::to_string(*how.pitch);
    if (how.rate) text += " rate " + std::to_string(*how.rate);
    if (how.volume != Delivery::fullVolume) text += " volume " + std::to_string(how.volume);
    if (how.character == Delivery::Character::monotone) text += " monotone";
    if (how.character == Delivery::Character::whisper) text += " whisper";
    if (how.context == Delivery::Context::address) text += " address";
    if (how.context == Delivery::Context::eMail) text += " e-mail";
    if (word.stressed) text += " stressed";
    if (word.bookmark != 0) text += " mark " + std::to_string(word.bookmark);
    if (word.pause.count() != 0) text += " pause " + std::to_string(word.pause.count());
    return text;
}

TEST(SpeechText, TagsSayHowTheWordsBehindThemAreSaid) {
    struct Case {
        std::string text;
        std::vector<std::string> words;
    };
    const std::vector<Case> cases = {
        {R"(a \spd=200\b c \Rst\d)", {"a", "b rate 200", "c rate 200", "d"}},
        {R"(\Pit=100\a\PIT=1\b\Pit=4000000000\c)", {"a pitch 100", "b pitch 40", "c pitch 400"}},
        {R"(\Spd=1\a\Spd=9999\b)", {"a rate 80", "b rate 450"}},
        {R"(\Vol=0\a \Vol=65535\b)", {"a volume 0", "b"}},
        {R"(\Chr="MONOTONE"\a \Chr="whisper"\b \Chr="Normal"\c)", {"a monotone", "b whisper", "c"}},
        {R"(\Ctx="Address"\a \Ctx="e-mail"\b \Ctx="Unknown"\c)", {"a address", "b e-mail", "c"}},
        {R"(\Emp\a b \Emp\ c)", {"a stressed", "b", "c stressed"}},
        {R"(\Mrk=3\a \Mrk=4\\Mrk=5\b\Mrk=6\)", {"a mark 3", " mark 4", "b mark 5", " mark 6"}},
        {R"(a\Pau=200\\Pau=50\b\Pau=4000000000\)", {"a", "b pause 250", " pause 60000"}},
        {R"(\Emp\\Mrk=1\\Pau=9\a)", {" mark 1", "a stressed pause 9"}},
    };
    for (const auto& c : cases) {
        std::vector<std::string> words;
        for (const auto& word : parseSpeech(c.text).words) words.push_back(manner(word));
        EXPECT_EQ(words, c.words) << c.text;
    }
}

TEST(SpeechText, AMapOfAnyLengthIsSaidInPortionsAndShownAtOnce) {
    std::string said;
    for (int i = 0; i < 100'000; ++i) said += "la la la ";
    const auto line = parseSpeech("\\Map=\"" + said + "\"=\"song\"\\ over");
    std::size_t length = 0;
    for (const auto& word : line.words) {
        EXPECT_LE(word.spoken.size(), 400U);
        length += word.spoken.size() + 1;
    }
    EXPECT_EQ(line.shown, "song over");
    EXPECT_EQ(line.words.front().shownEnd, 4U);
    EXPECT_EQ(length, said.size() + 6);
}

TEST(SpeechText, TheLastLineIsAskedForByLstAlone) {
    EXPECT_TRUE(asksForLastLine(R"(\LST\)"));
    for (const char* text : {"", R"(\Lst)", R"(\Lst\ )", R"(\Lst\x)", R"(\Emp\)"})
        EXPECT_FALSE(asksForLastLine(text));
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
        Delivery delivery;
        do taken.push_back(takeSpeech(rest, 4, delivery).shown);
        while (!rest.empty());
        EXPECT_EQ(taken, parts) << line;
    }
}

TEST(SpeechText, TagsHoldBeyondThePartOfALineInWhichTheyStand) {
    std::string_view rest = R"(one\Spd=200\ two\Emp\ three \Vol=0\four)";
    Delivery delivery;
    std::vector<std::string> words;
    while (!rest.empty()) {
        for (const auto& word : takeSpeech(rest, 8, delivery).words) words.push_back(manner(word));
    }
    EXPECT_EQ(words, (std::vector<std::string>{"one", "two rate 200", "three rate 200 stressed",
                                               "four rate 200 volume 0"}));
}

}  // namespace
