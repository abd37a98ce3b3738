#pragma once

#include <QSvgRenderer>
#include <QWidget>

namespace velmora::qt {

/// A drawing, sharp at every size and scale. The dynamic property "picture" names the file; the drawing keeps
/// its proportions, in the middle of the widget.
class PictureLabel : public QWidget {
public:
    explicit PictureLabel(QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QSvgRenderer drawing_;
};

}  // namespace velmora::qt
