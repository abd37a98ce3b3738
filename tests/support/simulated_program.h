#pragma once

#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "platform/boxes.h"
#include "platform/console/addresses.h"
#include "platform/console/lines.h"
#include "platform/console/reporter.h"
#include "platform/console/terminal_ports.h"
#include "platform/engine/engine_agent.h"
#include "platform/engine/instant_stage.h"
#include "platform/machine_settings.h"
#include "platform/pattern_regional.h"
#include "platform/platform.h"
#include "program/program.h"
#include "tests/support/simulated_machine.h"

namespace velmora {

/// A stage for one figure: an order ends at once, or, while `paused`, when the test says so.
class SimulatedStage : public InstantStage {
public:
    void perform(const agent::Order& order, std::function<void(bool performed)> done) override;
    void cut() override { done_ = nullptr; }
    void end();
    bool paused = false;

private:
    std::function<void(bool performed)> done_;
};

/// One running copy of the program on a simulated machine.
class SimulatedProgram : private LoopHost, private Application, private Clock, private BoxView {
public:
    SimulatedProgram(SimulatedMachine& machine, std::string folder);
    ~SimulatedProgram() override;

    // What a person does. Each runs until nothing is due, fails the test if a person could
    // not do it, and gives this program again, for what follows.
    SimulatedProgram& menu(const std::string& address);
    SimulatedProgram& click(const std::string& address);
    SimulatedProgram& type(const std::string& address, const std::string& text);
    SimulatedProgram& select(const std::string& address, int row);
    SimulatedProgram& clickCharacter(int button);
    SimulatedProgram& doubleClickCharacter(int button);
    SimulatedProgram& clickTray(int button);
    /// What a microphone would have heard.
    SimulatedProgram& say(const std::string& words);
    /// A command as it would come from a recognition, or with 0 from the character's list.
    SimulatedProgram& command(const std::string& name, int confidence = 0);
    SimulatedProgram& close(const std::string& form);
    /// Answers the newest box that waits.
    SimulatedProgram& answer(BoxAnswer answer);
    /// Chooses the path in the newest file dialog, or cancels it.
    SimulatedProgram& pick(std::optional<std::string> path);

    /// Runs something inside the program, in a turn, until nothing is due.
    SimulatedProgram& run(std::function<void(Program&)> what);

    /// What the program has done since the last call, in the lines of the terminal host, blanks for TABs.
    std::vector<std::string> takeLines();
    /// The spoken texts among them, as the balloon shows them.
    std::vector<std::string> takeSaid();

    std::string value(const std::string& address);
    bool ended() const { return ended_; }
    SimulatedStage& stage() { return *stage_; }
    TerminalPointer& pointer() { return pointer_; }

private:
    friend class SimulatedMachine;

    std::chrono::milliseconds elapsed() const override { return machine_.now(); }
    void serve(std::optional<std::chrono::milliseconds> atMost) override;
    const std::string& Path() const override { return folder_; }
    bool PrevInstance() override { return !machine_.lockFolder(folder_, *this); }
    DateTime now() const override;
    void boxOpened(const std::shared_ptr<Box>& box) override;
    void boxClosed(const std::shared_ptr<Box>&) override {}

    bool due() const;
    void resume();
    void giveBaton(bool toProgram);
    void live();

    SimulatedMachine& machine_;
    std::string folder_;

    std::deque<std::function<void()>> inbox_;
    std::ostringstream out_;
    LinePrinter printer_{out_};
    Loop loop_{*this};
    IniSettingsFile settings_{machine_.files};
    MachineSettings machineSettings_{settings_, folder_};
    SeededRandom random_{1};
    PatternRegional regional_;
    Boxes boxes_{loop_};
    TerminalShell shell_{printer_, nullptr};
    TerminalTray tray_{printer_, nullptr};
    TerminalPointer pointer_;
    SimulatedWinsocks winsocks_{machine_.network,
                                [this](std::function<void()> call) { inbox_.push_back(std::move(call)); }};
    SimulatedInets inets_{loop_, machine_.web};
    TerminalLink link_{printer_, machine_.link};
    SimulatedStage* stage_ = nullptr;
    EngineAgent agent_;
    Platform platform_;
    Program program_;
    Reporter reporter_;

    std::optional<std::chrono::milliseconds> wakeAt_{std::chrono::milliseconds(0)};
    bool cut_ = false;
    bool ended_ = false;
    std::exception_ptr broken_;

    std::mutex mutex_;
    std::condition_variable baton_;
    bool programHasBaton_ = false;
    std::thread thread_;
};

}  // namespace velmora
