#include <gmock/gmock.h>

#include "base/text.h"
#include "core/crypter.h"
#include "organiser/appointment.h"
#include "organiser/spoken_date.h"
#include "tests/program/started_program.h"

namespace velmora {
namespace {

using std::chrono::seconds;
using namespace testing;

constexpr const char* file = "/home/Appointments.txt";

/// A file of these records; today is 3/5/2026.
std::string ciphered(const std::vector<std::string>& records) {
    std::string content;
    for (const std::string& record : records) content.append(Encipher(record, mainKey)).append("\r\n");
    return content;
}

class Organiser : public StartedProgram {
protected:
    void add(const std::string& date, const std::string& time, const std::string& event) {
        program().type("Calender", date).type("AppTime", time).type("txtEvent", event).takeLines();
        program().click("cmdAddApp");
    }
    /// Time and event of the rows on view.
    std::vector<std::string> rows() {
        std::vector<std::string> rows;
        program().run([&](Program& inside) {
            for (const Row& row : inside.calender().lvApps.ListItems().all())
                rows.push_back(row.Text + " " + row.SubItems.front());
        });
        return rows;
    }
    std::vector<std::string> saved() {
        std::vector<std::string> records;
        const std::string content = machine.files.read(file);
        LineWalk walk(content);
        while (const auto line = walk.next())
            records.push_back(Decipher(content.substr(line->begin, line->end - line->begin), mainKey));
        return records;
    }
};

TEST(SpokenDate, OrdinalsHaveTheirEndings) {
    using namespace std::chrono;
    struct Case {
        unsigned day;
        const char* text;
    };
    for (const auto& [day, text] :
         {Case{1, "Sunday the 1st"}, Case{2, "Monday the 2nd"}, Case{3, "Tuesday the 3rd"},
          Case{4, "Wednesday the 4th"}, Case{11, "Wednesday the 11th"}, Case{12, "Thursday the 12th"},
          Case{13, "Friday the 13th"}, Case{21, "Saturday the 21st"}, Case{22, "Sunday the 22nd"},
          Case{23, "Monday the 23rd"}, Case{31, "Tuesday the 31st"}})
        EXPECT_EQ(spokenDate(2023y / 1 / day), text + std::string(" of January 2023"));
    EXPECT_EQ(spokenDate(2023y / 2 / 30), " the of  ");
}

TEST_F(Organiser, AlarmGoesOffOnceWithinASecondOfItsTime) {
    program().menu("mnuAlarm").type("AlarmTPick", "09:05:30").type("txtAlarmEvent", "Tea").takeLines();
    program().click("cmdAlarmSet");
    EXPECT_THAT(after(seconds(29)).takeLines(), IsEmpty());
    EXPECT_THAT(after(seconds(1)).takeLines(), ElementsAre("play Announce", "speak  Tea  Tea"));
    EXPECT_THAT(after(std::chrono::hours(48)).takeLines(), IsEmpty());
}

TEST_F(Organiser, AlarmOfAPastTimeOrOneThatTheClockJumpedOverGoesOffAtTheNextTick) {
    program().type("AlarmTPick", "09:04:00").click("cmdAlarmSet");
    EXPECT_THAT(after(seconds(1)).takeSaid(), ElementsAre(" Event"));
    program().type("AlarmTPick", "10:00:00").click("cmdAlarmSet");
    machine.advance(seconds(1));
    machine.startsAt.time += std::chrono::hours(3);
    EXPECT_THAT(after(seconds(1)).takeSaid(), ElementsAre(" Event"));
    EXPECT_THAT(after(seconds(60)).takeSaid(), IsEmpty());
}

TEST_F(Organiser, SilentModeHoldsFromTheClickOnAndTheTestIsSpokenAllTheSame) {
    program().click("cmdAlarmOptions").click("ChkSilent").type("TxtAlarmSay", "Time for");
    program().type("txtAlarmEvent", "tea").takeLines();
    program().menu("mnuHide").click("CmdTest");
    EXPECT_THAT(program().takeLines(), ElementsAre("hide", "show", "speak Time fortea Time fortea"));
    program().run([](Program& inside) { EXPECT_EQ(inside.alarm().AlarmEvent, "tea"); });
    program().close("FrmAlarm").click("cmdAlarmSet").takeLines();
    EXPECT_THAT(after(seconds(1)).takeLines(),
                ElementsAre("play GetAttention", "think  tea", "play GetAttentionReturn"));
}

TEST_F(Organiser, WordsOfTheAlarmAreKeptByOkAndServeTheNextOneToo) {
    program().click("cmdAlarmOptions").type("TxtAlarmSay", "Time for").click("CmdOK");
    EXPECT_THAT(program().takeLines(), Contains("form FrmAlarm unloaded"));
    for (int round = 0; round < 2; ++round) {
        program().click("cmdAlarmSet");
        EXPECT_THAT(after(seconds(2)).takeSaid(), ElementsAre("Time for Event"));
    }
}

TEST_F(Organiser, WhatAPickerMightDeliverInPlaceOfATime) {
    struct Case {
        std::string given, said, event;
    };
    for (const auto& [given, said, event] :
         {Case{"", "You must enter a time.", ""},
          Case{"soon", "The time you entered was not valid.", "Event"}, Case{"9:00:00 PM", "", "Event"}}) {
        program().run([&, text = given](Program& inside) {
            inside.alarm().AlarmEvent.clear();
            inside.alarm().set(text);
        });
        EXPECT_EQ(testing::PrintToString(program().takeSaid()), said.empty() ? "{}" : "{ \"" + said + "\" }");
        program().run(
            [&, expected = event](Program& inside) { EXPECT_EQ(inside.alarm().AlarmEvent, expected); });
        EXPECT_THAT(after(seconds(3)).takeSaid(), IsEmpty());
    }
}

TEST_F(Organiser, AlarmWithoutACharacterPassesInSilence) {
    machine.character.clear();
    program().click("cmdAlarmSet");
    EXPECT_THAT(after(seconds(2)).takeLines(), IsEmpty());
    program().run([](Program& inside) { EXPECT_EQ(inside.alarm().AlarmTime, Alarm::Time("")); });
}

TEST_F(Organiser, GreetingReportsWhatIsDueToday) {
    const std::string lunch = "3/5/2026@12:00:00 PM@Lunch@";
    struct Case {
        std::vector<std::string> records;
        std::string said;
    };
    for (const auto& [records, said] :
         {Case{{}, "You have no appointments today."}, Case{{lunch}, "You have Lunch today."},
          Case{{lunch, "3/5/2027@12:00:00 PM@Other year@", "3/5/2026@1:00:00 PM@Tea@"},
               "You have 2appointments today."}}) {
        SimulatedMachine fresh;
        fresh.setting("/home", "Options", "ReadDates", "True");
        fresh.files.put(file, ciphered(records));
        EXPECT_THAT(fresh.startFor("Ann").takeSaid(), ElementsAre("Morning Ann.", said));
    }
}

TEST_F(Organiser, AppointmentBeforeNowIsRefused) {
    struct Case {
        std::string date, time, said;
    };
    for (const auto& [date, time, said] :
         {Case{"2026-03-04", "23:00:00", "I could not add your appointment."},
          Case{"2026-03-05", "09:04:59", "The time you entered is invalid."}}) {
        add(date, time, "Late");
        EXPECT_THAT(program().takeLines(), ElementsAre("play Sad", "speak " + said + " " + said));
        EXPECT_THAT(rows(), IsEmpty());
    }
    add("2026-03-05", "09:05:00", "Now");
    add("2026-03-06", "00:00:00", "Midnight");
    EXPECT_THAT(program().takeLines(), IsEmpty());
    EXPECT_THAT(rows(), ElementsAre("12:00:00 AM Midnight"));
}

TEST_F(Organiser, RowHoldsTheWholeRecordAndShowsTheEventUpToAnAtSign) {
    add("2026-03-06", "10:30:00", "Mail a@b");
    program().run([](Program& inside) {
        const Row& row = inside.calender().lvApps.ListItems().Item(1);
        EXPECT_EQ(row.Key, "19:05:00 AM");
        EXPECT_EQ(row.Tag, "3/6/2026@10:30:00 AM@Mail a@b@");
    });
    EXPECT_THAT(rows(), ElementsAre("10:30:00 AM Mail a"));
    EXPECT_THAT(program().select("lvApps", 1).menu("mnuDetails").takeLines(),
                ElementsAre("popup FrmCalender.mnuAppPopUp",
                            R"(box Velmora Reminder Appointment for 3/6/2026\nTime 10:30:00 AM\nEvent Mail a)"
                            " none ok"));
    program().close("FrmCalender");
    EXPECT_THAT(saved(), ElementsAre("3/6/2026@10:30:00 AM@Mail a@b@"));
}

TEST_F(Organiser, NothingChosenIsNeitherShownNorRemoved) {
    add("2026-03-06", "10:30:00", "Lunch");
    EXPECT_THAT(program().menu("mnuDetails").menu("mnuRemove").takeLines(), IsEmpty());
    EXPECT_THAT(rows(), SizeIs(1));
}

TEST_F(Organiser, RemovedAppointmentNeverReachesTheFileAndOfTwoEqualOnesTheFirstGoes) {
    add("2026-03-06", "10:30:00", "Twice");
    add("2026-03-06", "11:00:00", "Between");
    add("2026-03-06", "10:30:00", "Twice");
    program().select("lvApps", 3).menu("mnuRemove");
    EXPECT_THAT(rows(), ElementsAre("10:30:00 AM Twice", "11:00:00 AM Between"));
    EXPECT_FALSE(machine.files.exists(file));
    program().menu("FrmCalender.mnuFileClose");
    EXPECT_THAT(saved(), ElementsAre("3/6/2026@11:00:00 AM@Between@", "3/6/2026@10:30:00 AM@Twice@"));
}

TEST_F(Organiser, WithoutAFileAtTheStartASecondOpeningReadsTheSavedOneOnTopOfWhatIsInMemory) {
    add("2026-03-06", "10:30:00", "Lunch");
    for (const std::size_t count : {2U, 2U}) {  // doubled once, and from then on loaded
        program().close("FrmCalender").menu("mnuCalender");
        EXPECT_THAT(rows(), IsEmpty());
        program().type("Calender", "2026-03-06");
        EXPECT_THAT(rows(), SizeIs(count));
    }
}

TEST_F(Organiser, FileThatIsThereIsReadOnce) {
    machine.files.put(file, ciphered({"3/5/2026@1:00:00 PM@Tea@"}));
    program().close("FrmCalender").menu("mnuCalender");
    program().type("Calender", "2026-03-05");  // chosen already, and chosen again
    EXPECT_THAT(rows(), ElementsAre("1:00:00 PM Tea"));
}

TEST_F(Organiser, LinesThatAreNoRecordAreKeptAndNeverShown) {
    const std::vector<std::string> records{"",
                                           "nonsense",
                                           "3/5/2026@10:00:00 AM@cut",
                                           "3/5/2026",
                                           "@@@",
                                           "5.3.2026@10:00:00 AM@Other region@",
                                           "3/5/2026 1:00:00 PM@10:00:00 AM@Time in the date@",
                                           "13/5/2026@10:00:00 AM@No month@",
                                           "2026-03-05@any time@Shown@rest"};
    machine.files.put(file, ciphered(records) + "garbage\rmore\n\n");
    EXPECT_THAT(rows(), ElementsAre("any time Shown"));
    program().close("FrmCalender");
    EXPECT_THAT(saved(), SizeIs(records.size() + 3));
    EXPECT_THAT(machine.files.read(file), StartsWith(ciphered(records) + "garbage\r\nmore\r\n\r\n"));
}

TEST_F(Organiser, IndicesOfAppointmentsAreCountedInSixteenBits) {
    std::vector<std::string> records(32767, "3/6/2026@1:00:00 PM@Other day@");
    records.back() = "3/5/2026@1:00:00 PM@Last@";
    machine.files.put(file, ciphered(records));
    EXPECT_THAT(rows(), ElementsAre("1:00:00 PM Last"));
    add("2026-03-05", "11:00:00", "Beyond");
    EXPECT_THAT(rows(), ElementsAre("1:00:00 PM Last"));
    EXPECT_THAT(program().takeLines(),
                ElementsAre(R"(box Calender Error An error occured while updating the appointments file.\n)"
                            R"(Number: 6\nDescription: Overflow none ok)"));
    program().close("FrmCalender");
    EXPECT_THAT(saved(), SizeIs(32768));
}

TEST_F(Organiser, FileThatCannotBeReadIsToldAndReadAgainAtTheNextOpening) {
    machine.files.put(file, ciphered({"3/5/2026@1:00:00 PM@Tea@"}));
    machine.files.makeUnreadable(file);
    machine.files.makeReadOnly(file);
    const std::string failure = R"(Number: 75\nDescription: Path/File access error none ok)";
    auto& program = machine.startFor("Ann");
    const std::string box =
        R"(box Calender Error An error occured while loading the appointments file.\n)" + failure;
    EXPECT_THAT(program.takeLines(), Contains(box));
    program.close("FrmCalender");
    EXPECT_THAT(program.takeLines(), ElementsAre(R"(box Error! 75\nPath/File access error exclamation ok)",
                                                 "form FrmCalender unloaded"));
    program.menu("mnuCalender");
    EXPECT_THAT(program.takeLines(), ElementsAre(box, "form FrmCalender loaded", "form FrmCalender shown"));
}

TEST_F(Organiser, SaveThatFailsLeavesTheOldFileAndTheRecordsInMemory) {
    const std::string before = ciphered({"3/6/2026@1:00:00 PM@Tea@"});
    machine.files.put(file, before);
    add("2026-03-06", "11:00:00", "Cake");
    machine.files.failWrite(1);
    program().close("FrmCalender");
    EXPECT_EQ(machine.files.read(file), before);
    program().menu("mnuCalender").close("FrmCalender");
    EXPECT_THAT(saved(), SizeIs(2));
    EXPECT_EQ(machine.files.privacyOf(file), Privacy::ownersOnly);
}

TEST_F(Organiser, DatesAreReadOutAsTheMenuSays) {
    EXPECT_THAT(program().type("Calender", "2026-03-10").takeLines(), IsEmpty());
    EXPECT_EQ(program().menu("mnuReaddates").value("FrmCalender.mnuReaddates.Checked"), "True");
    EXPECT_THAT(machine.files.read("/home/Velmora.ini"), HasSubstr("ReadDates=True"));
    program().type("Calender", "2026-03-11");
    const std::string said = "The date you have selected is Wednesday the 11th of March 2026";
    EXPECT_THAT(program().takeLines(),
                ElementsAre("play Read", "speak " + said + " " + said, "play ReadReturn", "play RestPose"));
    program().close("FrmCalender").menu("mnuCalender");
    EXPECT_EQ(program().value("FrmCalender.mnuReaddates.Checked"), "True");
    program().menu("mnuReaddates");
    EXPECT_THAT(machine.files.read("/home/Velmora.ini"), HasSubstr("ReadDates=False"));
}

TEST_F(Organiser, DaysThatHaveAppointmentsAreMarkedAlsoWhenTheWindowIsOpenedAgain) {
    using namespace std::chrono;
    machine.files.put(file, ciphered({"3/20/2026@1:00:00 PM@Tea@", "3/20/2026@2:00:00 PM@Cake@", "garbage"}));
    add("2026-03-09", "11:00:00", "Walk");
    const auto marked = [this] {
        std::vector<year_month_day> days;
        program().run([&](Program& inside) { days = inside.calender().Calender.marked(); });
        return days;
    };
    EXPECT_THAT(marked(), ElementsAre(2026y / 3 / 9, 2026y / 3 / 20));
    program().select("lvApps", 1).menu("mnuRemove").close("FrmCalender");
    EXPECT_THAT(marked(), IsEmpty());
    program().menu("mnuCalender");
    EXPECT_THAT(marked(), ElementsAre(2026y / 3 / 20));
}

TEST_F(Organiser, OutlookMenusStandOnlyInTheWindowsOfAProfileThatHasEnabledThem) {
    for (const auto& [setting, enabled] :
         {std::pair{"True", "True"}, {"-1", "True"}, {"False", "False"}, {"what", "False"}, {"", "False"}}) {
        SimulatedMachine fresh;
        fresh.setting("/home", "User", "OutlookEnabled", setting);
        auto& program = fresh.startFor("Ann");
        EXPECT_EQ(program.value("mnuOutlook.Visible"), enabled) << setting;
        EXPECT_EQ(program.value("FrmCalender.MnuMain.Visible"), enabled);
        program.menu("FrmCalender.mnuTask").close("FrmCalender").menu("mnuCalender");
        EXPECT_EQ(program.value("FrmCalender.MnuMain.Visible"), enabled);
    }
}

}  // namespace
}  // namespace velmora
