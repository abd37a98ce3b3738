#pragma once

#include <gtest/gtest.h>

#include "tests/support/simulated_machine.h"
#include "tests/support/simulated_program.h"

namespace velmora {

/// A program with the folder /home that has started, greeted its user Ann, and stands idle.
class StartedProgram : public testing::Test {
protected:
    /// Starts it, if it has not been started; put files into the machine's folder before.
    SimulatedProgram& program() {
        if (!program_) {
            machine.setting("/home", "Options", "Default", "True");
            machine.setting("/home", "User", "Name", "Ann");
            program_ = &machine.start("/home");
            program_->takeLines();
        }
        return *program_;
    }

    SimulatedMachine machine;

private:
    SimulatedProgram* program_ = nullptr;
};

}  // namespace velmora
