#include "agent/idle.h"

#include <array>
#include <string_view>
#include <vector>

#include "agent/bytes.h"

namespace agent {
namespace {

using namespace std::chrono_literals;

struct Level {
    Milliseconds from;   // since the last disturbance
    Milliseconds every;  // between two idle animations
    std::string_view prefix;
};

constexpr std::array<Level, 3> levels = {
    {{0s, 60s, "Idle1_"}, {120s, 100s, "Idle2_"}, {400s, 180s, "Idle3_"}}};

std::vector<const Clip*> clipsNamed(const Rig& rig, std::string_view prefix) {
    std::vector<const Clip*> found;
    for (const Clip& clip : rig.clips) {
        if (sameName(std::string_view(clip.name).substr(0, prefix.size()), prefix)) found.push_back(&clip);
    }
    return found;
}

}  // namespace

Milliseconds Idle::pause() {
    constexpr Milliseconds shortest{3500};
    constexpr std::size_t spread = 5000;
    const auto pause = shortest + Milliseconds(pick_(spread));
    quiet_ += pause;
    sinceAct_ += pause;
    return pause;
}

const Clip* Idle::choose(const Rig& rig) {
    const Level* level = &levels.front();
    for (const Level& candidate : levels) {
        if (quiet_ >= candidate.from) level = &candidate;
    }
    if (sinceAct_ >= level->every) {
        if (const auto clips = clipsNamed(rig, level->prefix); !clips.empty()) {
            sinceAct_ = Milliseconds(0);
            return clips[pick_(clips.size()) % clips.size()];
        }
    }
    return rig.clip("Blink");
}

}  // namespace agent
