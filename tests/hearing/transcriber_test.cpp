#include "agent/hearing/transcriber.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>

#include "agent/hearing/decoder.h"
#include "tests/support/scratch_folder.h"

namespace {

using namespace agent;
using velmora::ScratchFolder;

/// Tokens for single letters, and for these words and parts of words.
class Writing : public testing::Test {
protected:
    Writing() {
        const std::string path = folder_.path() + "/tokens.txt";
        std::ofstream file(path);
        for (const char* special : {"<unk>", "<s>", "</s>"}) file << special << '\n';
        for (int byte = 0; byte < 256; ++byte) file << "<byte>\n";
        const std::string mark(Tokens::wordMark);
        for (const std::string& piece :
             {mark + "c", std::string("he"), std::string("ck"), std::string("heck"), mark + "check",
              std::string("ma"), std::string("mai"), std::string("mail"), mark + "m", mark + "mail"})
            file << piece << '\n';
        for (char letter = 'a'; letter <= 'z'; ++letter) file << letter << '\n';
        for (char letter = 'A'; letter <= 'Z'; ++letter) file << letter << '\n';
        for (const char* sign : {".", ",", "!", "?", "-"}) file << sign << '\n';
        file << mark << '\n';
        file.close();
        tokens_ = Tokens::read(path);
    }

    std::vector<CommandGraph> graphs(const std::vector<std::string>& grammars) const {
        std::vector<CommandGraph> graphs;
        graphs.reserve(grammars.size());
        for (const std::string& grammar : grammars)
            graphs.push_back(
                makeCommandGraph(grammar, *dictionary_, [](std::string_view) { return Phones{0}; }));
        addWritings(graphs, *dictionary_);
        return graphs;
    }

    TokenList tokensOf(std::string text) const {
        for (auto at = text.find(' '); at != std::string::npos; at = text.find(' '))
            text.replace(at, 1, Tokens::wordMark);
        return tokens_->split(std::string(Tokens::wordMark) + text);
    }

    ScratchFolder folder_;
    std::optional<Tokens> tokens_;
    const std::optional<Dictionary> dictionary_ = Dictionary::read(HearingModel().dictionary);
};

TEST_F(Writing, TextsAreSplitIntoTheLongestPiecesInTheOrderInWhichTheyWereLearned) {
    const TokenList split = tokensOf("check mail");
    EXPECT_EQ(split.size(), 2U);
    EXPECT_EQ(tokens_->text(split), "check mail");
    // A word mark takes the first letter before the rest comes together.
    EXPECT_EQ(tokensOf("mails").size(), 2U);
    EXPECT_EQ(tokens_->text(tokensOf("Caf\u00e9 \xff")), "Caf\u00e9 \xff");
    EXPECT_FALSE(Tokens::read("/nonexistent"));
}

/// Knows what was said, to the letter, and finds any other token of a text that began like it just as
/// unlikely.
class Listener : public WritingModel {
public:
    Listener(TokenList said, std::size_t width) : said_(std::move(said)), width_(width) {}

    NextTokens hear(std::span<const float>) override { return again(); }
    NextTokens again() override {
        texts_ = {{}};
        return answer();
    }
    NextTokens goOn(std::span<const Text> texts) override {
        if (texts.size() > mostTexts) throw std::logic_error("too many texts");
        std::vector<TokenList> next;
        for (const auto& [row, token] : texts) {
            next.push_back(texts_.at(row));
            next.back().push_back(token);
        }
        texts_ = std::move(next);
        return answer();
    }

private:
    NextTokens answer() const {
        constexpr float unlikely = -9;
        NextTokens next{std::vector<float>(texts_.size() * width_, unlikely), width_};
        for (std::size_t row = 0; row < texts_.size(); ++row) {
            const TokenList& text = texts_[row];
            // After something else was written, what was said goes on all the same.
            const Token token = text.size() < said_.size() ? said_[text.size()] : Tokens::end;
            next.values[row * width_ + static_cast<std::size_t>(token)] = 0;
        }
        return next;
    }

