#include "hosts/character_windows.h"

#include <QDir>
#include <algorithm>
#include <array>
#include <set>
#include <string_view>
#include <variant>

#include "agent/qt/figure_view.h"
#include "agent/qt/part_art.h"
#include "hosts/shown_character.h"
#include "platform/files.h"

namespace velmora {
namespace {

struct KnownVoice {
    std::string_view name;
    std::string_view caption;
    bool everywhere = true;  // else only where it is installed
};
constexpr std::array<KnownVoice, 9> voices = {{{"en-us", "American (en-us)"},
                                               {"en-us-nyc", "American, New York (en-us-nyc)"},
                                               {"en-gb", "British (en-gb)"},
                                               {"en-gb-x-rp", "British, refined (en-gb-x-rp)"},
                                               {"en-gb-scotland", "Scottish (en-gb-scotland)"},
                                               {"en-029", "Caribbean (en-029)"},
                                               {"flite:slt", "Clear, female (slt)", false},
                                               {"flite:rms", "Clear, male (rms)", false},
                                               {"flite:awb", "Clear, Scottish male (awb)", false}}};

std::vector<qt::OfferedVoice> voicesOnOffer() {
    const auto installed = agent::installedVoices();
    std::vector<qt::OfferedVoice> offered;
    for (const KnownVoice& voice : voices) {
        if (voice.everywhere || std::ranges::find(installed, voice.name) != installed.end())
            offered.push_back({std::string(voice.name), std::string(voice.caption)});
    }
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

void CharacterWindows::setFigure(agent::QtCharacter& figure, Sound sound) {
    figure_ = &figure;
    sound_ = sound;
    figure.onMoved = [this] {
        if (onFigureMoved) onFigureMoved();
    };
}

void CharacterWindows::listening(bool on) {
    if (figure_) figure_->listening(on);
}

void CharacterWindows::speechBegun() {
    if (figure_) figure_->speechHeard();
}

void CharacterWindows::propertiesAsked() {
    if (!options_ || !options_->isVisible()) {
        options_ = std::make_unique<qt::CharacterOptions>(settings(), voicesOnOffer(), trial(), [this] {
            if (figure_) applySettings(*figure_, machine_, sound_);
            if (onApplied) onApplied();
        });
        if (onListenNow) {
            options_->offerListening([this] {
                if (onListenNow) onListenNow();
            });
        }
    }
    raise(*options_);
}

// A figure of the window's own: the one on the desktop has its requests to perform.
qt::SpeechTrial CharacterWindows::trial() {
    auto read = readPackage(machine_.characterPackage());
    auto* package = std::get_if<agent::Package>(&read);
    const auto random = std::make_shared<SeededRandom>(machine_.seed);
    auto made = package == nullptr
                    ? nullptr
                    : agent::FigureView::make(std::move(*package), [random](std::size_t count) {
                          return static_cast<std::size_t>(random->Rnd() * static_cast<double>(count));
                      });
    agent::FigureView* view = made.release();  // the window's from here on
    return {view, [this, view](const qt::SpeechChoice& choice) {
                if (view == nullptr) return;
                const auto wanted = voiceSettings(machine_, choice, Sound::asConfigured);
                using enum agent::Action;
                view->perform(
                    agent::makeVoice(wanted, view->voice(), view->post()),
                    {{show, {}}, {play, "Explain"}, {speak, "This is how I sound."}, {play, "RestPose"}});
            }};
}

agent::PackageResult CharacterWindows::readPackage(const std::string& package) const {
    return agent::readPackage(machine_.charactersFolder(package), package);
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
