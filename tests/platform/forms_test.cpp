#include "platform/form.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/controls.h"
#include "platform/list_controls.h"
#include "platform/menu.h"
#include "tests/support/failure_of.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NoHost : public LoopHost {
public:
    std::chrono::milliseconds elapsed() const override { return {}; }
    void serve(std::optional<std::chrono::milliseconds>) override {}
};

/// A form with a control of each kind; it notes what is raised.
class FrmSample : public Form {
public:
    explicit FrmSample(Forms& forms) : Form(forms, "FrmSample", "Sample") {
        comNames.Click.connect([this] { note("comNames_Click"); });
        comNames.Change.connect([this] { note("comNames_Change"); });
        optFirst.Click.connect([this] { note("optFirst_Click"); });
        optSecond.Click.connect([this] { note("optSecond_Click"); });
        dtWhen.Change.connect([this] { note("dtWhen_Change"); });
        tabPages.Click.connect([this] { note("tabPages_Click"); });
        lvRows.Click.connect([this] { note("lvRows_Click"); });
    }

    TextBox txtName{*this, "txtName", {.Text = "Ann"}, &FrmSample::txtName_Change};
    CheckBox chkOn{*this, "chkOn", {.Caption = "On"}, &FrmSample::chkOn_Click};
    OptionButton optFirst{*this, "optFirst"};
    OptionButton optSecond{*this, "optSecond"};
    Array<Button> cmdAdd{*this,
                         "cmdAdd",
                         {{.Caption = "One"}, {.Caption = "Two", .Enabled = false}},
                         &FrmSample::cmdAdd_Click,
                         1};
    ComboBox comNames{*this, "comNames", {.List = {"Item 1", "Item 2"}}};
    DTPicker dtWhen{*this, "dtWhen"};
    DTPicker dtTime{*this, "dtTime", {.Shows = PickerKind::time}};
    TabStrip tabPages{*this, "tabPages", {.Rows = {{.Text = "One"}, {.Text = "Two"}}}};
    ListView lvRows{*this, "lvRows"};
    Timer tmrTick{*this, "tmrTick", {.Interval = 10}, &FrmSample::tmrTick_Timer};
    Menu mnuTop{*this, "mnuTop", {.Caption = "Top"}};
    Menu mnuSep{*this, mnuTop, "mnuSep", {.Caption = "-"}};

    std::vector<std::string> raised;
    bool unloadSelf = false;

    void txtName_Change() { note("txtName_Change"); }
    void chkOn_Click() { note("chkOn_Click"); }
    void cmdAdd_Click(int Index) { note("cmdAdd_Click " + std::to_string(Index)); }
    void tmrTick_Timer() { note("tmrTick_Timer"); }

    std::vector<std::string> taken() { return std::exchange(raised, {}); }

protected:
    void Form_Load() override { note("load"); }
    void Form_QueryUnload() override { note("query"); }
    void Form_Unload() override {
        note("unload");
        Unload();  // passed over
        txtName.Text = "touched";
    }
    void Form_Terminate() override { note("terminate"); }

private:
    void note(std::string what) { raised.push_back(std::move(what)); }
};

class FormsTest : public testing::Test, private ProgramView {
protected:
    FormsTest() { forms.add(*this); }
    void formChanged(Form&, FormChange change) override { changes.push_back(change); }

    NoHost host;
    Loop loop{host};
    Forms forms{loop};
    FrmSample form{forms};
    std::vector<FormChange> changes;
};

TEST_F(FormsTest, UsingAControlLoadsItsFormHiddenAndLookingFromOutsideDoesNot) {
    EXPECT_EQ(form.txtName.mainValue(), "Ann");
    EXPECT_EQ(form.state(), FormState::unloaded);
    EXPECT_EQ(form.txtName.Text.get(), "Ann");
    EXPECT_THAT(form.taken(), ElementsAre("load"));
    EXPECT_THAT(changes, ElementsAre(FormChange::loaded));
    EXPECT_FALSE(form.visible());
}

TEST_F(FormsTest, UnloadTellsTheFormPutsItsControlsBackSilentlyAndEndsTheProgramWithTheLast) {
    FrmSample other(forms);
    other.Load();
    form.Show();
    form.txtName.Text = "Bob";
    form.comNames.setList(1, "Mail");
    form.lvRows.ListItems().Add({.Key = "k", .Text = "row"});
    form.taken();
    form.Unload();
    EXPECT_THAT(form.taken(), ElementsAre("query", "unload", "txtName_Change"));
    EXPECT_EQ(form.txtName.Text.peek(), "Ann");
    EXPECT_EQ(form.comNames.listedRows().at(1).Text, "Item 2");
    EXPECT_THAT(form.lvRows.listedRows(), IsEmpty());
    EXPECT_EQ(form.state(), FormState::unloaded);
    EXPECT_FALSE(loop.ended());
    other.Unload();
    EXPECT_TRUE(loop.ended());
}

