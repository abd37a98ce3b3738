#include "agent/voice/visemes.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace agent {
namespace {

struct Row {
    std::string_view sound;
    Viseme viseme;
};

constexpr Viseme a{Mouth::A}, e{Mouth::E}, i{Mouth::I}, o{Mouth::O}, u{Mouth::U};
constexpr Viseme f{Mouth::F}, l{Mouth::L}, m{Mouth::M}, w{Mouth::W};

// By the beginning of a sound's name, the longest that fits: "aI@" is "aI", "t#" is "t".
constexpr std::array espeakSounds = {Row{"aI", {Mouth::A, Mouth::I}},
                                     Row{"aU", {Mouth::A, Mouth::U}},
                                     Row{"a", a},
                                     Row{"A", a},
                                     Row{"0", o},
                                     Row{"V", a},
                                     Row{"eI", {Mouth::E, Mouth::I}},
                                     Row{"e", e},
                                     Row{"E", e},
                                     Row{"3", e},
                                     Row{"@U", {Mouth::O, Mouth::U}},
                                     Row{"@L", l},
                                     Row{"@", e},
                                     Row{"i", i},
                                     Row{"I", i},
                                     Row{"y", u},
                                     Row{"Y", u},
                                     Row{"oU", {Mouth::O, Mouth::U}},
                                     Row{"OI", {Mouth::O, Mouth::I}},
                                     Row{"oI", {Mouth::O, Mouth::I}},
                                     Row{"o", o},
                                     Row{"O", o},
                                     Row{"W", o},
                                     Row{"u", u},
                                     Row{"U", u},
                                     Row{"b", m},
                                     Row{"p", m},
                                     Row{"m", m},
                                     Row{"f", f},
                                     Row{"v", f},
                                     Row{"w", w},
                                     Row{"r", w},
                                     Row{"R", e},
                                     Row{"l", l},
                                     Row{"L", l},
                                     Row{"n", l},
                                     Row{"N", e},
                                     Row{"t", l},
                                     Row{"d", l},
                                     Row{"tS", w},
                                     Row{"dZ", w},
                                     Row{"T", l},
                                     Row{"D", l},
                                     Row{"s", i},
                                     Row{"z", i},
                                     Row{"S", w},
                                     Row{"Z", w},
                                     Row{"k", e},
                                     Row{"g", e},
                                     Row{"h", e},
                                     Row{"x", e},
                                     Row{"j", i},
                                     Row{"C", i},
                                     Row{"c", i},
                                     Row{"q", e}};

constexpr std::array fliteSounds = {Row{"aa", a},
                                    Row{"ae", a},
                                    Row{"ah", a},
                                    Row{"ao", o},
                                    Row{"aw", {Mouth::A, Mouth::U}},
                                    Row{"ax", e},
                                    Row{"ay", {Mouth::A, Mouth::I}},
                                    Row{"b", m},
                                    Row{"ch", w},
                                    Row{"d", l},
                                    Row{"dh", l},
                                    Row{"eh", e},
                                    Row{"er", e},
                                    Row{"ey", {Mouth::E, Mouth::I}},
                                    Row{"f", f},
                                    Row{"g", e},
                                    Row{"hh", e},
                                    Row{"ih", i},
                                    Row{"iy", i},
                                    Row{"jh", w},
                                    Row{"k", e},
                                    Row{"l", l},
                                    Row{"m", m},
                                    Row{"n", l},
                                    Row{"ng", e},
                                    Row{"ow", {Mouth::O, Mouth::U}},
                                    Row{"oy", {Mouth::O, Mouth::I}},
                                    Row{"p", m},
                                    Row{"r", w},
                                    Row{"s", i},
                                    Row{"sh", w},
                                    Row{"t", l},
                                    Row{"th", l},
                                    Row{"uh", u},
                                    Row{"uw", u},
                                    Row{"v", f},
                                    Row{"w", w},
                                    Row{"y", i},
                                    Row{"z", i},
                                    Row{"zh", w}};

Viseme find(std::span<const Row> rows, std::string_view name) {
    const Row* best = nullptr;
    for (const Row& row : rows) {
        if (name.starts_with(row.sound) && (best == nullptr || row.sound.size() > best->sound.size())) {
            best = &row;
        }
    }
    return best == nullptr ? Viseme{} : best->viseme;
}

}  // namespace

Viseme visemeOfEspeak(std::string_view phoneme) {
    constexpr std::string_view stresses = "',%=";
    const auto start = phoneme.find_first_not_of(stresses);
    return start == std::string_view::npos ? Viseme{} : find(espeakSounds, phoneme.substr(start));
}

Viseme visemeOfFlite(std::string_view phone) {
    const auto row = std::ranges::find(fliteSounds, phone, &Row::sound);
    return row == fliteSounds.end() ? Viseme{} : row->viseme;
}

void addMouths(Utterance& utterance, std::span<const TimedViseme> sounds, std::size_t end) {
    Mouth now = Mouth::closed;
    const auto move = [&](std::size_t sample, Mouth mouth) {
        if (mouth != std::exchange(now, mouth)) utterance.events.push_back({sample, mouth});
    };
    for (std::size_t i = 0; i < sounds.size(); ++i) {
        const auto [start, viseme] = sounds[i];
        const std::size_t next = i + 1 < sounds.size() ? sounds[i + 1].sample : end;
        move(start, viseme.mouth);
        if (viseme.glide) move(start + (std::max(next, start) - start) / 2, *viseme.glide);
    }
    move(end, Mouth::closed);
    std::ranges::stable_sort(utterance.events, {}, &SpeechEvent::sample);
}

}  // namespace agent
