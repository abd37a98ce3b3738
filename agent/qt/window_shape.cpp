#include "agent/qt/window_shape.h"

#include <xcb/shape.h>
#include <xcb/xcb.h>

#include <QtGui/qguiapplication_platform.h>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <cstdlib>
#include <memory>
#include <vector>

namespace agent {
namespace {

// What can be clicked, and what is drawn where nothing can be half clear.
constexpr int clickable = 24;
constexpr int opaque = 128;

xcb_connection_t* x11() {
    auto* native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return native != nullptr ? native->connection() : nullptr;
}

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};
template <class Reply>
using ReplyOf = std::unique_ptr<Reply, Free>;

xcb_atom_t findAtom(xcb_connection_t* connection, const QByteArray& name) {
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.constData());
    const ReplyOf<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

void setInputRegion(xcb_connection_t* connection, const QWidget& widget, const QRegion& region) {
    std::vector<xcb_rectangle_t> rectangles;
    for (const QRect& r : region) {
        rectangles.push_back({static_cast<std::int16_t>(r.x()), static_cast<std::int16_t>(r.y()),
                              static_cast<std::uint16_t>(r.width()), static_cast<std::uint16_t>(r.height())});
    }
    xcb_shape_rectangles(connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_YX_BANDED,
                         static_cast<xcb_window_t>(widget.winId()), 0, 0,
                         static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
    xcb_flush(connection);
}

}  // namespace

QRegion solidRegion(const QImage& image, int threshold) {
    std::vector<QRect> runs;
    const int width = image.width();
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < width; ++x) {
            const int start = x;
            while (x < width && qAlpha(line[x]) >= threshold) ++x;
            if (x > start) runs.emplace_back(start, y, x - start, 1);
        }
    }
    QRegion region;
    region.setRects(runs.data(), static_cast<int>(runs.size()));
    return region;
}

bool isComposited(const QWidget& widget) {
    auto* connection = x11();
    if (connection == nullptr) return true;
    const auto screen = QGuiApplication::screens().indexOf(widget.screen());
    // Screens of one desktop share one selection; only separate X screens have their own.
    const bool separate = widget.screen()->virtualSiblings().size() != QGuiApplication::screens().size();
    const xcb_atom_t atom = findAtom(connection, "_NET_WM_CM_S" + QByteArray::number(separate ? screen : 0));
    const auto cookie = xcb_get_selection_owner(connection, atom);
    const ReplyOf<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(connection, cookie, nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

QPoint positionOnDesktop(const QWidget& widget) {
    auto* connection = x11();
    if (connection == nullptr) return widget.pos();
    const auto window = static_cast<xcb_window_t>(widget.winId());
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const auto cookie = xcb_translate_coordinates(connection, window, root, 0, 0);
    const ReplyOf<xcb_translate_coordinates_reply_t> reply(
        xcb_translate_coordinates_reply(connection, cookie, nullptr));
    if (!reply) return widget.pos();
    const QPoint origin = widget.screen()->geometry().topLeft();
    return origin + (QPoint(reply->dst_x, reply->dst_y) - origin) / widget.devicePixelRatioF();
}

bool desktopPlacesWindows() {
    return QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
}

void shapeWindow(QWidget& widget, const QImage& image, bool composited) {
    auto* connection = x11();
    if (connection == nullptr) {
        // Elsewhere a window's mask is where it takes clicks, and no more.
        if (QWindow* window = widget.windowHandle())
            window->setMask(solidRegion(image.scaled(widget.size()), clickable));
        return;
    }
    if (!composited) {
        const bool sharp = image.size() == widget.size();
        const QImage seen =
            sharp ? image : image.scaled(widget.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        widget.setMask(solidRegion(seen, opaque));
        return;
    }
    if (!widget.mask().isEmpty()) widget.clearMask();
    setInputRegion(connection, widget, solidRegion(image, clickable));
}

}  // namespace agent
