#include "character/vocabulary.h"

#include <array>
#include <string>

#include "base/failure.h"

namespace velmora {
namespace {

constexpr const char* confidenceText = "I didn't understand your request";
constexpr int confidenceFloor = -60;

enum class Shown { yes, no };
enum class Asks { nothing, confidence };

/// A command, or in its place the ten rows of a list.
struct Row {
    const char* name = nullptr;
    const char* caption = nullptr;
    const char* voice = nullptr;
    Shown shown = Shown::no;
    Asks asks = Asks::nothing;
    CommandList CommandLists::*list = nullptr;
};

constexpr Row rowsOf(CommandList CommandLists::*list) {
    return {.list = list};
}

// "Calender", and "aco" for the command "ACO", are meant.
constexpr std::array vocabulary{
    Row{"General", "General", "[...]general[...]", Shown::yes, Asks::confidence},
    Row{"Accessories", "Accessories", "[...]accessories menu[...]", Shown::yes, Asks::confidence},
    Row{"My Office", "My Office", "[...]Office menu[...]", Shown::yes, Asks::confidence},
    Row{"Internet", "Internet", "[...](inter net|internet|net|web) menu[...]", Shown::yes, Asks::confidence},
    Row{"MovetoMouse", "MovetoMouse", "(move to|go to|follow)mouse[pointer|cursor]", Shown::no,
        Asks::confidence},
    Row{"ACO", "aco", "[open|show]a c o"},
    Row{"ChangeAgent", "Change Agent", "[change|new|choose new|different]agent[character]"},
    Row{"About", "About", "[show|open|run]about[dialog|window]"},
    Row{"Options", "Options", "[show|open|run]options[window|dialog]"},
    Row{"Alarm", "Alarm", "[show|open|set]alarm[window|dialog]"},
    Row{"Open File", "Open File", "[show|open]file[window|dialog]"},
    Row{"Calender", "Calender", "[show|open|run]calender[window|dialog]"},
    Row{"Calculator", "Calculator", "[show|open|run]calculator[program|application]"},
    Row{"CD Player", "CD Player", "[show|open|run]cd player[program|application]"},
    Row{"Notepad", "Notepad", "[show|open|run]notepad[program|application]"},
    Row{"Wordpad", "Wordpad", "[show|open|run]wordpad[program|application]"},
    rowsOf(&CommandLists::office),
    Row{"Word", "Open Word", "[start|open|run]word"},
    Row{"New Document", "New Document", "[start|open|run]word doc"},
    Row{"Read Selection", "Read Selection", "[read|speak]selection"},
    Row{"Search the Internet", "Search the Internet", "[start|new][inter net]search"},
    Row{"Check Mail", "Check Mail", "[check][e]mail"},
    Row{"NewMail", "New Mail", "[new][e]mail"},
    rowsOf(&CommandLists::favourites),
    Row{"Messenger", "Messenger", "[open|show|start]messenger"},
    Row{"Messenger Log On", "Messenger Log On", "messenger log on"},
    Row{"Messenger Log Off", "Messenger Log Off", "messenger log off"},
    Row{"Tell joke", "Tell joke", "tell [a] joke"},
    Row{"Sing song", "Sing song", "sing [a] song"},
    Row{"Tip", "Tip", "tip"},
};

void addRow(AgentCommands& commands, const Row& row) {
    passOver([&] { commands.Add(row.name, row.caption, row.voice, true, row.shown == Shown::yes); });
    if (row.asks == Asks::nothing) return;
    passOver([&] { commands.Item(row.name).ConfidenceText = confidenceText; },
             [&] { commands.Item(row.name).Confidence = confidenceFloor; });
}

void addList(AgentCommands& commands, const CommandList& list) {
    if (!list.name) return;
    for (int row = 0; row < CommandList::rows; ++row) {
        passOver([&] {
            const std::string name = list.name(row);
            // A slot is unused only with the text of its own place: "Item 2" in the first one is a command.
            if (name == "Item " + std::to_string(row + 1)) return;
            commands.Add(name, name, name, true, false);
        });
    }
}

}  // namespace

void InitCommands(AgentCommands& commands, const CommandLists& lists) {
    for (const Row& row : vocabulary) {
        if (row.list) {
            addList(commands, lists.*row.list);
        } else {
            addRow(commands, row);
        }
    }
    passOver([&] { commands.setVisible(true); });
}

}  // namespace velmora
