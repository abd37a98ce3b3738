#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "platform/files.h"
#include "platform/list_controls.h"
#include "platform/menu.h"

namespace velmora {

/// How many programs, and how many sites, the user can name.
inline constexpr std::size_t launchRows = 10;

/// The lines of a launch list: the name of a row and what it opens, by turns.
using LaunchLines = std::array<std::string, 2 * launchRows>;

/// The lines that a list file stands for. A longer file counts by its last lines: it is read in blocks of
/// twenty, each over the one before, and the last may be short. Lines that the file lacks are empty.
LaunchLines readLaunchLines(std::string_view content);

/// The file for these lines: always twenty. A line end within a line, which would shift all rows behind it,
/// becomes a blank.
std::string launchFileText(const LaunchLines& lines);

/// The two list files, the combos that hold what is in them, and the menu entries that open it.
class LaunchLists {
public:
    /// Two combos of ten rows, the menu entries, and what carries the names to these.
    struct List {
        ComboBox& names;
        ComboBox& targets;
        std::function<Menu&(int)> entry;
        std::function<void()> carry;
    };
    struct Needs {
        Files& files;
        std::string applicationFolder;
        List office;
        List favourites;
        std::function<void(const std::string&)> Execute;
    };
    explicit LaunchLists(Needs needs);

    static constexpr std::string_view officeFile = "Office.txt";
    static constexpr std::string_view favouritesFile = "favourites.txt";

    // Saving fails with 75 or 76. A file that can't be read leaves the rows as they are; loading never fails.
    void SaveOfficeList() { save(needs_.office, officeFile); }
    void LoadOfficeList() { load(needs_.office, officeFile); }
    void SaveFavouritesList() { save(needs_.favourites, favouritesFile); }
    void LoadFavouritesList() { load(needs_.favourites, favouritesFile); }

    void mnuOffice_Click(int index) { needs_.Execute(needs_.office.targets.List(index)); }
    void mnuCustom_Click(int index) { needs_.Execute(needs_.favourites.targets.List(index)); }

private:
    void save(const List& list, std::string_view file);
    void load(const List& list, std::string_view file);

    Needs needs_;
};

}  // namespace velmora