    TokenList said_;
    std::size_t width_;
    std::vector<TokenList> texts_;
};

class Transcribing : public Writing {
protected:
    Transcript transcribe(const std::string& said, const std::vector<std::string>& grammars) {
        transcriber_ = std::make_unique<Transcriber>(std::make_unique<Listener>(tokensOf(said), 400),
                                                     *tokens_, graphs(grammars));
        return transcriber_->transcribe(std::vector<std::int16_t>(64000));
    }

    std::unique_ptr<Transcriber> transcriber_;
};

TEST_F(Transcribing, CommandsAreFoundHoweverTheyAreWritten) {
    const std::vector<std::string> grammars{"[check][e]mail", "[show|open]cd player", "run notepad",
                                            "set calender", "[new][inter net]search"};
    const struct {
        const char* said;
        std::size_t command;
        const char* words;
    } cases[] = {
        {"Check mail.", 0, "check mail"},         {"Check email", 0, "check e mail"},
        {"Open CD player!", 1, "open cd player"}, {"run note pad", 2, "run notepad"},
        {"Set calendar.", 3, "set calender"},     {"Internet search.", 4, "inter net search"},
    };
    for (const auto& c : cases) {
        const Transcript transcript = transcribe(c.said, grammars);
        EXPECT_EQ(transcript.text, c.said);
        ASSERT_FALSE(transcript.commands.empty()) << c.said;
        EXPECT_EQ(transcript.commands[0].command, c.command) << c.said;
        EXPECT_EQ(transcript.commands[0].words, c.words);
        EXPECT_NEAR(transcript.commands[0].logLikelihood, transcript.logLikelihood, 0.5) << c.said;
    }
}

TEST_F(Transcribing, WhatOnlyResemblesACommandIsLessLikelyAsOne) {
    const std::vector<std::string> grammars{"[open]messenger", "messenger log off", "(check|open)mail"};
    EXPECT_EQ(transcribe("Messenger log off.", grammars).commands.at(0).command, 1U);
    const Transcript rail = transcribe("check rail", grammars);
    ASSERT_FALSE(rail.commands.empty());
    EXPECT_EQ(rail.commands[0].command, 2U);
    EXPECT_LT(rail.commands[0].logLikelihood, rail.logLikelihood - 8);
    EXPECT_THAT(transcribe("the weather is fine today", grammars).commands, testing::IsEmpty());
}

TEST_F(Transcribing, AnyWordsMayStandAroundACommandThatAllowsIt) {
    const std::vector<std::string> grammars{"tip", "[...]general[...]"};
    const Transcript transcript = transcribe("show me general please", grammars);
    ASSERT_FALSE(transcript.commands.empty());
    EXPECT_EQ(transcript.commands[0].command, 1U);
    EXPECT_EQ(transcript.commands[0].words, "general");
    EXPECT_THAT(transcribe("show me tip please", grammars).commands, testing::IsEmpty());
    // It takes up whatever was said, which tells nothing against the other commands.
    const Transcript rail = transcribe("check rail", {"[...]general[...]", "(check|open)mail"});
    ASSERT_FALSE(rail.commands.empty());
    EXPECT_EQ(rail.commands[0].command, 1U);
}

TEST_F(Transcribing, ACommandCanBeAskedForThatWasNotThoughtOf) {
    const Transcript transcript = transcribe("mail", {"mail", "check"});
    EXPECT_FALSE(transcriber_->asCommand(7));
    const auto mail = transcriber_->asCommand(0);
    ASSERT_TRUE(mail);
    EXPECT_EQ(mail->words, "mail");
    EXPECT_DOUBLE_EQ(mail->logLikelihood, transcript.commands.at(0).logLikelihood);
}

TEST(WritingModel, IsNotThereWithoutItsFiles) {
    EXPECT_EQ(WritingModel::load("/nonexistent"), nullptr);
    ScratchFolder folder;
    std::filesystem::create_symlink(defaultWritingFolder() + "/libonnxruntime.so",
                                    folder.path() + "/libonnxruntime.so");
    std::ofstream(folder.path() + "/encoder.onnx") << "no model";
    EXPECT_EQ(WritingModel::load(folder.path()), nullptr);
}

}  // namespace