TEST_F(FormsTest, OnlyFormsThatWereEverLoadedAreTerminatedAndOnce) {
    FrmSample never(forms);
    form.Load();
    form.Unload();
    form.Load();
    form.taken();
    forms.terminate();
    forms.terminate();
    EXPECT_THAT(form.taken(), ElementsAre("terminate"));
    EXPECT_THAT(never.taken(), IsEmpty());
}

TEST_F(FormsTest, ProgramsChangeRaisesWhatItsKindRaisesAndOnlyIfItDiffers) {
    form.Load();
    form.taken();
    form.txtName.Text = "Ann";
    form.chkOn.Value = 0;
    EXPECT_THAT(form.taken(), IsEmpty());
    form.txtName.Text = "Bob";
    form.chkOn.Value = 1;
    form.optSecond.Value = true;
    form.optFirst.Value = true;
    form.comNames.setListIndex(1);
    form.comNames.Text = "typed";
    form.dtWhen.Value = toDateTime("2026-03-05");
    form.tabPages.Selected = 2;
    EXPECT_THAT(form.taken(), ElementsAre("txtName_Change", "chkOn_Click", "optSecond_Click",
                                          "optFirst_Click", "comNames_Click", "comNames_Change"));
    EXPECT_FALSE(form.optSecond.Value.get());
}

TEST_F(FormsTest, PersonsChangeRaisesWhatItsKindRaises) {
    form.Load();
    form.lvRows.ListItems().Add({.Text = "row"});
    form.taken();
    EXPECT_TRUE(form.txtName.type("Bob"));
    EXPECT_TRUE(form.chkOn.click());
    EXPECT_TRUE(form.chkOn.type("1"));  // as it is already
    EXPECT_TRUE(form.optFirst.click());
    EXPECT_TRUE(form.cmdAdd(1).click());
    EXPECT_TRUE(form.comNames.select(1));
    EXPECT_TRUE(form.dtWhen.type("2026-03-05"));
    EXPECT_TRUE(form.tabPages.select(2));
    EXPECT_TRUE(form.lvRows.select(1));
    EXPECT_THAT(form.taken(),
                ElementsAre("txtName_Change", "chkOn_Click", "optFirst_Click", "cmdAdd_Click 1",
                            "comNames_Click", "dtWhen_Change", "tabPages_Click", "lvRows_Click"));
    EXPECT_EQ(form.comNames.mainValue(), "Item 2");
    EXPECT_EQ(form.dtWhen.mainValue(), "2026-03-05");
}

TEST_F(FormsTest, WhatAPersonCanNotDoIsRefusedAndChangesNothing) {
    form.Load();
    form.txtName.Visible = false;
    form.taken();
    EXPECT_FALSE(form.cmdAdd(2).click());
    EXPECT_FALSE(form.txtName.type("x"));
    EXPECT_FALSE(form.txtName.click());
    EXPECT_FALSE(form.comNames.select(2));
    EXPECT_FALSE(form.lvRows.select(1));
    for (const char* date : {"2026-02-30", "10:00:00", "2026-03-05 10:00:00", "26-03-05", ""})
        EXPECT_FALSE(form.dtWhen.type(date)) << date;
    for (const char* time : {"24:00:00", "2026-03-05", "2026-03-05 10:00:00", "10", ""})
        EXPECT_FALSE(form.dtTime.type(time)) << time;
    EXPECT_FALSE(form.chkOn.type("yes"));
    EXPECT_FALSE(form.mnuSep.click());
    EXPECT_THAT(form.taken(), IsEmpty());
    EXPECT_THROW(form.cmdAdd(0), Failure);
}

TEST_F(FormsTest, RowsKeepTheirKeysApart) {
    Rows& rows = form.lvRows.ListItems();
    rows.Add({.Key = "a", .Text = "1"});
    rows.Add({.Text = "2"});
    rows.Add({.Text = "3"});  // rows without a key are many
    EXPECT_EQ(failureOf([&] { rows.Add({.Key = "a"}); }), errors::duplicateRowKey);
    EXPECT_EQ(failureOf([&] { rows.Set(2, {.Key = "a"}); }), errors::duplicateRowKey);
    EXPECT_EQ(failureOf([&] { rows.Remove(4); }), errors::objectNotSet);
    form.lvRows.Selected = 3;
    rows.Remove(1);
    EXPECT_EQ(form.lvRows.Selected.get(), 0);  // what was chosen is out of range now
    EXPECT_EQ(rows.Item(1).Text, "2");
}

TEST_F(FormsTest, TimersRunWhileTheirFormIsLoadedAndTheyAreEnabled) {
    const auto tick = [this] { loop.skip(std::chrono::milliseconds(10)); };
    tick();
    EXPECT_THAT(form.taken(), IsEmpty());
    form.Load();
    tick();
    form.tmrTick.Enabled = false;
    tick();
    form.tmrTick.Enabled = true;
    form.tmrTick.Interval = 0;
    tick();
    form.tmrTick.Interval = 5;
    tick();
    form.Unload();
    EXPECT_THAT(form.taken(), ElementsAre("load", "tmrTick_Timer", "tmrTick_Timer", "tmrTick_Timer", "query",
                                          "unload", "txtName_Change"));
}

}  // namespace
}  // namespace velmora
