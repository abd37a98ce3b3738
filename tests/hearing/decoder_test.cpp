#include "agent/hearing/decoder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/hearing/phrase_finder.h"
#include "tests/hearing/spoken.h"

namespace {

using namespace agent;
using velmora::test::spoken;

class Decoding : public testing::Test {
protected:
    Decoding() {
        const auto dictionary = Dictionary::read(HearingModel().dictionary);
        std::vector<CommandGraph> graphs;
        for (const char* grammar : {"[check][e]mail", "[open]calculator[program]"})
            graphs.push_back(
                makeCommandGraph(grammar, *dictionary, [](std::string_view) { return Phones{}; }));
        decoders_ = loadDecoders({}, graphs);
    }

    void readAheadInPieces(Decoder& decoder, const Samples& phrase, std::size_t piece) {
        for (std::size_t end = 0; end < phrase.size(); end += piece)
            decoder.readAhead(std::span(phrase).first(end), {});
    }

    std::optional<Decoders> decoders_;
    const Samples phrase_ = findPhrases(spoken("open calculator program")).at(0);
    const Samples other_ = findPhrases(spoken("check mail")).at(0);
};

TEST_F(Decoding, WhatWasReadAheadMakesNoDifference) {
    ASSERT_TRUE(decoders_);
    for (Decoder* decoder : {decoders_->commands.get(), decoders_->sounds.get()}) {
        const Reading atOnce = decoder->read(phrase_, {});
        ASSERT_FALSE(atOnce.empty());
        readAheadInPieces(*decoder, phrase_, 777);
        EXPECT_EQ(decoder->read(phrase_, {}), atOnce);
        // The speaker has gone on differently, or not at all.
        readAheadInPieces(*decoder, other_, hearingRate / 4);
        EXPECT_EQ(decoder->read(phrase_, {}), atOnce);
        decoder->readAhead(phrase_, {});
        const auto half = std::span(phrase_).first(phrase_.size() / 2);
        EXPECT_NE(decoder->read(half, {}), atOnce);
        EXPECT_EQ(decoder->read(phrase_, {}), atOnce);
    }
}

TEST_F(Decoding, AStoppedReadingIsEmptyAndTheNextOneWhole) {
    ASSERT_TRUE(decoders_);
    std::stop_source stop;
    stop.request_stop();
    const Reading whole = decoders_->commands->read(phrase_, {});
    EXPECT_TRUE(decoders_->commands->read(phrase_, stop.get_token()).empty());
    EXPECT_EQ(decoders_->commands->read(phrase_, {}), whole);
    EXPECT_TRUE(decoders_->commands->read({}, {}).empty());
}

}  // namespace
