#include "core/main_menu.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>

namespace velmora {
namespace {

struct Entry {
    std::size_t depth;  ///< 0: a menu of its own; one more than the entry that it belongs to
    std::string_view name;
    std::string_view caption;  ///< of an array: the members' captions are this, a blank and their number
    int members = 0;           ///< of an array; 0: a single entry
    bool visible = true;
};

// The members of the two launch lists are hidden until a list fills them.
constexpr std::array tree{
    Entry{0, "mnuOptionsMenu", "Options"},
    Entry{1, "mnuOptionsAccessories", "Accessories"},
    Entry{1, "mnuOptionsOffice", "Office Options"},
    Entry{1, "mnuOptionsFav", "Favourites"},
    Entry{1, "mnuOptionsMail", "Mail"},
    Entry{1, "OptionsSep", "-"},
    Entry{1, "mnuOptionsWindow", "Options Window"},
    Entry{0, "MnuMain", "Main"},
    Entry{1, "mnuMyHome", "My Home"},
    Entry{1, "mnuSep1", "-"},
    Entry{1, "mnuGeneral", "General"},
    Entry{2, "mnuACo", "Character Options"},
    Entry{2, "mnuChangeAgent", "Change Agent"},
    Entry{2, "mnuOptions", "Options"},
    Entry{2, "mnuAbout", "About"},
    Entry{2, "mnuVersion", "Version"},
    Entry{1, "mnuAccessories", "Accessories"},
    Entry{2, "mnuAlarm", "Alarm"},
    Entry{2, "mnuOpenFile", "Open File"},
    Entry{2, "mnuCalender", "Calender"},
    Entry{2, "mnuReadClip", "Read Clipboard"},
    Entry{2, "mnuSep2", "-"},
    Entry{2, "mnuCalculator", "Calculator"},
    Entry{2, "mnuCDPlayer", "CD Player"},
    Entry{2, "mnuWordpad", "Wordpad"},
    Entry{2, "mnuNotepad", "Notepad"},
    Entry{2, "mnuAConfigure", "Configure"},
    Entry{1, "mnuMyOffice", "My Office"},
    Entry{2, "mnuOffice", "Item", 10, false},
    Entry{2, "mnuSep3", "-"},
    Entry{2, "mnuOutlook", "Outlook"},
    Entry{3, "mnuUnreadMail", "Unread Mail"},
    Entry{3, "mnuchkApps", "Check Appointments"},
    Entry{3, "mnuChkTasks", "Check tasks due"},
    Entry{2, "mnuWord", "Word"},
    Entry{3, "mnuOpenWord", "Open"},
    Entry{3, "mnuNewDoc", "New Document"},
    Entry{3, "mnuReadSel", "Read Selection"},
    Entry{2, "mnuOfficeConfigure", "Configure"},
    Entry{1, "mnuWeb", "Internet"},
    Entry{2, "mnuIntConnect", "Connect"},
    Entry{2, "mnuSearch", "Search"},
    Entry{2, "mnuIMail", "Mail"},
    Entry{3, "mnuCheckMail", "Check Mail"},
    Entry{3, "mnuEMessages", "Messages"},
    Entry{3, "mnuEMail", "New E-Mail"},
    Entry{2, "mnuFavourites", "Favourites"},
    Entry{3, "mnuCustom", "Item", 10, false},
    Entry{3, "mnuCustomSep", "-"},
    Entry{3, "mnuFavouritesConfigure", "Configure"},
    Entry{1, "mnusep6", "-"},
    Entry{1, "mnuMessenger", "Messenger"},
    Entry{2, "mnuMessengerOpen", "Open"},
    Entry{2, "mnuMessengerFriends", "Online Friends"},
    Entry{2, "mnuMessengerFiles", "Recieved Files"},
    Entry{3, "mnuMsgFile", "File", 5},
    Entry{1, "mnuInteract", "Interact"},
    Entry{2, "mnuInteractTip", "Tip"},
    Entry{2, "mnuInteractSong", "Song"},
    Entry{2, "mnuInteractJoke", "Jokes"},
    Entry{3, "mnuJokeTell", "Tell a joke"},
    Entry{3, "mnuJokesEdit", "Edit jokes file"},
    Entry{2, "mnuScriptsAction", "Action Scripts"},
    Entry{3, "mnuScriptOpen", "Open"},
    Entry{3, "mnuScriptWrite", "Write"},
    Entry{1, "mnuSep4", "-"},
    Entry{1, "mnuHelp", "Help"},
    Entry{1, "mnuHide", "Hide"},
    Entry{1, "mnusep5", "-"},
    Entry{1, "mnuExit", "Exit"},
};

}  // namespace

MainMenu::MainMenu(Form& form) {
    std::array<Menu*, 4> path{};  // the latest entry at each depth
    for (const Entry& entry : tree) {
        MenuDesign design{.Caption = std::string(entry.caption), .Visible = entry.visible};
        if (entry.depth == 0) {
            path[0] = &entries_.emplace_back(form, entry.name, design);
            continue;
        }
        Menu& parent = *path.at(entry.depth - 1);
        if (entry.members == 0)
            path.at(entry.depth) = &entries_.emplace_back(form, parent, entry.name, design);
        for (int index = 0; index < entry.members; ++index) {
            design.Caption = std::string(entry.caption) + " " + std::to_string(index + 1);
            entries_.emplace_back(form, parent, entry.name, design, index);
        }
    }
}

Menu& MainMenu::operator()(std::string_view name, std::optional<int> index) {
    const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const Menu& entry) {
        return entry.name() == name && entry.index() == index;
    });
    if (found == entries_.end()) throw std::logic_error("no such menu entry: " + std::string(name));
    return *found;
}

}  // namespace velmora
