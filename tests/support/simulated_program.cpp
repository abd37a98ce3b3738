#include "tests/support/simulated_program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "base/text.h"

namespace velmora {

using std::chrono::milliseconds;

void SimulatedStage::perform(const agent::Order&, std::function<void(bool performed)> done) {
    if (paused) {
        done_ = std::move(done);
    } else {
        done(true);
    }
}

void SimulatedStage::end() {
    if (const auto done = std::exchange(done_, nullptr)) done(true);
}

SimulatedProgram::SimulatedProgram(SimulatedMachine& machine, std::string folder)
    : machine_(machine),
      folder_(std::move(folder)),
      agent_({.loop = loop_,
              .random = random_,
              .load =
                  [this](EngineAgent&) {
                      if (machine_.character.empty()) return Actor{};
                      auto stage = std::make_unique<SimulatedStage>();
                      stage_ = stage.get();
                      return Actor{machine_.character, std::move(stage)};
                  }}),
      platform_{.loop = loop_,
                .application = *this,
                .files = machine_.files,
                .settings = settings_,
                .machine = machineSettings_,
                .clock = *this,
                .random = random_,
                .regional = regional_,
                .dialogs = boxes_,
                .shell = shell_,
                .tray = tray_,
                .pointer = pointer_,
                .agent = agent_,
                .winsocks = winsocks_,
                .inets = inets_,
                .link = link_},
      program_(platform_),
      reporter_(printer_, program_.forms(), boxes_, agent_) {
    boxes_.add(*this);
    loop_.onFailure = [this](const Failure& failure) {
        printer_.print({"failed", std::to_string(failure.number), failure.description});
    };
    program_.start();
    thread_ = std::thread([this] { live(); });
}

SimulatedProgram::~SimulatedProgram() {
    if (!ended_) {
        cut_ = true;
        inbox_.emplace_back([this] { loop_.end(); });
        while (!ended_) giveBaton(true);
    }
    thread_.join();
    EXPECT_EQ(boxes_.newest(), nullptr) << "a box was left unanswered";
}

void SimulatedProgram::live() {
    {
        std::unique_lock lock(mutex_);
        baton_.wait(lock, [this] { return programHasBaton_; });
    }
    try {
        loop_.run();
        if (!cut_) program_.terminate();
    } catch (...) {
        broken_ = std::current_exception();
    }
    machine_.unlockFolder(*this);
    ended_ = true;
    const std::lock_guard lock(mutex_);
    programHasBaton_ = false;
    baton_.notify_all();
}

void SimulatedProgram::giveBaton(bool toProgram) {
    std::unique_lock lock(mutex_);
    programHasBaton_ = toProgram;
    baton_.notify_all();
    baton_.wait(lock, [&] { return programHasBaton_ != toProgram; });
}

void SimulatedProgram::resume() {
    giveBaton(true);
    if (broken_) std::rethrow_exception(std::exchange(broken_, nullptr));
}

bool SimulatedProgram::due() const {
    return !ended_ && (!inbox_.empty() || (wakeAt_ && *wakeAt_ <= machine_.now()));
}

void SimulatedProgram::serve(std::optional<milliseconds> atMost) {
    if (inbox_.empty() && atMost != milliseconds(0)) {
        if (!atMost && loop_.depth() > 0 && !boxes_.newest()) {
            throw std::logic_error("the program waits for something that nothing can bring about");
        }
        wakeAt_ = atMost ? std::optional(machine_.now() + *atMost) : std::nullopt;
        giveBaton(false);
    }
    if (inbox_.empty()) return;
    const auto call = std::move(inbox_.front());
    inbox_.pop_front();
    loop_.turn(call);
}

DateTime SimulatedProgram::now() const {
    const auto elapsed =
        machine_.startsAt.time + std::chrono::duration_cast<std::chrono::seconds>(machine_.now());
    const auto days = std::chrono::floor<std::chrono::days>(elapsed);
    return {std::chrono::year_month_day(std::chrono::sys_days(machine_.startsAt.date) + days),
            elapsed - days};
}

void SimulatedProgram::boxOpened(const std::shared_ptr<Box>& box) {
    if (box->kind == Box::Kind::message && box->buttons == BoxButtons::ok) box->reply(BoxAnswer::ok);
}

SimulatedProgram& SimulatedProgram::run(std::function<void(Program&)> what) {
    if (ended_) throw std::logic_error("the program has ended");
    inbox_.emplace_back([this, what = std::move(what)] { what(program_); });
    machine_.settle();
    return *this;
}

SimulatedProgram& SimulatedProgram::menu(const std::string& address) {
    return run(
        [&](Program& program) { EXPECT_TRUE(Addresses(program.forms()).menu(address).click()) << address; });
}

SimulatedProgram& SimulatedProgram::click(const std::string& address) {
    return run([&](Program& program) {
        EXPECT_TRUE(Addresses(program.forms()).control(address).click()) << address;
    });
}

SimulatedProgram& SimulatedProgram::type(const std::string& address, const std::string& text) {
    return run([&](Program& program) {
        EXPECT_TRUE(Addresses(program.forms()).control(address).type(text)) << address;
    });
}

SimulatedProgram& SimulatedProgram::select(const std::string& address, int row) {
    return run([&](Program& program) {
        EXPECT_TRUE(Addresses(program.forms()).control(address).select(row)) << address;
    });
}

SimulatedProgram& SimulatedProgram::clickCharacter(int button) {
    return run([&](Program&) { agent_.clicked({.button = button}); });
}

SimulatedProgram& SimulatedProgram::doubleClickCharacter(int button) {
    return run([&](Program&) { agent_.doubleClicked({.button = button}); });
}

SimulatedProgram& SimulatedProgram::clickTray(int button) {
    return run([&](Program&) { button == 1 ? tray_.onClick() : tray_.onRightClick(); });
}

SimulatedProgram& SimulatedProgram::say(const std::string& words) {
    return run([&](Program&) { agent_.say(words); });
}

SimulatedProgram& SimulatedProgram::command(const std::string& name, int confidence) {
    return run([&](Program&) { agent_.commanded({.Name = name, .Voice = {}, .Confidence = confidence}); });
}

SimulatedProgram& SimulatedProgram::close(const std::string& form) {
    return run([&](Program& program) { Addresses(program.forms()).loadedForm(form).close(); });
}

SimulatedProgram& SimulatedProgram::answer(BoxAnswer answer) {
    return run([&](Program&) {
        const auto box = boxes_.newest();
        ASSERT_NE(box, nullptr) << "no box waits for an answer";
        box->reply(answer);
    });
}

SimulatedProgram& SimulatedProgram::pick(std::optional<std::string> path) {
    return run([&](Program&) {
        const auto box = boxes_.newest();
        ASSERT_NE(box, nullptr) << "no dialog is open";
        box->reply(std::move(path));
    });
}

std::string SimulatedProgram::value(const std::string& address) {
    return Addresses(program_.forms()).value(address);
}

std::vector<std::string> SimulatedProgram::takeLines() {
    std::string text = out_.str();
    out_.str({});
    std::replace(text.begin(), text.end(), '\t', ' ');
    const auto lines = splitLines(text);
    return {lines.begin(), lines.end()};
}

std::vector<std::string> SimulatedProgram::takeSaid() {
    const std::string text = out_.str();
    out_.str({});
    std::vector<std::string> said;
    for (const std::string_view line : splitLines(text)) {
        const auto fields = splitFields(line, 3);
        if (fields[0] == "speak") said.push_back(fields[2]);
    }
    return said;
}

}  // namespace velmora
