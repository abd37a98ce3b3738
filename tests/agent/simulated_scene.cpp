#include "tests/agent/simulated_scene.h"

#include <algorithm>
#include <cmath>

namespace agent {
namespace {

using namespace std::chrono_literals;

// The arm at so many degrees.
Pose armAt(const Rig& rig, double degrees) {
    Pose pose = rig.rest;
    pose[0][Channel::rot] = degrees;
    return pose;
}

// Lifts the arm in half a second, and keeps it there.
Clip lift(const Rig& rig, std::string name, double from, double to) {
    return {.name = std::move(name),
            .keys = {{0ms, Ease::linear, armAt(rig, from)}, {500ms, Ease::linear, armAt(rig, to)}},
            .loop = {},
            .next = {},
            .free = {}};
}

Rig makeRig() {
    Rig rig{.name = "Stick", .width = 100, .height = 100, .bones = {}, .rest = {}, .clips = {}, .voice = {}};
    rig.bones.push_back({.id = "arm", .parent = {}, .slots = {{"", "arm"}}});
    rig.bones.push_back({.id = "gaze", .parent = {}, .slots = {{"", "pupils"}}});
    rig.bones.push_back({.id = "mouth", .parent = {}, .slots = {{"closed", "m"}, {"A", "a"}, {"O", "o"}}});
    rig.rest = Pose(3);
    for (const auto* name : {"Show", "Hide", "RestPose", "Blink", "ReadReturn", "StopListening"})
        rig.clips.push_back(lift(rig, name, 0, 0));
    for (const auto* name : {"StartListening", "Hearing_1"}) rig.clips.push_back(lift(rig, name, 0, 0));
    for (const auto& [name, to] : {std::pair{"Idle1_1", 10}, {"Idle2_1", 20}, {"Idle3_1", 30}}) {
        rig.clips.push_back(lift(rig, name, 0, to));
        rig.clips.back().keys.push_back({1000ms, Ease::linear, armAt(rig, 0)});
    }
    rig.clips.push_back(lift(rig, "Read", 0, 60));
    rig.clips.back().next = "ReadReturn";
    rig.clips[4] = lift(rig, "ReadReturn", 60, 0);
    rig.clips.push_back(lift(rig, "Wave", 0, 90));
    rig.clips.back().keys.push_back({1000ms, Ease::linear, armAt(rig, 0)});
    rig.clips.back().free = 200ms;
    for (const auto* name : {"Processing", "Reading", "MoveLeft", "MoveUp"}) {
        Clip clip = lift(rig, name, 0, 40);
        clip.keys.push_back({1500ms, Ease::linear, armAt(rig, 40)});
        clip.keys.push_back({2000ms, Ease::linear, armAt(rig, 0)});
        clip.loop = {500ms, 1500ms};
        clip.free = 500ms;
        rig.clips.push_back(clip);
    }
    return rig;
}

}  // namespace

SimulatedScene::SimulatedScene()
    : rig(makeRig()),
      pose(rig.rest),
      performer({.rig = rig,
                 .display = *this,
                 .now = [this] { return now; },
                 .wake =
                     [this](std::optional<Milliseconds> after) {
                         wakeAt = after ? std::optional(now + *after) : std::nullopt;
                     },
                 .pick = [](std::size_t count) { return count / 2; }}),
      queue(performer, [this](std::function<void()> step) { posted_.push_back(std::move(step)); }) {}

void SimulatedScene::settle() {
    while (!posted_.empty()) {
        const auto step = std::move(posted_.front());
        posted_.pop_front();
        step();
    }
}

void SimulatedScene::pass(Milliseconds span) {
    const auto end = now + span;
    settle();
    while (wakeAt && *wakeAt <= end) {
        now = std::max(now, *wakeAt);
        wakeAt.reset();
        performer.turn();
        settle();
    }
    now = end;
}

RequestHandle SimulatedScene::ask(Action action, std::string text, int x, int y) {
    return queue.ask({action, std::move(text), x, y});
}

void SimulatedScene::draw(const Pose& drawn, bool isStill) {
    ++draws;
    farthestTurn = std::max(farthestTurn, std::abs(drawn[0][Channel::rot] - arm()));
    pose = drawn;
    still = isStill;
}

Place SimulatedScene::inside(Place wanted) const {
    return {std::clamp(wanted.x, 0, 900), std::clamp(wanted.y, 0, 700)};
}

void SimulatedScene::openBalloon(BalloonKind kind, const SpokenLine& line) {
    balloon = (kind == BalloonKind::thought ? "(" : "") + line.shown;
}

}  // namespace agent
