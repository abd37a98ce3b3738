#pragma once

#include <cstddef>
#include <optional>

#include "agent/rig.h"
#include "agent/speech_text.h"

namespace agent {

/// A point of the desktop, in device independent pixels from its upper left corner.
struct Place {
    int x = 0;
    int y = 0;
    bool operator==(const Place&) const = default;
};

enum class BalloonKind { speech, thought };

/// What a performer is seen by: the picture of a figure and its balloon, wherever they are. Calls it back
/// from none of its methods.
class Display {
public:
    virtual ~Display() = default;

    /// Shows the figure in a pose of its rig. `still`: it will stand so for a while.
    virtual void draw(const Pose& pose, bool still) = 0;

    /// Brings the figure on screen, or takes it off.
    virtual void showFigure(bool visible) = 0;

    /// Where the figure's upper left corner is, also while it is off screen.
    virtual Place position() const = 0;

    /// Moves the figure, and what belongs to it, there at once.
    virtual void place(Place corner) = 0;

    /// The place nearest to this one at which the whole figure is on one screen.
    virtual Place inside(Place corner) const = 0;

    /// Where the pointer is, from a point of the figure in the rig's units; nothing where nobody knows.
    virtual std::optional<Place> pointerFrom(double x, double y) const = 0;

    /// Opens the balloon with a line, none of it revealed yet. A line with nothing to show closes it.
    virtual void openBalloon(BalloonKind kind, const SpokenLine& line) = 0;

    /// Reveals the line up to and with this word; all of it for a number beyond the last.
    virtual void revealWord(std::size_t word) = 0;

    /// No failure if it is closed.
    virtual void closeBalloon() = 0;
};

}  // namespace agent
