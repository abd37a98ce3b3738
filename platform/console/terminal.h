#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/boxes.h"
#include "platform/console/addresses.h"
#include "platform/console/line_input.h"
#include "platform/console/lines.h"
#include "platform/console/reporter.h"
#include "platform/console/terminal_ports.h"
#include "platform/engine/engine_agent.h"
#include "platform/form.h"
#include "platform/loop.h"

namespace velmora {

/// The program in a terminal: a reporter prints what the program does, and lines of input are followed.
///
/// A line is read only when nothing is due any more: the program is idle, or a handler of it waits in a
/// Yes/No box or a file dialog or in a loop that yields. That moment is also when the line before gets its
/// `ok`.
class Terminal : public BoxView {
public:
    struct Needs {
        Loop& loop;
        Forms& forms;
        Boxes& boxes;
        EngineAgent& agent;
        TerminalTray& tray;
        TerminalPointer& pointer;
        TerminalShell& shell;
        TerminalLink& link;
        /// Hears a recording, and tells of the end: with a sentence if it can't be heard. Empty: nothing can.
        std::function<void(const std::string& path, std::function<void(const std::string& failure)> done)>
            hear;
        LineInput& input;
        LinePrinter& printer;
    };
    explicit Terminal(Needs needs);
    ~Terminal() override;

    /// The last lines, once the loop has ended.
    void finish();

    /// Whether the input, not the program, ended it: then no form is told of the end.
    bool cut() const { return cut_; }

    void boxOpened(const std::shared_ptr<Box>& box) override;
    void boxClosed(const std::shared_ptr<Box>&) override {}

private:
    using Fields = std::vector<std::string>;
    struct Command {
        std::string_view name;
        std::size_t least;  ///< fields, the command's name included
        std::size_t most;
        void (Terminal::*run)(const Fields&);
    };
    static const std::vector<Command>& commands();

    bool idle();
    void follow(const std::string& line);
    void row(const Fields& fields);

    void menu(const Fields& fields);
    void mouseOnCharacter(const Fields& fields);
    void mouseOnTray(const Fields& fields);
    void click(const Fields& fields);
    void type(const Fields& fields);
    void select(const Fields& fields);
    void get(const Fields& fields);
    void rows(const Fields& fields);
    void say(const Fields& fields);
    void hear(const Fields& fields);
    void command(const Fields& fields);
    void listCommands(const Fields& fields);
    void listForms(const Fields& fields);
    void listControls(const Fields& fields);
    void listMenus(const Fields& fields);
    void close(const Fields& fields);
    void answer(const Fields& fields);
    void pick(const Fields& fields);
    void cancel(const Fields& fields);
    void clipboard(const Fields& fields);
    void point(const Fields& fields);
    void link(const Fields& fields);
    void wait(const Fields& fields);
    void skip(const Fields& fields);
    void quit(const Fields& fields);
    void end();

    Needs needs_;
    Reporter reporter_;
    Addresses addresses_;
    LoopTimer waiting_;     ///< runs while a `wait` line is under way
    bool hearing_ = false;  ///< a `hear` line is under way
    bool ready_ = false;
    bool answerOwed_ = false;  ///< the last line has had neither `ok` nor `error`
    bool cut_ = false;
};

}  // namespace velmora
