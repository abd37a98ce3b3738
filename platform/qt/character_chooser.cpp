#include "platform/qt/character_chooser.h"

#include <QDialogButtonBox>
#include <QIcon>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/qt/text.h"

namespace velmora::qt {
namespace {

constexpr int pictureSize = 128;
constexpr int inARow = 4;

// Keeps its place in the row until there is something to see.
QIcon framed(const QPixmap& picture, double scale) {
    QPixmap whole(QSize(pictureSize, pictureSize) * scale);
    whole.setDevicePixelRatio(scale);
    whole.fill(Qt::transparent);
    if (!picture.isNull()) {
        QPainter painter(&whole);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        const QSizeF size = QSizeF(picture.size()).scaled(pictureSize, pictureSize, Qt::KeepAspectRatio);
        const QPointF corner((pictureSize - size.width()) / 2, (pictureSize - size.height()) / 2);
        painter.drawPixmap(QRectF(corner, size), picture, QRectF(picture.rect()));
    }
    QIcon icon(whole);
    icon.addPixmap(whole, QIcon::Selected);  // not tinted: the frame shows what is chosen
    return icon;
}

}  // namespace

CharacterChooser::CharacterChooser(CharacterSettings settings, const std::vector<std::string>& names,
                                   std::function<QPixmap(const std::string&)> picture)
    : QDialog(nullptr, Qt::Window),
      settings_(std::move(settings)),
      picture_(std::move(picture)),
      names_(new QListWidget) {
    setWindowTitle(tr("Choose Character"));
    names_->setAccessibleName(tr("Characters"));
    names_->setViewMode(QListView::IconMode);
    names_->setMovement(QListView::Static);
    names_->setResizeMode(QListView::Adjust);
    names_->setIconSize({pictureSize, pictureSize});
    names_->setSpacing(6);
    for (const std::string& name : names)
        new QListWidgetItem(framed({}, devicePixelRatioF()), shown(name), names_);  // the list owns it
    const int cell = pictureSize + 30;
    names_->setMinimumSize(cell + 40, pictureSize + 3 * fontMetrics().height() + 20);
    QObject::connect(names_, &QListWidget::itemActivated, this, [this] { accept(); });

    auto* later = new QLabel(tr("The character comes when Velmora is started the next time."));
    later->setWordWrap(true);
    auto* box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QObject::connect(box, &QDialogButtonBox::accepted, this, &QDialog::accept);
    QObject::connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* all = new QVBoxLayout(this);
    all->addWidget(names_, 1);
    all->addWidget(later);
    all->addWidget(box);
    // Large letters on a small screen: the pictures stand in more than one row.
    resize(std::min(cell * inARow + 40, screen()->availableSize().width() - 40), sizeHint().height());
}

// One in each turn of the loop: the window is there at once, however many there are.
void CharacterChooser::drawNext(int row) {
    if (row >= names_->count() || !isVisible()) return;
    QListWidgetItem* item = names_->item(row);
    settings_.loop.turn(
        [&] { item->setIcon(framed(picture_(typedBytes(item->text())), devicePixelRatioF())); });
    QTimer::singleShot(0, this, [this, row] { drawNext(row + 1); });
}

void CharacterChooser::showEvent(QShowEvent* event) {
    const auto now =
        names_->findItems(shown(settings_.machine.value("Character", "Default")), Qt::MatchFixedString);
    if (!now.isEmpty()) names_->setCurrentItem(now.first());
    names_->setFocus();
    QDialog::showEvent(event);
    QTimer::singleShot(0, this, [this] { drawNext(0); });
}

void CharacterChooser::accept() {
    if (const QListWidgetItem* item = names_->currentItem()) {
        settings_.loop.turn([&] {
            settings_.writer.write("Character", "Default", typedBytes(item->text()), settings_.file);
        });
    }
    QDialog::accept();
}

}  // namespace velmora::qt
