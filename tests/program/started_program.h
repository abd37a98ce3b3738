#pragma once

#include <gtest/gtest.h>

#include "tests/support/simulated_machine.h"
#include "tests/support/simulated_program.h"

namespace velmora {

/// A program with the folder /home that has started, greeted its user, and stands idle.
class StartedProgram : public testing::Test {
protected:
    /// An empty name: the user is not known yet.
    explicit StartedProgram(std::string user = "Ann") : user_(std::move(user)) {}

    /// Starts it, if it has not been started; put files into the machine's folder before.
    SimulatedProgram& program() {
        if (!program_) {
            program_ = &machine.startFor(user_);
            program_->takeLines();
        }
        return *program_;
    }

    /// The program once that time has passed.
    SimulatedProgram& after(std::chrono::milliseconds span) {
        program();
        machine.advance(span);
        return program();
    }

    SimulatedMachine machine;

private:
    const std::string user_;
    SimulatedProgram* program_ = nullptr;
};

}  // namespace velmora
