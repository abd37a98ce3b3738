#include "platform/console/reporter.h"

#include "agent/speech_text.h"

#include <array>

#include "platform/control.h"
#include "platform/menu.h"

namespace velmora {
namespace {

std::string_view changeName(FormChange change) {
    constexpr std::array names{"loaded", "shown", "hidden", "minimised", "unloaded"};
    return names.at(static_cast<std::size_t>(change));
}

std::string_view iconName(BoxIcon icon) {
    constexpr std::array names{"none", "exclamation", "information", "question"};
    return names.at(static_cast<std::size_t>(icon));
}

}  // namespace

Reporter::Reporter(LinePrinter& printer, Forms& forms, Boxes& boxes, EngineAgent& agent)
    : printer_(printer), forms_(forms) {
    forms_.add(*this);
    boxes.add(*this);
    agent.add(*this);
}

Reporter::~Reporter() {
    forms_.remove(*this);
}

void Reporter::formChanged(Form& form, FormChange change) {
    printer_.print({"form", form.name(), changeName(change)});
}

void Reporter::focusMoved(Control& control) {
    printer_.print({"focus", control.displayName()});
}

void Reporter::menuPopped(Menu& menu) {
    printer_.print({"popup", menu.form().name() + "." + menu.displayName()});
}

void Reporter::loaded(const std::string& name) {
    printer_.print({"character", name});
}

void Reporter::showAsked() {
    printer_.print({"show"});
}

void Reporter::hideAsked() {
    printer_.print({"hide"});
}

void Reporter::playAsked(const std::string& animation) {
    printer_.print({"play", animation});
}

void Reporter::speakAsked(const std::string& text, const std::string& chosen) {
    printer_.print({"speak", text, agent::shownText(chosen)});
}

void Reporter::thinkAsked(const std::string& text) {
    printer_.print({"think", text});
}

void Reporter::moveAsked(int x, int y) {
    printer_.print({"moveto", std::to_string(x), std::to_string(y)});
}

void Reporter::stopAllAsked() {
    printer_.print({"stopall"});
}

void Reporter::listenAsked(bool on) {
    printer_.print({"listen", on ? "on" : "off"});
}

void Reporter::heard(const std::string& words, const std::string& command, int confidence) {
    printer_.print({"heard", words, command, std::to_string(confidence)});
}

void Reporter::propertiesAsked() {
    printer_.print({"properties"});
}

void Reporter::choiceAsked() {
    printer_.print({"choose"});
}

void Reporter::boxOpened(const std::shared_ptr<Box>& box) {
    if (box->kind != Box::Kind::message) {
        const bool open = box->kind == Box::Kind::openFile;
        return printer_.print({"dialog", open ? "open" : "save", box->title, box->filter});
    }
    printer_.print(
        {"box", box->title, box->text, iconName(box->icon), box->buttons == BoxButtons::ok ? "ok" : "yesno"});
}

}  // namespace velmora
