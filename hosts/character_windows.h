#pragma once

#include <QPointer>
#include <QRect>
#include <functional>
#include <memory>

#include "agent/qt/package_reader.h"
#include "agent/qt/qt_character.h"
#include "hosts/machine.h"
#include "hosts/shown_character.h"
#include "platform/engine/agent_observer.h"
#include "platform/qt/character_chooser.h"
#include "platform/qt/character_options.h"

namespace velmora {

/// The two windows of the character server: how the character looks and speaks, and which one it is. Each is
/// made when it is asked for. Tells the figure on the desktop what it is to know of both, and of listening.
class CharacterWindows : public AgentObserver {
public:
    /// The machine outlives this.
    explicit CharacterWindows(Machine& machine) : machine_(machine) {}

    /// The figure on the desktop, which may go at any time.
    void setFigure(agent::QtCharacter& figure, Sound sound);

    /// The part of the desktop that the figure takes up; empty while it is not on the screen.
    QRect figureArea() const { return figure_ ? figure_->area() : QRect(); }

    std::function<void()> onFigureMoved;  ///< or it has come or gone, or is of another size
    std::function<void()> onApplied;      ///< options of the character have been written
    /// What the options window offers as "Listen now"; if it is empty, that is not offered.
    std::function<void()> onListenNow;

    void listening(bool on) override;
    void speechBegun() override;
    void propertiesAsked() override;
    void choiceAsked() override;

private:
    qt::CharacterSettings settings();
    qt::SpeechTrial trial();
    agent::PackageResult readPackage(const std::string& package) const;
    QPixmap preview(const std::string& package) const;

    Machine& machine_;
    QPointer<agent::QtCharacter> figure_;
    Sound sound_ = Sound::none;
    std::unique_ptr<qt::CharacterOptions> options_;
    std::unique_ptr<qt::CharacterChooser> chooser_;
};

}  // namespace velmora
