#include "platform/console/terminal.h"

#include <algorithm>
#include <charconv>

#include "base/text.h"

namespace velmora {
namespace {

std::string_view stateName(const Form& form) {
    if (form.state() == FormState::unloaded || form.state() == FormState::loading) return "unloaded";
    if (form.windowState() == WindowStates::minimised) return "minimised";
    return form.visible() ? "shown" : "loaded";
}

int number(const std::string& text) {
    int value = 0;
    const auto [stopped, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || stopped != text.data() + text.size())
        throw LineError("not a number: " + text);
    return value;
}

std::chrono::milliseconds span(const std::string& text) {
    const int milliseconds = number(text);
    if (milliseconds < 0) throw LineError("not a span of time: " + text);
    return std::chrono::milliseconds(milliseconds);
}

void require(bool possible, const std::string& name) {
    if (!possible) throw LineError("disabled, hidden, or nothing of the kind: " + name);
}

}  // namespace

const std::vector<Terminal::Command>& Terminal::commands() {
    static const std::vector<Command> table{
        {"menu", 2, 2, &Terminal::menu},
        {"agent", 2, 2, &Terminal::mouseOnCharacter},
        {"tray", 2, 2, &Terminal::mouseOnTray},
        {"click", 2, 2, &Terminal::click},
        {"set", 2, 3, &Terminal::type},
        {"select", 3, 3, &Terminal::select},
        {"get", 2, 2, &Terminal::get},
        {"rows", 2, 2, &Terminal::rows},
        {"forms", 1, 1, &Terminal::listForms},
        {"controls", 2, 2, &Terminal::listControls},
        {"menus", 1, 1, &Terminal::listMenus},
        {"close", 2, 2, &Terminal::close},
        {"answer", 2, 2, &Terminal::answer},
        {"pick", 2, 2, &Terminal::pick},
        {"cancel", 1, 1, &Terminal::cancel},
        {"clipboard", 1, 2, &Terminal::clipboard},
        {"pointer", 4, 4, &Terminal::point},
        {"link", 2, 2, &Terminal::link},
        {"wait", 2, 2, &Terminal::wait},
        {"skip", 2, 2, &Terminal::skip},
        {"quit", 1, 1, &Terminal::quit},
        {"say", 2, 2, &Terminal::say},
        {"hear", 2, 2, &Terminal::hear},
        {"command", 2, 3, &Terminal::command},
        {"commands", 1, 1, &Terminal::listCommands},
    };
    return table;
}

Terminal::Terminal(Needs needs)
    : needs_(needs),
      reporter_(needs.printer, needs.forms, needs.boxes, needs.agent),
      addresses_(needs.forms),
      waiting_(needs.loop, [] {}) {
    needs_.boxes.add(*this);
    needs_.loop.onIdle = [this] { return idle(); };
    needs_.loop.onFailure = [this](const Failure& failure) {
        needs_.printer.print({"failed", std::to_string(failure.number), failure.description});
    };
}

Terminal::~Terminal() {
    needs_.loop.onIdle = {};
    needs_.loop.onFailure = {};
}

bool Terminal::idle() {
    if (!ready_) needs_.printer.print({"ready"});
    ready_ = true;
    if (waiting_.active() || hearing_) return false;
    if (answerOwed_) needs_.printer.print({"ok"});
    answerOwed_ = false;

    if (const auto line = needs_.input.next()) {
        follow(*line);
        return true;
    }
    if (needs_.input.ended()) end();
    return false;
}

void Terminal::follow(const std::string& text) {
    const std::string_view line =
        text.ends_with('\r') ? std::string_view(text).substr(0, text.size() - 1) : text;
    if (line.starts_with('#')) return;
    answerOwed_ = true;
    needs_.loop.turn([&] {
        try {
            const std::string_view name = firstField(line);
            const auto command = std::find_if(commands().begin(), commands().end(),
                                              [name](const Command& known) { return known.name == name; });
            if (command == commands().end()) throw LineError("no such line: " + std::string(name));
            const Fields fields = splitFields(line, std::max<std::size_t>(command->most, 2));
            if (fields.size() < command->least || fields.size() > command->most)
                throw LineError("wrong number of fields");
            (this->*command->run)(fields);
        } catch (const LineError& error) {
            answerOwed_ = false;
            needs_.printer.print({"error", error.what()});
        }
    });
}

void Terminal::finish() {
    if (answerOwed_) needs_.printer.print({"ok"});
    needs_.printer.print({"bye"});
}

void Terminal::row(const Fields& fields) {
    Fields whole{"row"};
    whole.insert(whole.end(), fields.begin(), fields.end());
    needs_.printer.print(whole);
}

void Terminal::menu(const Fields& fields) {
    require(addresses_.menu(fields[1]).click(), fields[1]);
}

void Terminal::mouseOnCharacter(const Fields& fields) {
    require(needs_.agent.visible(), "the character");
    const auto click = [this](int button) { needs_.agent.clicked({.button = button}); };
    if (fields[1] == "click") return click(1);
    if (fields[1] == "rightclick") return click(2);
    if (fields[1] == "doubleclick") return needs_.agent.doubleClicked({.button = 1});
    throw LineError("no such click: " + fields[1]);
}

void Terminal::mouseOnTray(const Fields& fields) {
    require(needs_.tray.present(), "the tray icon");
    if (fields[1] == "click") return needs_.tray.onClick();
    if (fields[1] == "rightclick") return needs_.tray.onRightClick();
    throw LineError("no such click: " + fields[1]);
}

void Terminal::click(const Fields& fields) {
    require(addresses_.control(fields[1]).click(), fields[1]);
}

void Terminal::type(const Fields& fields) {
    require(addresses_.control(fields[1]).type(fields.size() > 2 ? fields[2] : std::string()), fields[1]);
}

void Terminal::select(const Fields& fields) {
    require(addresses_.control(fields[1]).select(number(fields[2])), fields[1]);
}

void Terminal::get(const Fields& fields) {
    needs_.printer.print({"value", addresses_.value(fields[1])});
}

void Terminal::rows(const Fields& fields) {
    const Control& control = addresses_.control(fields[1]);
    int index = control.firstRow();
    for (const Row& listed : control.listedRows()) {
        Fields line{std::to_string(index++), listed.Key, listed.Text, listed.Tag,
                    listed.Icon == 0 ? std::string() : std::to_string(listed.Icon)};
        line.insert(line.end(), listed.SubItems.begin(), listed.SubItems.end());
        row(line);
    }
    needs_.printer.print({"end"});
}

void Terminal::say(const Fields& fields) {
    require(needs_.agent.commands(), "the character");
    needs_.agent.say(fields[1]);
}

void Terminal::hear(const Fields& fields) {
    require(needs_.agent.commands(), "the character");
    if (!needs_.hear) throw LineError("nothing can be heard");
    hearing_ = true;
    needs_.hear(fields[1], [this](const std::string& failure) {
        hearing_ = false;
        if (failure.empty()) return;
        answerOwed_ = false;
        needs_.printer.print({"error", failure});
    });
}

void Terminal::command(const Fields& fields) {
    require(needs_.agent.commands(), "the character");
    const int confidence = fields.size() > 2 ? number(fields[2]) : 0;
    needs_.agent.commanded({.Name = fields[1], .Voice = {}, .Confidence = confidence});
}

void Terminal::listCommands(const Fields&) {
    if (const CommandCollection* commands = needs_.agent.commands()) {
        for (const AgentCommand& command : commands->all()) {
            row({command.Name, command.Caption, command.Voice, propertyText(command.Enabled),
                 propertyText(command.Visible), std::to_string(command.Confidence)});
        }
    }
    needs_.printer.print({"end"});
}

void Terminal::listForms(const Fields&) {
    for (const Form* form : needs_.forms.all()) row({form->name(), std::string(stateName(*form))});
    needs_.printer.print({"end"});
}

void Terminal::listControls(const Fields& fields) {
    for (const Control* control : addresses_.loadedForm(fields[1]).controls()) {
        row({control->displayName(), std::string(control->kind()), control->mainValue(),
             control->Enabled.text(), control->Visible.text()});
    }
    needs_.printer.print({"end"});
}

void Terminal::listMenus(const Fields&) {
    for (const Form* form : needs_.forms.all()) {
        if (!form->alive()) continue;
        for (const Menu* menu : form->menus()) {
            row({menu->displayName(), menu->Caption.text(), menu->Enabled.text(), menu->Visible.text(),
                 menu->Checked.text(), menu->parent() ? menu->parent()->displayName() : std::string()});
        }
    }
    needs_.printer.print({"end"});
}

void Terminal::close(const Fields& fields) {
    Form& form = addresses_.loadedForm(fields[1]);
    require(form.state() == FormState::loaded, fields[1]);
    form.close();
}

void Terminal::answer(const Fields& fields) {
    const auto box = needs_.boxes.newest();
    if (!box || box->kind != Box::Kind::message) throw LineError("no box waits for an answer");
    if (fields[1] != "yes" && fields[1] != "no") throw LineError("no such answer: " + fields[1]);
    box->reply(fields[1] == "yes" ? BoxAnswer::yes : BoxAnswer::no);
}

void Terminal::pick(const Fields& fields) {
    const auto box = needs_.boxes.newest();
    if (!box || box->kind == Box::Kind::message) throw LineError("no file dialog is open");
    if (fields[1].empty()) throw LineError("no path was picked");
    box->reply(fields[1]);
}

void Terminal::cancel(const Fields&) {
    const auto box = needs_.boxes.newest();
    if (!box || box->kind == Box::Kind::message) throw LineError("no file dialog is open");
    box->reply(std::nullopt);
}

void Terminal::clipboard(const Fields& fields) {
    needs_.shell.setClipboardText(fields.size() > 1 ? fields[1] : std::string());
}

void Terminal::point(const Fields& fields) {
    needs_.pointer.put(fields[1], {number(fields[2]), number(fields[3])});
}

void Terminal::link(const Fields& fields) {
    if (fields[1] == "up") return needs_.link.force(TerminalLink::Forced::up);
    if (fields[1] == "down") return needs_.link.force(TerminalLink::Forced::down);
    if (fields[1] == "error") return needs_.link.force(TerminalLink::Forced::error);
    if (fields[1] == "auto") return needs_.link.release();
    throw LineError("no such link: " + fields[1]);
}

void Terminal::wait(const Fields& fields) {
    waiting_.startOnce(span(fields[1]));
}

void Terminal::skip(const Fields& fields) {
    needs_.loop.skip(span(fields[1]));
}

void Terminal::quit(const Fields&) {
    needs_.printer.print({"ok"});
    end();
}

void Terminal::end() {
    cut_ = true;
    needs_.printer.print({"bye"});
    needs_.printer.mute();
    needs_.loop.end();
}

void Terminal::boxOpened(const std::shared_ptr<Box>& box) {
    if (box->kind == Box::Kind::message && box->buttons == BoxButtons::ok) box->reply(BoxAnswer::ok);
}

}  // namespace velmora
