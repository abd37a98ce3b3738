#include "agent/voice/visemes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "agent/mouth.h"
#include "agent/voice/espeak_pitch.h"

namespace {

using namespace agent;

std::string mouths(const std::string& sounds, Viseme (*viseme)(std::string_view)) {
    std::istringstream names(sounds);
    std::string result;
    for (std::string name; names >> name;) {
        const auto found = viseme(name);
        if (!result.empty()) result += ' ';
        result += slotName(found.mouth);
        if (found.glide) result.append(slotName(*found.glide));
    }
    return result;
}

TEST(Visemes, BothEnginesMoveTheMouthAlike) {
    EXPECT_EQ(mouths("f V n b OI p aI m w O: t# 3 r E d l T S u: eI aU oU 'i: _: _", &visemeOfEspeak),
              "F A L M OI M AI M W O L E W E L L L W U EI AU OU I closed closed");
    EXPECT_EQ(mouths("f ah n b oy p ay m w ao t er r eh d l th sh uw ey aw ow iy pau", &visemeOfFlite),
              "F A L M OI M AI M W O L E W E L L L W U EI AU OU I closed");
    EXPECT_EQ(mouths("? ; tS dZ aI@ @L l^ \xc9\x90", &visemeOfEspeak), "closed closed W W AI L L closed");
}

TEST(Visemes, ADiphthongGlidesHalfWayAndTheMouthIsClosedAtTheEnd) {
    Utterance utterance{{}, {{150, std::size_t{0}}}};
    addMouths(utterance,
              std::vector<TimedViseme>{{100, {Mouth::A, Mouth::I}}, {200, {Mouth::I}}, {300, {Mouth::M}}},
              400);
    std::string events;
    for (const auto& event : utterance.events) {
        const auto* mouth = std::get_if<Mouth>(&event.what);
        events += std::to_string(event.sample) + (mouth ? std::string(slotName(*mouth)) : "word") + " ";
    }
    EXPECT_EQ(events, "100A 150word 150I 300M 400closed ");
}

TEST(Mouths, ACharacterThatLacksOneDrawsTheOneMostLikeIt) {
    Bone few;
    few.slots = {{"closed", ""}, {"A", ""}, {"O", ""}};
    const auto drawn = [](const Bone& bone, Mouth mouth) {
        const auto slot = mouthSlot(bone, mouth);
        return slot ? bone.slots[*slot].name : "none";
    };
    std::string all;
    for (int mouth = 0; mouth <= static_cast<int>(Mouth::W); ++mouth)
        all += drawn(few, static_cast<Mouth>(mouth)) + " ";
    EXPECT_EQ(all, "closed A A A O O closed A closed O ");
    few.slots.push_back({"W", ""});
    EXPECT_EQ(drawn(few, Mouth::U), "W");
    few.slots = {{"", "art"}};
    EXPECT_EQ(drawn(few, Mouth::A), "none");
}

TEST(EspeakPitch, CoversTheVoicesRangeAndHoldsWhatLiesOutside) {
    EXPECT_EQ(espeakPitch(1), 0);
    EXPECT_EQ(espeakPitch(89), 50);
    EXPECT_EQ(espeakPitch(104), 62);
    EXPECT_EQ(espeakPitch(400), 99);
}

}  // namespace
