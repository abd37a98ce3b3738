#pragma once

#include <memory>
#include <string>

#include "platform/boxes.h"
#include "platform/console/lines.h"
#include "platform/engine/agent_observer.h"
#include "platform/engine/engine_agent.h"
#include "platform/form.h"

namespace velmora {

/// Prints what a program does, a line each: its forms, its boxes, its character.
class Reporter : public ProgramView, public AgentObserver, public BoxView {
public:
    /// `boxes` and `agent` call it until they end; it outlives their use.
    Reporter(LinePrinter& printer, Forms& forms, Boxes& boxes, EngineAgent& agent);
    ~Reporter() override;

    void formChanged(Form& form, FormChange change) override;
    void focusMoved(Control& control) override;
    void menuPopped(Menu& menu) override;

    void loaded(const std::string& name) override;
    void showAsked() override;
    void hideAsked() override;
    void playAsked(const std::string& animation) override;
    void speakAsked(const std::string& text, const std::string& chosen) override;
    void thinkAsked(const std::string& text) override;
    void moveAsked(int x, int y) override;
    void stopAllAsked() override;
    void listenAsked(bool on) override;
    void heard(const std::string& words, const std::string& command, int confidence) override;
    void propertiesAsked() override;
    void choiceAsked() override;

    void boxOpened(const std::shared_ptr<Box>& box) override;
    void boxClosed(const std::shared_ptr<Box>&) override {}

private:
    LinePrinter& printer_;
    Forms& forms_;
};

}  // namespace velmora
