#include "options/frm_options.h"

#include <algorithm>
#include <array>

#include "base/failure.h"

namespace velmora {
namespace {

using namespace std::string_literals;

constexpr int rows = 10;

/// The pages, the first one with index 1.
constexpr std::array<std::string_view, 5> pages{"Office", "Accessories", "Favourites", "Mail", "Jokes"};

struct Opener {
    std::string_view entry;
    std::string_view page;
};

constexpr std::array openers{
    Opener{"mnuOptions", "Office"},
    Opener{"mnuOptionsWindow", "Office"},
    Opener{"mnuOptionsOffice", "Office"},
    Opener{"mnuOfficeConfigure", "Office"},
    Opener{"mnuOptionsAccessories", "Accessories"},
    Opener{"mnuAConfigure", "Accessories"},
    Opener{"mnuOptionsFav", "Favourites"},
    Opener{"mnuFavouritesConfigure", "Favourites"},
    Opener{"mnuOptionsMail", "Mail"},
    Opener{"mnuJokesEdit", "Jokes"},
};

const std::string programsFirst = "Executable Files\0*.exe\0All Files (*.*)\0*.*"s;

void carry(const ComboBox& names, const std::function<Menu&(int)>& entryOf) {
    for (int row = 0; row < rows; ++row) {
        passOver([&] {
            const std::string name = names.List(row);
            Menu& entry = entryOf(row);
            const bool used = !name.starts_with("Item");
            if (used) entry.Caption = name;
            entry.Visible = used;
        });
    }
}

}  // namespace

FrmOptions::FrmOptions(Forms& forms, Needs needs)
    : Form(forms, "FrmOptions", "Options"), needs_(std::move(needs)) {
    for (const auto& [entry, page] : openers) {
        needs_.menu(entry, {}).Click.connect([this, page = page] { Show_Frame(page); });
    }
    TabStrip.Click.connect([this] { TabStrip_Click(); });
    ComOffice.Click.connect([this] { ComOffice_Click(); });
    comFavourites.Click.connect([this] { comFavourites_Click(); });
}

std::vector<std::string> FrmOptions::unusedRows() {
    std::vector<std::string> names;
    for (int row = 1; row <= rows; ++row) names.push_back("Item " + std::to_string(row));
    return names;
}

// The accessories are meant to be missing here: a form that was unloaded comes back with all boxes off,
// whatever the menu shows.
void FrmOptions::Form_Load() {
    passOver([this] { needs_.LoadFavouritesList(); }, [this] { needs_.LoadOfficeList(); },
             [this] { needs_.ReadMailSettings(); }, [this] { loadJokes(); },
             // At the start the timer is not yet on, whatever the setting says; the box then stays off, and
             // that is meant.
             [this] {
                 if (needs_.TimerJoke.Interval == 0) {
                     chkJoke.Value = 0;
                 } else if (needs_.TimerJoke.Enabled) {
                     chkJoke.Value = 1;
                 }
             });
}

void FrmOptions::loadJokes() {
    jokesFile_.clear();
    const std::string file = path(needs_.applicationFolder, "Jokes.txt");
    rtbJokes.Text = needs_.files.read(file);
    jokesFile_ = file;
}

void FrmOptions::Form_Unload() {
    for (int page = 1; page <= static_cast<int>(pages.size()); ++page) Frame(page).Visible = false;
}

void FrmOptions::bringIntoView(int page) {
    Frame(page).Visible = true;
    Frame(page).ZOrder();
}

// The page that was in view, and the tab, are meant to stay as they are: the new page only covers the old
// one, which shows again when a tab puts the new one away.
void FrmOptions::Show_Frame(std::string_view name) {
    passOver(
        [&] {
            const auto* page = std::find(pages.begin(), pages.end(), name);
            if (page == pages.end()) return;
            const auto index = static_cast<std::int16_t>(page - pages.begin() + 1);
            bringIntoView(index);
            CurrentFrame = index;
        },
        [this] { Show(); });
}

void FrmOptions::TabStrip_Click() {
    const int chosen = TabStrip.Selected;
    if (chosen == CurrentFrame) return;
    bringIntoView(chosen);
    if (CurrentFrame != 0) Frame(CurrentFrame).Visible = false;
    CurrentFrame = static_cast<std::int16_t>(chosen);
}

void FrmOptions::Set_Office() {
    carry(ComOffice, [this](int row) -> Menu& { return needs_.menu("mnuOffice", row); });
}

void FrmOptions::Set_Favourites() {
    carry(comFavourites, [this](int row) -> Menu& { return needs_.menu("mnuCustom", row); });
}

void FrmOptions::chkReadEntire_Click() {
    needs_.ReadEntire = chkReadEntire.Value == 1;
}

void FrmOptions::pick(const ComboBox& names, ComboBox& targets, TextBox& name, TextBox& target) {
    ListIndex = names.ListIndex();
    targets.setListIndex(ListIndex);
    name.Text = names.Text.get();
    target.Text = targets.Text.get();
}

void FrmOptions::ComOffice_Click() {
    pick(ComOffice, comOfficeCommands, txtProgrammeName, txtOfficeCommand);
}

void FrmOptions::comFavourites_Click() {
    pick(comFavourites, comFavouriteURL, txtFavouriteSite, txtURL);
}

// What is typed before any row was picked is meant to land on the first row, and what is typed after a pick
// on the other page on the row of that number.
void FrmOptions::txtProgrammeName_Change() {
    ComOffice.setList(ListIndex, txtProgrammeName.Text);
}

void FrmOptions::txtOfficeCommand_Change() {
    comOfficeCommands.setList(ListIndex, txtOfficeCommand.Text);
}

void FrmOptions::txtFavouriteSite_Change() {
    comFavourites.setList(ListIndex, txtFavouriteSite.Text);
}

void FrmOptions::txtURL_Change() {
    comFavouriteURL.setList(ListIndex, txtURL.Text);
}

// A cancelled dialog is meant to put in what was chosen last, here or on the open panel.
void FrmOptions::cmdOfficeBrowse_Click() {
    passOver([this] { needs_.fileDialogs.MyDialog(programsFirst); },
             [this] { txtOfficeCommand.Text = needs_.fileDialogs.DialogFile; });
}

void FrmOptions::cmdDone_Click() {
    Unload();
}

}  // namespace velmora
