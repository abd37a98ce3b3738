#pragma once

#include <QImage>
#include <QPoint>
#include <QRegion>

class QWidget;

namespace agent {

/// Whether the desktop alone says where windows stand, as on Wayland: they are moved by its hand only.
bool desktopPlacesWindows();

/// The pixels of an ARGB32 image whose alpha is at least `threshold`.
QRegion solidRegion(const QImage& image, int threshold);

/// Whether windows of `widget`'s screen are blended with what is behind them. A compositor may come and go:
/// ask again.
bool isComposited(const QWidget& widget);

/// Where a window's corner is, asked of the desktop, in device independent pixels. The toolkit's own idea can
/// stay wrong for a window that was moved while the window manager took it over.
QPoint positionOnDesktop(const QWidget& widget);

/// Lets the clear parts of a window be clear, and lets clicks through there. `image` is what the window
/// shows, in device pixels. Without a compositor the window is cut out; with one only its input is, for the
/// figure's edges stay soft.
void shapeWindow(QWidget& widget, const QImage& image, bool composited);

}  // namespace agent
