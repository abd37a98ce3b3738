#pragma once

#include <QDialog>
#include <QPixmap>
#include <functional>
#include <string>
#include <vector>

#include "platform/loop.h"
#include "platform/machine_settings.h"

class QComboBox;
class QLabel;
class QListWidget;
class QSpinBox;

namespace velmora::qt {

/// Where the windows of the character read and write. All of it outlives them.
struct CharacterSettings {
    Loop& loop;
    const MachineSettings& machine;
    SettingsFile& writer;
    std::string file;  ///< path of the file behind `machine`
};

/// How the character is to speak: the texts of the settings, empty for what is the character's own.
struct SpeechChoice {
    std::string voice;
    std::string rate;
    std::string pitch;
};

/// The window with the character's own options. Each time it opens it shows what is set; OK writes what was
/// changed, and it tells at the next start.
class SpeechOptions : public QDialog {
public:
    /// `voices` are the names on offer; `tryIt` lets the choice be heard without keeping it.
    SpeechOptions(CharacterSettings settings, const std::vector<std::string>& voices,
                  std::function<void(const SpeechChoice&)> tryIt);

    void accept() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    SpeechChoice choice() const;
    void write(const char* key, const std::string& value);

    CharacterSettings settings_;
    QComboBox* voice_;
    QSpinBox* rate_;
    QSpinBox* pitch_;
    QComboBox* device_;
};

/// The window that chooses the default character; the choice tells at the next start.
class CharacterChooser : public QDialog {
public:
    /// `names` are the packages found; `preview` draws one of them, and may give a null pixmap.
    CharacterChooser(CharacterSettings settings, const std::vector<std::string>& names,
                     std::function<QPixmap(const std::string&)> preview);

    void accept() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    CharacterSettings settings_;
    std::function<QPixmap(const std::string&)> preview_;
    QListWidget* names_;
    QLabel* picture_;
};

}  // namespace velmora::qt
