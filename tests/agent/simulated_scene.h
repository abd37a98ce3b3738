#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "agent/performer.h"

namespace agent {

/// A figure on a desktop of its own, 1000 by 800, in a time that moves only when told to. Bone 0 is an arm
/// that turns, bone 1 the eyes, bone 2 the mouth. Keeps what is to be seen.
class SimulatedScene : public Display {
public:
    SimulatedScene();

    /// Lets so much time pass; what is due meanwhile happens in its time.
    void pass(Milliseconds span);

    /// Lets what is posted run, and no time pass.
    void settle();

    /// Asks, and keeps the request.
    RequestHandle ask(Action action, std::string text = {}, int x = 0, int y = 0);
    RequestHandle play(std::string clip) { return ask(Action::play, std::move(clip)); }

    double arm() const { return pose[0][Channel::rot]; }

    // Display
    void draw(const Pose& drawn, bool isStill) override;
    void showFigure(bool visible) override { shown = visible; }
    Place position() const override { return corner; }
    void place(Place to) override { corner = to; }
    Place inside(Place wanted) const override;
    std::optional<Place> pointerFrom(double, double) const override { return pointer; }
    void openBalloon(BalloonKind kind, const SpokenLine& line) override;
    void revealWord(std::size_t word) override { revealed = word; }
    void closeBalloon() override { balloon.reset(); }

    Rig rig;
    Milliseconds now{0};
    std::optional<Milliseconds> wakeAt;
    Pose pose;
    bool still = false;
    bool shown = false;
    Place corner{400, 300};
    std::optional<Place> pointer;
    std::optional<std::string> balloon;  ///< its text while it is open
    std::size_t revealed = 0;
    int draws = 0;
    double farthestTurn = 0;  ///< of the arm, from one picture to the next
    std::vector<std::string> ended;

private:
    std::deque<std::function<void()>> posted_;

public:
    Performer performer;
    RequestQueue queue;
};

}  // namespace agent
