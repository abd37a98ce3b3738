#pragma once

namespace velmora {

/// Whether the environment names a display, or a Qt platform that needs none.
bool hasDisplay();

/// What the windows are shown on.
enum class Display {
    unreachable,
    windowsPlaced,  ///< windows stand where the program puts them
    waylandAlone,   ///< the desktop places them, and no key reaches a program that has not the focus
};

/// Chooses what to show windows on, before Qt does. Prefers an X server where a Wayland desktop offers one
/// too: a figure that stands above all windows, at a place of its own, is more than Wayland grants.
Display chooseDisplay();

}  // namespace velmora
