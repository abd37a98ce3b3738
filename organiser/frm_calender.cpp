#include "organiser/frm_calender.h"

#include "base/failure.h"
#include "base/text.h"
#include "core/crypter.h"
#include "organiser/appointment.h"
#include "organiser/spoken_date.h"

namespace velmora {
namespace {

constexpr std::string_view lineEnd = "\r\n";

}  // namespace

FrmCalender::FrmCalender(Forms& forms, Needs needs)
    : Form(forms, "FrmCalender", "Calender"), AppList(needs.regional), needs_(std::move(needs)) {
    Calender.Change.connect([this] { Calender_Change(); });
    lvApps.MouseUp.connect([this] { lvApps_MouseUp(); });
}

// The list stays empty until a date is chosen: a window opened again is meant to begin that way.
void FrmCalender::Form_Load() {
    const DateTime now = needs_.clock.now();
    passOver(
        [&] {
            ReadDatesOn =
                toBoolean(needs_.settings.ReadIni("Options", "ReadDates", missingValue, needs_.IniFile));
        },
        [&] { mnuReaddates.Checked = ReadDatesOn; }, [&] { Calender.Value = DateTime{.date = now.date}; },
        [&] { AppTime.Value = DateTime{.time = now.time}; },
        [&] {
            if (!AppsLoaded) LoadAppointments();
        },
        [&] { markDays(); }, [&] { MnuMain.Visible = !outlookHidden_; });
}

void FrmCalender::Form_Unload() {
    SaveAppointments();
}

void FrmCalender::hideOutlookMenu() {
    outlookHidden_ = true;
    if (alive()) MnuMain.Visible = false;
}

void FrmCalender::LoadAppointments() {
    guarded(
        [this](const Failure& failure) {
            showFileError("loading", failure);
            return After::leave;
        },
        [&] { lvApps.ListItems().Clear(); },
        [&] {
            const std::string file = path(needs_.applicationFolder, fileName);
            if (!needs_.FileExists(file)) return;
            const std::string content = needs_.files.read(file);
            LineWalk walk(content);
            while (const auto line = walk.next()) {
                const auto cipher = std::string_view(content).substr(line->begin, line->end - line->begin);
                AppList.Add(Decipher(cipher, mainKey));
            }
            AppsLoaded = true;
        });
}

void FrmCalender::SaveAppointments() {
    guarded(
        [this](const Failure& failure) {
            showError(failure, BoxIcon::exclamation);
            return After::leave;
        },
        [&] {
            std::string content;
            for (std::size_t index = 1; index <= AppList.Count(); ++index)
                content.append(Encipher(AppList.Item(index), mainKey)).append(lineEnd);
            needs_.files.replace(path(needs_.applicationFolder, fileName), content, Privacy::ownersOnly);
        });
}

void FrmCalender::cmdAddApp_Click() {
    guarded(
        [this](const Failure& failure) {
            showError(failure, BoxIcon::exclamation);
            return After::leave;
        },
        [&] {
            const DateTime now = needs_.clock.now();
            const DateTime chosen{Calender.Value.get().date, AppTime.Value.get().time};
            if (chosen.date < now.date) return refuse("I could not add your appointment.");
            if (chosen.date == now.date && chosen.time < now.time)
                return refuse("The time you entered is invalid.");
            AppList.Add(appointmentRecord({.date = needs_.regional.shortDate(chosen.date),
                                           .time = needs_.regional.longTime(chosen.time),
                                           .event = txtEvent.Text.get()}));
            markDays();
            RefreshAppList();
        });
}

void FrmCalender::refuse(const std::string& reason) {
    needs_.Character().Play("Sad");
    needs_.Character().Speak(reason);
}

void FrmCalender::RefreshAppList() {
    guarded(
        [this](const Failure& failure) {
            showFileError("updating", failure);
            return After::leave;
        },
        [&] {
            lvApps.ListItems().Clear();
            const DateTime chosen = Calender.Value;
            const std::string presentTime = needs_.regional.longTime(needs_.clock.now().time);
            for (std::size_t index = 1; index <= AppList.Count(); ++index) {
                // Indices are meant to be counted in 16 bits: what lies behind the last one is not shown.
                if (index > AppointmentList::lastIndex) throw Failure(errors::overflow);
                if (AppList.date(index) == chosen) listAppointment(index, presentTime);
            }
        });
}

void FrmCalender::listAppointment(std::size_t index, const std::string& presentTime) {
    const std::string& record = AppList.Item(index);
    const auto fields = appointmentFields(record);
    Row row{
        .Key = std::to_string(index).append(presentTime), .Text = std::string(fields->time), .Tag = record};
    row.SubItems.emplace_back(fields->event);
    lvApps.ListItems().Add(std::move(row));
}

void FrmCalender::markDays() {
    Calender.setMarked(AppList.days());
}

void FrmCalender::BuildSpokenDate() {
    SpokenDate = spokenDate(Calender.Value.get().date);
}

void FrmCalender::Calender_Change() {
    if (ReadDatesOn) {
        passOver([&] { needs_.AgentVisible(); }, [&] { BuildSpokenDate(); },
                 [&] { needs_.Character().Play("Read"); },
                 [&] { needs_.Character().Speak("The date you have selected is " + SpokenDate); },
                 [&] { needs_.Character().Play("ReadReturn"); },
                 [&] { needs_.Character().Play("RestPose"); });
    }
    RefreshAppList();
}

void FrmCalender::CheckTodaysApps() {
    guarded(
        [this](const Failure& failure) {
            showError(failure, BoxIcon::none);
            return After::leave;
        },
        [&] {
            Calender.Value = DateTime{.date = needs_.clock.now().date};
            RefreshAppList();
            const Rows& due = lvApps.ListItems();
            const std::size_t n = due.Count();
            AgentCharacter& character = needs_.Character();
            character.Play("Read");
            if (n == 0) {
                character.Speak("You have no appointments today.");
            } else if (n == 1) {
                character.Speak("You have " + due.Item(1).SubItems.front() + " today.");
            } else {
                // Without a blank behind the number: on purpose.
                character.Speak("You have " + std::to_string(n) + "appointments today.");
            }
            character.Play("ReadReturn");
        });
}

void FrmCalender::lvApps_MouseUp() {
    PopupMenu(mnuAppPopUp);
}

void FrmCalender::mnuDetails_Click() {
    passOver([&] {
        const Row appointment = lvApps.SelectedItem();
        std::string text = "Appointment for ";
        text.append(needs_.regional.shortDate(Calender.Value.get().date))
            .append("\nTime ")
            .append(appointment.Text);
        text.append("\nEvent ").append(appointment.SubItems.front());
        needs_.dialogs.MsgBox(text, "Velmora Reminder");
    });
}

// Of two equal records the first one goes, whichever was chosen: nothing tells them apart.
void FrmCalender::mnuRemove_Click() {
    passOver([&] {
        const std::size_t index = AppList.find(lvApps.SelectedItem().Tag);
        if (index == 0) return;
        AppList.Remove(index);
        lvApps.ListItems().Remove(static_cast<std::size_t>(lvApps.Selected.get()));
        markDays();
    });
}

void FrmCalender::mnuReaddates_Click() {
    ReadDatesOn = !ReadDatesOn;
    mnuReaddates.Checked = ReadDatesOn;
    needs_.settings.WriteIni("Options", "ReadDates", booleanText(ReadDatesOn), needs_.IniFile);
}

void FrmCalender::mnuFileClose_Click() {
    Unload();
}

void FrmCalender::mnuTask_Click() {
    NewTask();
}

void FrmCalender::mnuApp_Click() {
    NewAppointment();
}

void FrmCalender::showFileError(std::string_view doing, const Failure& failure) {
    std::string text = "An error occured while ";
    text.append(doing).append(" the appointments file.\nNumber: ").append(std::to_string(failure.number));
    text.append("\nDescription: ").append(failure.description);
    needs_.dialogs.MsgBox(text, "Calender Error");
}

void FrmCalender::showError(const Failure& failure, BoxIcon icon) {
    needs_.dialogs.MsgBox(std::to_string(failure.number) + "\n" + failure.description, "Error!", icon);
}

}  // namespace velmora
