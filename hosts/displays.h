#pragma once

namespace velmora {

/// Whether the environment names a display, or a Qt platform that needs none.
bool hasDisplay();

/// Whether the display that the windows would be shown on can be reached. Prefers an X server where a Wayland
/// desktop offers one too: a figure that stands above all windows, at a place of its own, is more than
/// Wayland grants.
bool chooseDisplay();

}  // namespace velmora
