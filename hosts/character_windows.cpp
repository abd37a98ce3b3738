#include "hosts/character_windows.h"

#include <QDir>
#include <set>
#include <variant>

#include "agent/qt/part_art.h"
#include "hosts/shown_character.h"
#include "platform/files.h"

namespace velmora {
namespace {

const std::vector<std::string> voices{"en-us",      "en-gb",     "en-gb-scotland",
                                      "en-gb-x-rp", "en-us-nyc", "en-029"};

// Those that are always there, and those of the clearer engine that are installed.
std::vector<std::string> voicesOnOffer() {
    std::vector<std::string> offered = voices;
    for (std::string& voice : agent::installedVoices()) offered.push_back(std::move(voice));
    return offered;
}

void raise(QDialog& window) {
    window.show();
    window.raise();
    window.activateWindow();
}

}  // namespace

qt::CharacterSettings CharacterWindows::settings() {
    return {machine_.loop, machine_.machineSettings, machine_.settings,
            path(machine_.folders.application, MachineSettings::fileName)};
}

void CharacterWindows::propertiesAsked() {
    if (!options_) {
        options_ = std::make_unique<qt::SpeechOptions>(
            settings(), voicesOnOffer(), [this](const qt::SpeechChoice& choice) { tryVoice(choice); });
    }
    raise(*options_);
}

agent::PackageResult CharacterWindows::readPackage(const std::string& package) const {
    return agent::readPackage(machine_.charactersFolder(package), package);
}

void CharacterWindows::tryVoice(const qt::SpeechChoice& choice) {
    const auto read = readPackage(machine_.characterPackage());
    const auto* package = std::get_if<agent::Package>(&read);
    const agent::VoiceSettings wanted =
        voiceSettings(choice, machine_.machineSettings.value("Speech", "Device"));
    voice_ = agent::makeVoice(
        wanted, package ? package->rig.voice : agent::CharacterVoice{},
        [this](std::function<void()> call) { machine_.loopHost.postFromThread(std::move(call)); });
    voice_->speak(agent::parseSpeech("This is how I sound."), {});
}

void CharacterWindows::choiceAsked() {
    // Made anew each time: packages may have come.
    std::set<std::string> names;
    for (const std::string& folder : {machine_.folders.application, machine_.folders.installed}) {
        const QDir characters(QString::fromStdString(path(folder, "characters")));
        for (const QString& name : characters.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            names.insert(name.toStdString());
        }
    }
    chooser_ =
        std::make_unique<qt::CharacterChooser>(settings(), std::vector(names.begin(), names.end()),
                                               [this](const std::string& name) { return preview(name); });
    raise(*chooser_);
}

QPixmap CharacterWindows::preview(const std::string& package) const {
    const auto read = readPackage(package);
    const auto* found = std::get_if<agent::Package>(&read);
    std::string reason;
    const auto art = found ? agent::PartArt::load(found->art, found->rig, reason) : nullptr;
    return art ? QPixmap::fromImage(art->paint(found->rig, found->rig.rest, 1)) : QPixmap();
}

}  // namespace velmora
