#pragma once

#include <QDialog>
#include <functional>
#include <string>
#include <vector>

#include "platform/qt/character_settings.h"

class QCheckBox;
class QComboBox;
class QPushButton;
class QSpinBox;

namespace velmora::qt {

/// How the character is to speak: the texts of the settings, empty for what is the character's own.
struct SpeechChoice {
    std::string voice;
    std::string rate;
    std::string pitch;
};

/// A voice on offer.
struct OfferedVoice {
    std::string name;     ///< what the settings call it
    std::string caption;  ///< what a person calls it
};

/// How a choice is tried out, without being kept.
struct SpeechTrial {
    QWidget* figure = nullptr;  ///< belongs to the window that it is given to; null: there is nothing to see
    std::function<void(const SpeechChoice&)> speak;
};

/// The window with the character's own options: its figure, its voice, and the key to talk to it. Each time
/// it opens it shows what is set; OK writes what was changed.
class CharacterOptions : public QDialog {
public:
    /// `applied` is told when something has been written.
    CharacterOptions(CharacterSettings settings, const std::vector<OfferedVoice>& voices, SpeechTrial trial,
                     std::function<void()> applied);

    /// Offers to listen at once, with whatever keys and microphone are in use now.
    void offerListening(std::function<void()> listen);

    void accept() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* figurePart();
    QWidget* voicePart(const std::vector<OfferedVoice>& voices);
    QWidget* hearingPart();
    SpeechChoice choice() const;
    void write(const char* section, const char* key, const std::string& value);
    void writeSwitch(const char* key, const QCheckBox& box);

    CharacterSettings settings_;
    std::function<void()> applied_;
    bool written_ = false;
    QComboBox* size_;
    QCheckBox* balloon_;
    QCheckBox* autoHide_;
    QCheckBox* idle_;
    QComboBox* voice_;
    QSpinBox* rate_;
    QSpinBox* pitch_;
    QComboBox* device_;
    QComboBox* key_;
    QPushButton* listen_;
};

}  // namespace velmora::qt
