#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>
#include <memory>

#include "agent/animator.h"
#include "agent/qt/package_reader.h"
#include "agent/qt/part_art.h"

class QLabel;
class QListWidget;

namespace agent {

/// A window for an artist: a list of a character's clips, and the figure that plays the one chosen. Space
/// stops a clip that repeats; the eyes follow the mouse.
class PreviewWindow : public QWidget {
public:
    /// `size` is the figure's height in pixels.
    PreviewWindow(Package package, std::unique_ptr<PartArt> art, int size);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void play(const QString& name);
    void turn();
    void paintFigure();

    const Package package_;
    const std::unique_ptr<PartArt> art_;
    const double scale_;
    Animator animator_;
    QElapsedTimer clock_;
    QTimer frames_;
    QListWidget* clips_ = nullptr;  ///< both belong to the window
    QLabel* figure_ = nullptr;
};

}  // namespace agent
