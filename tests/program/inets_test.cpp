#include <gmock/gmock.h>

#include "tests/program/started_program.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using namespace std::chrono_literals;

class InetsTest : public StartedProgram {
protected:
    /// Begins a transfer in a program; what it gives, or the failure's number, goes to `outcome`.
    void open(SimulatedProgram& where, Inet& inet, const std::string& url) {
        where.run([this, &inet, url](Program&) {
            try {
                outcome = inet.OpenURL(url);
            } catch (const Failure& failure) {
                outcome = std::to_string(failure.number);
            }
        });
    }

    std::string outcome;
};

TEST_F(InetsTest, HangingServerHoldsOnlyItsOwnTransferUntilTheTimeIsOver) {
    machine.web.serve("http://slow/", WebAnswer{.hangs = true});
    machine.web.serveUnder("http://quick/",
                           [](const std::string& url) { return WebAnswer{.body = "page of " + url}; });
    auto slow = program().inets().create();
    auto quick = program().inets().create();
    open(program(), *slow, "http://slow/");
    EXPECT_TRUE(slow->StillExecuting());
    open(program(), *slow, "http://quick/");
    EXPECT_EQ(outcome, "35764");
    open(program(), *quick, "quick/?a=b c");
    EXPECT_EQ(outcome, "page of http://quick/?a=b%20c");
    machine.advance(59s);
    EXPECT_TRUE(slow->StillExecuting());
    machine.advance(1s);
    EXPECT_FALSE(slow->StillExecuting());
    EXPECT_EQ(outcome, "35761");
    EXPECT_THAT(machine.web.takeRequests(), ElementsAre("http://slow/", "http://quick/?a=b%20c"));
}

TEST_F(InetsTest, TwoProgramsShareTheServersAndEachHasItsOwnTransfers) {
    machine.web.serve("http://count/", "1");
    machine.web.serve("http://count/", WebAnswer{.body = "2", .delay = 5s});
    machine.setting("/other", "Options", "Default", "True");
    auto& other = machine.start("/other");
    auto one = program().inets().create();
    auto two = other.inets().create();
    open(program(), *one, "count");
    EXPECT_EQ(outcome, "1");
    open(other, *two, "count");
    EXPECT_EQ(outcome, "1");
    EXPECT_TRUE(two->StillExecuting());
    EXPECT_FALSE(one->StillExecuting());
    machine.advance(5s);
    EXPECT_EQ(outcome, "2");
}

TEST_F(InetsTest, TheEndOfTheProgramEndsATransfer) {
    machine.web.serve("http://slow/", WebAnswer{.hangs = true});
    auto inet = program().inets().create();
    open(program(), *inet, "slow");
    program().menu("mnuExit");
    EXPECT_TRUE(program().ended());
    EXPECT_EQ(outcome, "");
}

}  // namespace
}  // namespace velmora
