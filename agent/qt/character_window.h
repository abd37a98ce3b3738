#pragma once

#include <QElapsedTimer>
#include <QImage>
#include <QPoint>
#include <QWidget>
#include <functional>

namespace agent {

/// The figure on the desktop: a window without frame that never takes the focus, and which a press of the
/// left button drags.
class CharacterWindow : public QWidget {
public:
    /// `size` in device independent pixels.
    explicit CharacterWindow(QSize size);

    /// Shows a frame, painted for the window's device pixels. `still`: it will stand for a while, and where
    /// clicks go is worked out for it.
    void setFrame(QImage frame, bool still);

    /// Device pixels to a device independent one.
    double deviceScale() const { return devicePixelRatioF(); }

    /// The position nearest to `position` at which the whole window is on one screen.
    QPoint inside(QPoint position) const;

    /// Whether the mouse holds the window.
    bool held() const { return dragged_; }

    /// Moves the window there, which the desktop does a little later.
    void place(QPoint position);

    /// Where the window is, or will be as soon as the desktop has moved it.
    QPoint position() const;

    /// Asks again whether the desktop is composited, and follows. Costs a round trip to the server.
    void updateComposited();

    /// Button (1 left, 2 right, 4 middle), keys held (1 shift, 2 control, 4 alt), position on the desktop.
    using Clicked = std::function<void(int button, int shift, int x, int y)>;
    Clicked onClick;
    Clicked onDoubleClick;
    std::function<void()> onDragged;  ///< has been moved a little, and is still held
    std::function<void()> onDropped;  ///< has been let go where it now stands

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void tell(const Clicked& told, const QMouseEvent& event);
    void shape();

    QImage frame_;
    bool composited_ = true;
    QPoint placed_;
    QElapsedTimer sincePlaced_;
    bool pressed_ = false;
    bool dragged_ = false;
    QPoint pressedAt_;  ///< on the desktop
    QPoint grip_;       ///< from the window's corner to the pointer
};

}  // namespace agent
