#pragma once

#include <QElapsedTimer>
#include <QImage>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>

#include "agent/performer.h"
#include "agent/qt/balloon.h"
#include "agent/qt/package_reader.h"
#include "agent/qt/part_art.h"
#include "agent/qt/shown_line.h"
#include "agent/request_queue.h"

namespace agent {

/// A figure inside a window, which performs there what it is asked for, its balloon beside it. It stands at
/// rest from the beginning, and stops with its window.
class FigureView : public QWidget, private Display {
public:
    /// Null if the package's art is of no use. `pick` as for `Performer`.
    static std::unique_ptr<FigureView> make(Package package,
                                            std::function<std::size_t(std::size_t count)> pick);
    ~FigureView() override;

    /// Drops what it was asked for before, and performs these orders with this voice; null: at a reading
    /// pace.
    void perform(std::unique_ptr<Voice> voice, const std::vector<Order>& orders);

    /// What the voice posts its events by; of use as long as the view.
    Post post();

    const CharacterVoice& voice() const { return rig_.voice; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    FigureView(Rig rig, std::unique_ptr<PartArt> art, std::function<std::size_t(std::size_t count)> pick);

    // Display
    void draw(const Pose& pose, bool still) override;
    void showFigure(bool) override {}
    Place position() const override { return {}; }
    void place(Place) override {}
    Place inside(Place) const override { return {}; }
    std::optional<Place> pointerFrom(double x, double y) const override;
    void openBalloon(BalloonKind kind, const SpokenLine& line) override;
    void revealWord(std::size_t word) override;
    void closeBalloon() override { balloon_.closeNow(); }

    const Rig rig_;
    const std::unique_ptr<PartArt> art_;
    Balloon balloon_;
    ShownLine line_;
    Pose pose_;
    QElapsedTimer clock_;
    QTimer wake_;
    Performer performer_;
    RequestQueue queue_;
    std::unique_ptr<Voice> voice_;  ///< goes first: its thread posts to this
};

}  // namespace agent
