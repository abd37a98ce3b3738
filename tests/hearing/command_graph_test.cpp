#include "agent/hearing/command_graph.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/hearing/decoder.h"

namespace {

using namespace agent;

class CommandGraphs : public testing::Test {
protected:
    CommandGraph graph(std::string_view grammar) const {
        return makeCommandGraph(grammar, *dictionary_, [](std::string_view) { return Phones{}; });
    }

    Phones said(std::string_view words) const {
        Phones phones;
        while (!words.empty()) {
            const auto end = std::min(words.find(' '), words.size());
            const auto ways = dictionary_->pronunciations(words.substr(0, end));
            if (!ways.empty()) phones.insert(phones.end(), ways[0].begin(), ways[0].end());
            words.remove_prefix(std::min(end + 1, words.size()));
        }
        return phones;
    }

    const std::optional<Dictionary> dictionary_ = Dictionary::read(HearingModel().dictionary);
};

TEST_F(CommandGraphs, TellWhichWordsMayGoOn) {
    const CommandGraph file = graph("[show|open]word [window|dialog]");
    for (const char* words : {"", "show", "show word", "word"}) EXPECT_TRUE(mayGoOn(file, words)) << words;
    for (const char* words : {"word window", "check", "show me"}) EXPECT_FALSE(mayGoOn(file, words)) << words;
    // Any words may come before the general menu, so that nothing would ever be complete.
    EXPECT_FALSE(mayGoOn(graph("[...]general[...]"), "check mail"));
    EXPECT_FALSE(mayGoOn(CommandGraph{}, "check mail"));
}

TEST_F(CommandGraphs, WordsAreAlsoWrittenAsTheySound) {
    std::vector<CommandGraph> graphs{graph("calender"), graph("notepad"), graph("mail")};
    addWritings(graphs, *dictionary_);
    EXPECT_THAT(graphs[0].arcs[0].writtenAs, testing::Contains("calendar"));
    EXPECT_THAT(graphs[1].arcs[0].writtenAs, testing::Contains("note pad"));
    EXPECT_THAT(graphs[2].arcs[0].writtenAs, testing::Contains("male"));
    EXPECT_THAT(graphs[2].arcs[0].writtenAs, testing::Not(testing::Contains("mail")));
    EXPECT_FALSE(graphs[0].unwritable || graphs[1].unwritable || graphs[2].unwritable);
}

TEST_F(CommandGraphs, EveryPhraseOfTheGrammarIsAtNoDistance) {
    const struct {
        const char* grammar;
        std::vector<const char*> phrases;
    } cases[] = {
        {"[check][e]mail", {"mail", "email", "check mail", "check email"}},
        {"(move to|go to|follow)mouse[pointer|cursor]", {"go to mouse", "follow mouse cursor"}},
        {"[...]general[...]", {"general", "please show me the general menu now"}},
        {"[...](inter net|net) menu[...]", {"net menu", "open the net menu"}},
        {"tip", {"tip"}},
    };
    for (const auto& c : cases) {
        for (const char* phrase : c.phrases)
            EXPECT_EQ(graphDistance(graph(c.grammar), said(phrase)), 0) << c.grammar << ": " << phrase;
    }
}

TEST_F(CommandGraphs, DistanceGrowsWithWhatIsMissingExchangedAndTooMuch) {
    const CommandGraph agent = graph("[change]agent[character]");
    const double near = graphDistance(agent, said("change urgent"));
    const double far = graphDistance(agent, said("change the channel"));
    EXPECT_GT(near, 0);
    EXPECT_GT(far, near);
    EXPECT_GT(graphDistance(agent, {}), 3);
    EXPECT_GT(graphDistance(agent, said("change agent of the whole company")), 5);
}

TEST_F(CommandGraphs, WhatNobodyCanSayIsNotListenedFor) {
    std::string huge;
    for (int i = 0; i < 1000; ++i) huge += "[tip]";
    for (const std::string& grammar : {std::string(), std::string("[...]"), std::string("tip xqzzk"), huge})
        EXPECT_TRUE(graph(grammar).empty()) << grammar.substr(0, 20);
}

}  // namespace
