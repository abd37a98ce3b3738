#include "platform/qt/character_options.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>

#include "platform/qt/text.h"

namespace velmora::qt {
namespace {

struct Range {
    int least;
    int most;
};
constexpr Range ratesOffered{80, 450};
constexpr Range pitchesOffered{0, 99};
const char* const section = "Speech";

// A number, or, one below the least, the character's own.
QSpinBox* numberField(Range range, const QString& unit) {
    auto* field = new QSpinBox;
    field->setRange(range.least - 1, range.most);
    field->setSpecialValueText(QObject::tr("The character's own"));
    field->setSuffix(unit);
    return field;
}

void setNumber(QSpinBox& field, const std::string& text) {
    bool isNumber = false;
    const int number = shown(text).toInt(&isNumber);
    field.setValue(isNumber ? number : field.minimum());
}

std::string numberOf(const QSpinBox& field) {
    return field.value() == field.minimum() ? std::string() : std::to_string(field.value());
}

// A value that the window does not offer stands in the list too, so that OK does not lose it.
void choose(QComboBox& box, const std::string& value) {
    const QString data = shown(value);
    if (box.findData(data) < 0) box.addItem(data, data);
    box.setCurrentIndex(box.findData(data));
}

std::string chosen(const QComboBox& box) {
    return typedBytes(box.currentData().toString());
}

QLabel* hint() {
    auto* label = new QLabel(QObject::tr("Changes tell when Velmora is started the next time."));
    label->setWordWrap(true);
    return label;
}

QDialogButtonBox* buttons(QDialog& window) {
    auto* box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QObject::connect(box, &QDialogButtonBox::accepted, &window, &QDialog::accept);
    QObject::connect(box, &QDialogButtonBox::rejected, &window, &QDialog::reject);
    return box;
}

}  // namespace

SpeechOptions::SpeechOptions(CharacterSettings settings, const std::vector<std::string>& voices,
                             std::function<void(const SpeechChoice&)> tryIt)
    : QDialog(nullptr, Qt::Window),
      settings_(std::move(settings)),
      voice_(new QComboBox),
      rate_(numberField(ratesOffered, tr(" words per minute"))),
      pitch_(numberField(pitchesOffered, {})),
      device_(new QComboBox) {
    setWindowTitle(tr("Character Options"));
    voice_->addItem(tr("The character's own"), QString());
    for (const std::string& voice : voices) voice_->addItem(shown(voice), shown(voice));
    device_->addItem(tr("The desktop's loudspeaker"), QStringLiteral("default"));
    device_->addItem(tr("None: speak silently"), QStringLiteral("none"));

    auto* form = new QFormLayout(this);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(tr("&Voice:"), voice_);
    form->addRow(tr("&Rate:"), rate_);
    form->addRow(tr("&Pitch:"), pitch_);
    form->addRow(tr("&Sound:"), device_);
    form->addRow(hint());
    QDialogButtonBox* box = buttons(*this);
    auto* trial = box->addButton(tr("&Try it"), QDialogButtonBox::ActionRole);
    trial->setObjectName(QStringLiteral("tryIt"));
    trial->setAutoDefault(false);
    QObject::connect(trial, &QPushButton::clicked, this,
                     [this, tryIt = std::move(tryIt)] { settings_.loop.turn([&] { tryIt(choice()); }); });
    form->addRow(box);
}

SpeechChoice SpeechOptions::choice() const {
    return {chosen(*voice_), numberOf(*rate_), numberOf(*pitch_)};
}

void SpeechOptions::showEvent(QShowEvent* event) {
    choose(*voice_, settings_.machine.value(section, "Voice"));
    setNumber(*rate_, settings_.machine.value(section, "Rate"));
    setNumber(*pitch_, settings_.machine.value(section, "Pitch"));
    choose(*device_, settings_.machine.value(section, "Device"));
    QDialog::showEvent(event);
}

void SpeechOptions::write(const char* key, const std::string& value) {
    if (value != settings_.machine.value(section, key))
        settings_.writer.write(section, key, value, settings_.file);
}

void SpeechOptions::accept() {
    settings_.loop.turn([this] {
        const SpeechChoice made = choice();
        write("Voice", made.voice);
        write("Rate", made.rate);
        write("Pitch", made.pitch);
        write("Device", chosen(*device_));
    });
    QDialog::accept();
}

CharacterChooser::CharacterChooser(CharacterSettings settings, const std::vector<std::string>& names,
                                   std::function<QPixmap(const std::string&)> preview)
    : QDialog(nullptr, Qt::Window),
      settings_(std::move(settings)),
      preview_(std::move(preview)),
      names_(new QListWidget),
      picture_(new QLabel) {
    setWindowTitle(tr("Choose Character"));
    for (const std::string& name : names) names_->addItem(shown(name));
    names_->setAccessibleName(tr("Characters"));
    picture_->setAlignment(Qt::AlignCenter);
    picture_->setMinimumSize(200, 200);
    QObject::connect(names_, &QListWidget::currentTextChanged, this, [this](const QString& name) {
        settings_.loop.turn([&] { picture_->setPixmap(preview_(typedBytes(name))); });
    });
    QObject::connect(names_, &QListWidget::itemActivated, this, [this] { accept(); });

    auto* both = new QHBoxLayout;
    both->addWidget(names_);
    both->addWidget(picture_, 1);
    auto* all = new QVBoxLayout(this);
    all->addLayout(both, 1);
    all->addWidget(hint());
    all->addWidget(buttons(*this));
}

void CharacterChooser::showEvent(QShowEvent* event) {
    const auto now =
        names_->findItems(shown(settings_.machine.value("Character", "Default")), Qt::MatchFixedString);
    if (!now.isEmpty()) names_->setCurrentItem(now.first());
    names_->setFocus();
    QDialog::showEvent(event);
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
