#include "desktop/launch_lists.h"

#include <algorithm>
#include <iterator>

#include "base/failure.h"
#include "base/text.h"
#include "desktop/execute.h"

namespace velmora {

LaunchLines readLaunchLines(std::string_view content) {
    std::array<std::string_view, 2 * launchRows> latest;
    LineWalk walk(content);
    for (std::size_t number = 0; const auto line = walk.next(); ++number) {
        latest[number % latest.size()] = content.substr(line->begin, line->end - line->begin);
    }
    LaunchLines lines;
    std::copy(latest.begin(), latest.end(), lines.begin());
    return lines;
}

std::string launchFileText(const LaunchLines& lines) {
    std::string text;
    for (const std::string& line : lines) {
        std::replace_copy_if(
            line.begin(), line.end(), std::back_inserter(text), [](char c) { return c == '\r' || c == '\n'; },
            ' ');
        text.append("\r\n");
    }
    return text;
}

LaunchLists::LaunchLists(Needs needs) : needs_(std::move(needs)) {
    for (int index = 0; index < static_cast<int>(launchRows); ++index) {
        needs_.office.entry(index).Click.connect([this, index] { mnuOffice_Click(index); });
        needs_.favourites.entry(index).Click.connect([this, index] { mnuCustom_Click(index); });
    }
}

void LaunchLists::save(const List& list, std::string_view file) {
    LaunchLines lines;
    for (std::size_t row = 0; row < launchRows; ++row) {
        lines[2 * row] = list.names.List(static_cast<int>(row));
        lines[2 * row + 1] = list.targets.List(static_cast<int>(row));
    }
    needs_.files.replace(path(needs_.applicationFolder, file), launchFileText(lines), Privacy::shared);
}

void LaunchLists::load(const List& list, std::string_view file) {
    const std::string from = path(needs_.applicationFolder, file);
    if (!FileExists(needs_.files, from)) return;
    passOver([&] {
        const LaunchLines lines = readLaunchLines(needs_.files.read(from));
        for (std::size_t row = 0; row < launchRows; ++row) {
            list.names.setList(static_cast<int>(row), lines[2 * row]);
            list.targets.setList(static_cast<int>(row), lines[2 * row + 1]);
        }
        list.carry();
    });
}

}  // namespace velmora
