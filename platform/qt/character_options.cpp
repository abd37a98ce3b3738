#include "platform/qt/character_options.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QSpinBox>
#include <algorithm>
#include <array>

#include "base/text.h"
#include "platform/qt/text.h"

namespace velmora::qt {
namespace {

struct Range {
    int least;
    int most;
};
constexpr Range ratesOffered{80, 450};
constexpr Range pitchesOffered{0, 99};
constexpr std::array sizesOffered{100, 125, 150, 175, 200, 250, 300};

// Keys that no program needs for writing, under the names that X gives them.
constexpr std::array keysOffered{"Scroll_Lock", "Pause", "Menu", "Control_R", "F9", "F10", "F11", "F12"};

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
void choose(QComboBox& box, const std::string& value, const QString& unit = {}) {
    const QString data = shown(value);
    if (box.findData(data) < 0) box.addItem(data + unit, data);
    box.setCurrentIndex(box.findData(data));
}

std::string chosen(const QComboBox& box) {
    return typedBytes(box.currentData().toString());
}

bool isOn(const MachineSettings& settings, const char* key) {
    return !equalsIgnoringCase(settings.value("Character", key), "False");
}

const QString percent = QStringLiteral(" %");

}  // namespace

CharacterOptions::CharacterOptions(CharacterSettings settings, const std::vector<OfferedVoice>& voices,
                                   SpeechTrial trial, std::function<void()> applied)
    : QDialog(nullptr, Qt::Window),
      settings_(std::move(settings)),
      applied_(std::move(applied)),
      size_(new QComboBox),
      balloon_(new QCheckBox(tr("&Show what it says in a balloon"))),
      autoHide_(new QCheckBox(tr("&Close the balloon by itself"))),
      idle_(new QCheckBox(tr("&Move of its own accord"))),
      voice_(new QComboBox),
      rate_(numberField(ratesOffered, tr(" words per minute"))),
      pitch_(numberField(pitchesOffered, {})),
      device_(new QComboBox),
      key_(new QComboBox),
      listen_(new QPushButton(tr("&Listen now"))) {
    setWindowTitle(tr("Character Options"));
    auto* box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(box, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* tryIt = box->addButton(tr("&Try it"), QDialogButtonBox::ActionRole);
    tryIt->setObjectName(QStringLiteral("tryIt"));
    tryIt->setAutoDefault(false);
    connect(tryIt, &QPushButton::clicked, this,
            [this, speak = std::move(trial.speak)] { settings_.loop.turn([&] { speak(choice()); }); });

    // Large letters on a small screen: the fields scroll, the buttons stay in sight.
    auto* fields = new QWidget;
    auto* column = new QVBoxLayout(fields);
    column->addWidget(figurePart());
    column->addWidget(voicePart(voices));
    column->addWidget(hearingPart());
    column->addStretch();
    auto* scroll = new QScrollArea;
    scroll->setWidget(fields);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setMinimumWidth(fields->minimumSizeHint().width() + 24);
    auto* both = new QHBoxLayout;
    if (trial.figure != nullptr) both->addWidget(trial.figure, 0, Qt::AlignBottom);
    both->addWidget(scroll, 1);
    auto* all = new QVBoxLayout(this);
    all->addLayout(both, 1);
    all->addWidget(box);
    const int wanted = fields->sizeHint().height() + box->sizeHint().height() + 60;
    resize(sizeHint().width(), std::min(wanted, screen()->availableSize().height() - 100));
}

QWidget* CharacterOptions::figurePart() {
    for (const int size : sizesOffered)
        size_->addItem(QString::number(size) + percent, QString::number(size));
    connect(balloon_, &QCheckBox::toggled, autoHide_, &QWidget::setEnabled);
    auto* group = new QGroupBox(tr("Figure"));
    auto* form = new QFormLayout(group);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(tr("Si&ze:"), size_);
    form->addRow(balloon_);
    form->addRow(autoHide_);
    form->addRow(idle_);
    return group;
}

QWidget* CharacterOptions::voicePart(const std::vector<OfferedVoice>& voices) {
    voice_->addItem(tr("The character's own"), QString());
    for (const OfferedVoice& voice : voices) voice_->addItem(shown(voice.caption), shown(voice.name));
    device_->addItem(tr("The desktop's loudspeaker"), QStringLiteral("default"));
    device_->addItem(tr("None: speak silently"), QStringLiteral("none"));
    auto* group = new QGroupBox(tr("Voice"));
    auto* form = new QFormLayout(group);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(tr("&Voice:"), voice_);
    form->addRow(tr("&Speed:"), rate_);
    form->addRow(tr("&Pitch:"), pitch_);
    form->addRow(tr("S&ound:"), device_);
    return group;
}

QWidget* CharacterOptions::hearingPart() {
    for (const char* key : keysOffered) {
        const QString name = QString::fromLatin1(key);
        key_->addItem(QString(name).replace(u'_', u' '), name);
    }
    key_->addItem(tr("None"), QString());
    auto* group = new QGroupBox(tr("Listening"));
    auto* form = new QFormLayout(group);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(tr("&Key to talk:"), key_);
    listen_->setObjectName(QStringLiteral("listenNow"));
    listen_->setAutoDefault(false);
    listen_->hide();
    form->addRow(listen_);
    return group;
}

void CharacterOptions::offerListening(std::function<void()> listen) {
    listen_->show();
    connect(listen_, &QPushButton::clicked, this, [call = std::move(listen)] { call(); });
}

SpeechChoice CharacterOptions::choice() const {
    return {chosen(*voice_), numberOf(*rate_), numberOf(*pitch_)};
}

void CharacterOptions::showEvent(QShowEvent* event) {
    const auto value = [this](const char* section, const char* key) {
        return settings_.machine.value(section, key);
    };
    choose(*size_, value("Character", "Size"), percent);
    balloon_->setChecked(isOn(settings_.machine, "Balloon"));
    autoHide_->setChecked(isOn(settings_.machine, "AutoHide"));
    autoHide_->setEnabled(balloon_->isChecked());
    idle_->setChecked(isOn(settings_.machine, "Idle"));
    choose(*voice_, value("Speech", "Voice"));
    setNumber(*rate_, value("Speech", "Rate"));
    setNumber(*pitch_, value("Speech", "Pitch"));
    choose(*device_, value("Speech", "Device"));
    choose(*key_, value("Hearing", "Key"));
    QDialog::showEvent(event);
}

void CharacterOptions::write(const char* section, const char* key, const std::string& value) {
    if (value == settings_.machine.value(section, key)) return;
    settings_.writer.write(section, key, value, settings_.file);
    written_ = true;
}

void CharacterOptions::writeSwitch(const char* key, const QCheckBox& box) {
    if (box.isChecked() != isOn(settings_.machine, key))
        write("Character", key, box.isChecked() ? "True" : "False");
}

void CharacterOptions::accept() {
    written_ = false;
    settings_.loop.turn([this] {
        const SpeechChoice made = choice();
        write("Character", "Size", chosen(*size_));
        writeSwitch("Balloon", *balloon_);
        writeSwitch("AutoHide", *autoHide_);
        writeSwitch("Idle", *idle_);
        write("Speech", "Voice", made.voice);
        write("Speech", "Rate", made.rate);
        write("Speech", "Pitch", made.pitch);
        write("Speech", "Device", chosen(*device_));
        write("Hearing", "Key", chosen(*key_));
        if (written_ && applied_) applied_();
    });
    QDialog::accept();
}

}  // namespace velmora::qt
