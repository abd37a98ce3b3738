#include "core/users_command.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <ostream>

#include "base/failure.h"
#include "base/text.h"
#include "core/crypter.h"
#include "core/user_list.h"
#include "platform/files.h"

namespace velmora {
namespace {

constexpr int done = 0;
constexpr int notDone = 1;
constexpr int misused = 2;

constexpr std::string_view usage =
    "Usage: velmora-users [--folder DIR] add NAME\n"
    "       velmora-users [--folder DIR] remove NAME\n"
    "       velmora-users [--folder DIR] list\n"
    "       velmora-users --help | --version\n";

constexpr std::string_view explanation =
    "\n"
    "Says who may log in to Velmora, by first name and password.\n"
    "\n"
    "  add NAME      adds a user, or gives an existing one a new password\n"
    "  remove NAME   removes a user; the user's settings stay\n"
    "  list          prints the names, one per line\n"
    "  --folder DIR  the application folder, if it is not the standard one\n"
    "  --            what follows is no option\n"
    "\n"
    "The password is asked for on the terminal, or is the first line of standard input if\n"
    "that is no terminal. Use this while Velmora is not running: after a login dialog the\n"
    "program ends by writing the list as it was when the dialog opened.\n";

/// Something to tell the user, after which nothing has changed.
struct Complaint {
    int status;
    std::string text;
};

/// The lines of the list as they stand in the file. Those that are not changed are written back byte for
/// byte: not every line that is rubbish survives being deciphered and enciphered again.
class EncipheredList {
public:
    EncipheredList(Files& files, std::string_view folder)
        : files_(files), file_(path(folder, UserList::fileName)) {
        try {
            content_ = files_.read(file_);
        } catch (const Failure& failure) {
            if (failure.number != errors::fileNotFound && failure.number != errors::pathNotFound) {
                throw Complaint{notDone, "The user list " + file_ + " can't be read."};
            }
        }
        for (const auto line : splitLines(content_)) lines_.emplace_back(line);
    }

    std::vector<std::string>& lines() { return lines_; }

