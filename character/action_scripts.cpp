#include "character/action_scripts.h"

#include <cstdint>
#include <limits>
#include <utility>

namespace velmora {
namespace {

constexpr std::string_view sayWord = "Say:";
constexpr std::string_view playWord = "Play:";

constexpr std::size_t mostLines = std::numeric_limits<std::int16_t>::max();

}  // namespace

std::vector<std::string_view> scriptLines(std::string_view content) {
    std::vector<std::string_view> lines;
    while (!content.empty()) {
        if (lines.size() == mostLines) throw Failure(errors::overflow);
        const auto end = content.find('\r');
        lines.push_back(content.substr(0, end));
        if (end == std::string_view::npos) break;
        content.remove_prefix(end + 1);
        if (content.starts_with('\n')) content.remove_prefix(1);
    }
    return lines;
}

ActionScripts::ActionScripts(Needs needs) : needs_(std::move(needs)) {
    needs_.mnuScriptOpen.Click.connect([this] { mnuScriptOpen_Click(); });
}

void ActionScripts::mnuScriptOpen_Click() {
    needs_.fileDialogs.MyDialog(actionScriptFilter());
    // A cancelled dialog leaves the path of the last one, which then runs again: this is meant.
    const std::string script = needs_.fileDialogs.DialogFile;
    if (!script.empty()) run(script);
}

void ActionScripts::run(const std::string& path) {
    guarded([this](const Failure& failure) { return failed(failure); },
            [&] {
                const std::string content = needs_.files.read(path);
                for (const std::string_view line : scriptLines(content)) perform(line);
            });
}

void ActionScripts::perform(std::string_view line) {
    guarded([this](const Failure& failure) { return failed(failure); },
            [&] {
                if (line == "Show") {
                    needs_.AgentVisible();
                } else if (line.starts_with(sayWord)) {
                    needs_.Character().Speak(std::string(line.substr(sayWord.size())));
                } else if (line.starts_with(playWord)) {
                    needs_.Character().Play(std::string(line.substr(playWord.size())));
                }
            });
}

After ActionScripts::failed(const Failure& failure) {
    if (failure.number == errors::characterRefuses) return After::next;
    // The box speaks of the messenger: this is meant.
    needs_.dialogs.MsgBox("An error occured in the messenger.\nNumber: " + std::to_string(failure.number) +
                              "\nDescription: " + failure.description + "\nSource: " + failure.source,
                          "Active Script Error -Process Data");
    return After::next;
}

}  // namespace velmora
