#include <gmock/gmock.h>

#include "core/crypter.h"
#include "tests/support/simulated_machine.h"
#include "tests/support/simulated_program.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;
using namespace testing;

const std::vector<std::string> joke{"play GetAttention", "speak Knock, knock. Knock, knock.",
                                    "play GetAttentionReturn", "play Pleased"};

/// A day that begins at 8:55 on 5 March 2026, with two appointments.
class Day : public testing::Test {
protected:
    Day() {
        machine.startsAt.time = 8h + 55min;
        machine.setting("/home", "Options", "Default", "True");
        machine.setting("/home", "Options", "Jokes", "On");
        machine.setting("/home", "User", "Name", "Ann");
        machine.files.put("/home/Jokes.txt", "Knock, knock.\r\n");
        machine.files.put("/home/play.vls", "Show\r\nSay:Bravo\r\nPlay:Wave");
        machine.files.put("/home/Appointments.txt", dentist + tea);
    }
    static std::string line(const std::string& record) { return Encipher(record, mainKey) + "\r\n"; }

    SimulatedMachine machine;
    const std::string dentist = line("3/5/2026@10:30:00 AM@Dentist@");
    const std::string tea = line("3/5/2026@3:00:00 PM@Tea with Bob@");
    const std::string walk = line("3/6/2026@10:00:00 AM@Walk@");
};

TEST_F(Day, IsSaidInOrderAndLeavesTheFilesThatTheNextDayBeginsWith) {
    auto& program = machine.start("/home");
    EXPECT_THAT(program.takeSaid(), ElementsAre("Morning Ann.", "You have 2appointments today."));
    const std::string profile = machine.files.read("/home/Velmora.ini");

    program.menu("mnuAlarm").type("AlarmTPick", "09:00:00").type("txtAlarmEvent", "Stand up");
    program.click("cmdAlarmSet").takeLines();
    // With the counter put back no joke comes before the alarm, and one does soon after it.
    const auto countFrom = [&](std::int16_t ticks) {
        program.run([=](Program& inside) { inside.jokes().JokeTicks = ticks; });
    };
    for (int minute = 0; minute < 5; ++minute) {
        EXPECT_THAT(program.takeLines(), IsEmpty()) << minute;
        countFrom(0);
        machine.advance(1min);
    }
    EXPECT_THAT(program.takeLines(), ElementsAre("play Announce", "speak  Stand up  Stand up"));
    std::vector<std::string> told;
    for (int minute = 0; minute < 100 && told.empty(); ++minute) {
        countFrom(1);
        machine.advance(1min);
        told = program.takeLines();
    }
    EXPECT_EQ(told, joke);

    program.type("Calender", "2026-03-06").type("AppTime", "10:00:00").type("txtEvent", "Walk");
    program.click("cmdAddApp").menu("mnuScriptOpen");
    EXPECT_THAT(program.takeLines(), ElementsAre(StartsWith("dialog open Open File ")));
    EXPECT_THAT(program.pick("/home/play.vls").takeLines(), ElementsAre("speak Bravo Bravo", "play Wave"));

    countFrom(5);  // from here on no more jokes
    machine.advance(24h);
    EXPECT_THAT(program.takeLines(), IsEmpty());
    EXPECT_EQ(machine.files.read("/home/Appointments.txt"), dentist + tea);
    EXPECT_TRUE(program.menu("mnuExit").ended());
    EXPECT_THAT(program.takeSaid(), ElementsAre("Are we finished already?"));
    EXPECT_EQ(machine.files.read("/home/Appointments.txt"), dentist + tea + walk);
    EXPECT_EQ(machine.files.read("/home/Velmora.ini"), profile);

    EXPECT_THAT(machine.start("/home").takeSaid(), Contains("You have Walk today."));
}

}  // namespace
}  // namespace velmora