    void save() {
        std::string content;
        for (const auto& line : lines_) content.append(line).append("\n");
        try {
            files_.replace(file_, content, Privacy::ownersOnly);
        } catch (const Failure& failure) {
            throw Complaint{notDone,
                            "The user list " + file_ + " can't be written: " + failure.description + "."};
        }
    }

private:
    Files& files_;
    std::string file_;
    std::string content_;
    std::vector<std::string> lines_;
};

bool isEntryOf(const std::string& line, std::string_view name) {
    return firstNameOf(Decipher(line, userListKey)) == name;
}

bool isControl(char character) {
    const auto code = static_cast<unsigned char>(character);
    return code < ' ' || code == 0x7f;
}

bool hasControl(std::string_view text) {
    return std::any_of(text.begin(), text.end(), isControl);
}

struct NameRule {
    bool (*broken)(std::string_view name);
    std::string_view text;
};

// A name is the beginning of a line of the list and, with ".ini", the name of a file.
constexpr std::size_t longestName = 251;
constexpr std::array nameRules{
    NameRule{[](std::string_view name) { return name.empty(); }, "A name can't be empty."},
    NameRule{[](std::string_view name) { return name.find_first_of(":/") != std::string_view::npos; },
             "A name can't hold ':' or '/'."},
    NameRule{hasControl, "A name can't hold control characters."},
    NameRule{[](std::string_view name) { return name.starts_with('.'); }, "A name can't start with '.'."},
    NameRule{[](std::string_view name) { return name.size() > longestName; }, "This name is too long."},
};

bool readsBack(const std::string& entry) {
    const std::vector<std::string> entries{entry};
    return UserList::decode(UserList::encode(entries)) == entries;
}

void checkName(std::string_view name) {
    for (const auto& rule : nameRules) {
        if (rule.broken(name)) throw Complaint{notDone, std::string(rule.text)};
    }
    if (!readsBack(std::string(name) + ":")) {
        throw Complaint{notDone,
                        "This name can't be kept: enciphered, it would not read back, whatever the "
                        "password. Please choose another spelling."};
    }
}

/// The line for the user, refused if it would not read back as it is.
std::string enciphered(const std::string& name, const std::string& password) {
    if (hasControl(password)) throw Complaint{notDone, "A password can't hold control characters."};
    const auto entry = name + ":" + password;
    if (!readsBack(entry)) {
        throw Complaint{notDone,
                        "This password can't be kept for this name: enciphered, they would not read back. "
                        "Please choose another password."};
    }
    return Encipher(entry, userListKey);
}

void add(const UsersCommandHost& host, const std::string& folder, const std::string& name) {
    checkName(name);
    EncipheredList list(host.files, folder);
    const auto password = host.askPassword(name);
    if (!password) throw Complaint{notDone, "No password was set."};
    auto line = enciphered(name, *password);

    auto& lines = list.lines();
    const auto isTheirs = [&](const std::string& other) { return isEntryOf(other, name); };
    const auto found = std::find_if(lines.begin(), lines.end(), isTheirs);
    const bool existed = found != lines.end();
    if (existed) {
        *found = std::move(line);
        lines.erase(std::remove_if(std::next(found), lines.end(), isTheirs), lines.end());
    } else {
        lines.push_back(std::move(line));
    }
    try {
        host.createFolder(folder);
    } catch (const Failure& failure) {
        throw Complaint{notDone, "The folder " + folder + " can't be created: " + failure.description + "."};
    }
    list.save();
    host.output << (existed ? "Changed the password of " : "Added ") << name << ".\n";
}

void remove(const UsersCommandHost& host, const std::string& folder, const std::string& name) {
    EncipheredList list(host.files, folder);
    auto& lines = list.lines();
    const auto removed = std::remove_if(lines.begin(), lines.end(),
                                        [&](const std::string& line) { return isEntryOf(line, name); });
    if (removed == lines.end()) throw Complaint{notDone, "There is no user " + name + "."};
    lines.erase(removed, lines.end());
    list.save();
    host.output << "Removed " << name << ".\n";
}

void printNames(const UsersCommandHost& host, const std::string& folder) {
    EncipheredList list(host.files, folder);
    for (const auto& line : list.lines()) {
        const auto entry = Decipher(line, userListKey);
        const auto name = firstNameOf(entry);
        // Rubbish that happens to hold a ':' must not send control codes to a terminal.
        if (name && !hasControl(*name)) host.output << *name << "\n";
    }
}

struct Invocation {
    std::string folder;
    std::vector<std::string> words{};
    bool help = false;
    bool version = false;
};

Invocation parse(const std::vector<std::string>& arguments, const std::string& defaultFolder) {
    Invocation invocation{.folder = defaultFolder};
    bool optionsEnded = false;
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        if (optionsEnded || !argument->starts_with('-')) {
            invocation.words.push_back(*argument);
        } else if (*argument == "--") {
            optionsEnded = true;
        } else if (*argument == "--help") {
            invocation.help = true;
        } else if (*argument == "--version") {
            invocation.version = true;
        } else if (*argument == "--folder" && std::next(argument) != arguments.end()) {
            invocation.folder = *++argument;
        } else {
            throw Complaint{misused, "Can't make sense of " + *argument + ".\n" + std::string(usage)};
        }
    }
    return invocation;
}

void obey(const Invocation& invocation, const UsersCommandHost& host) {
    const auto& words = invocation.words;
    const bool isList = words.size() == 1 && words[0] == "list";
    const bool isAdd = words.size() == 2 && words[0] == "add";
    const bool isRemove = words.size() == 2 && words[0] == "remove";
    if (!isList && !isAdd && !isRemove) throw Complaint{misused, std::string(usage)};
    if (invocation.folder.empty()) {
        throw Complaint{notDone, "There is no home folder; say which folder with --folder."};
    }
    if (isList) printNames(host, invocation.folder);
    if (isAdd) add(host, invocation.folder, words[1]);
    if (isRemove) remove(host, invocation.folder, words[1]);
}

}  // namespace

int runUsersCommand(const std::vector<std::string>& arguments, const UsersCommandHost& host) {
    try {
        const auto invocation = parse(arguments, host.defaultFolder);
        if (invocation.help) {
            host.output << usage << explanation;
        } else if (invocation.version) {
            host.output << "velmora-users " << host.version << "\n";
        } else {
            obey(invocation, host);
        }
        return done;
    } catch (const Complaint& complaint) {
        host.complaints << complaint.text << (complaint.text.ends_with('\n') ? "" : "\n");
        return complaint.status;
    }
}

}  // namespace velmora
