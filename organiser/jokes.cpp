#include "organiser/jokes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "base/failure.h"
#include "base/text.h"

namespace velmora {
namespace {

constexpr std::string_view monotone = R"(\Chr="Monotone"\)";
constexpr std::string_view speakWord = "Speak ";
constexpr std::string_view playWord = "Play ";

/// The most lines of one song that the character performs: what is asked of it is held in memory until it is
/// done.
constexpr std::ptrdiff_t longestSong = 1'000'000;

bool asksSomething(std::string_view line) {
    return line == "Show" || line.starts_with(speakWord) || line.starts_with(playWord);
}

/// Whether there is a plain file at the path; a folder of that name does not count.
bool plainFileExists(const Files& files, const std::string& path) {
    const auto slash = path.find_last_of('/');
    const std::string name = path.substr(slash + 1);
    if (slash == std::string::npos || name.empty()) return false;
    const auto names = files.list(path.substr(0, slash), name);
    return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

Jokes::Jokes(Needs needs) : needs_(std::move(needs)) {
    needs_.mnuJokeTell.Click.connect([this] { TellJoke(); });
    needs_.mnuInteractTip.Click.connect([this] { TellTip(); });
    needs_.mnuInteractSong.Click.connect([this] { SingSong(); });
    needs_.TimerJoke.Tick.connect([this] { TimerJoke_Timer(); });
}

void Jokes::loadJokesAndTips() {
    LoadJokes(path(needs_.applicationFolder, "Jokes.txt"));
    LoadTips(path(needs_.applicationFolder, "Tips.txt"));
}

void Jokes::buildSongList() {
    needs_.fleSongs.Pattern = "*.txt";
    needs_.fleSongs.Path = path(needs_.applicationFolder, "Songs");
    needs_.fleSongs.Refresh(needs_.files);
    LoadSongs();
}

bool Jokes::LoadJokes(const std::string& path) {
    return load(JokeList, path);
}

bool Jokes::LoadTips(const std::string& path) {
    return load(TipList, path);
}

bool Jokes::load(LineList& list, const std::string& path) {
    if (!plainFileExists(needs_.files, path)) return false;
    list.add(needs_.files.read(path));
    return true;
}

void Jokes::LoadSongs() {
    for (const Row& row : needs_.fleSongs.listedRows()) SongList.push_back(row.Text);
    if (SongList.empty()) needs_.mnuInteractSong.Enabled = false;
}

std::int32_t Jokes::chosenFrom(const LineList& list) {
    return static_cast<std::int32_t>(needs_.random.Rnd() * static_cast<double>(list.Count()) + 1);
}

void Jokes::TellJoke() {
    JokeIndex = chosenFrom(JokeList);
    if (JokeList.Count() == 0) return;
    passOver([&] { needs_.Character().Play("GetAttention"); },
             [&] { needs_.Character().Speak(JokeList.Item(static_cast<std::size_t>(JokeIndex))); },
             [&] { needs_.Character().Play("GetAttentionReturn"); },
             [&] { needs_.Character().Play("Pleased"); });
}

void Jokes::TellTip() {
    TipIndex = chosenFrom(TipList);
    if (TipList.Count() == 0) return;
    passOver([&] { needs_.Character().Play("Announce"); },
             [&] { needs_.Character().Speak(TipList.Item(static_cast<std::size_t>(TipIndex))); },
             [&] { needs_.Character().Play("Pleased"); });
}

void Jokes::TimerJoke_Timer() {
    needs_.random.Randomize();
    // A new target is drawn every minute. Past 4 the ticks never meet one again, and no joke comes for the
    // rest of the run: this is meant.
    const int target = static_cast<int>(4 * needs_.random.Rnd() + 1);
    if (JokeTicks == target) {
        TellJoke();
        JokeTicks = 0;
    } else if (JokeTicks < std::numeric_limits<std::int16_t>::max()) {
        ++JokeTicks;
    }
}

void Jokes::SingSong() {
    guarded(
        [this](const Failure&) {
            passOver(
                [&] { needs_.Character().Play("Sad"); },
                [&] { needs_.Character().Speak("An error occured I was unable to open the songs file."); });
            return After::leave;
        },
        [this] { performChosenSong(); });
}

void Jokes::performChosenSong() {
    needs_.random.Randomize();
    // Of several songs the last one never has its turn: this is meant.
    const double songs = static_cast<double>(SongList.size());
    const auto pick = static_cast<std::ptrdiff_t>(std::floor(needs_.random.Rnd() * (songs - 1) + 1));
    if (pick < 1 || pick > std::ssize(SongList)) throw Failure(errors::invalidCall);

    const std::string song =
        needs_.files.read(path(needs_.fleSongs.Path.get(), SongList[static_cast<std::size_t>(pick - 1)]));
    const auto eachLine = [&song](const auto& what) {
        LineWalk walk(song);
        while (const auto line = walk.next())
            what(std::string_view(song).substr(line->begin, line->end - line->begin));
    };
    std::ptrdiff_t asked = 0;
    eachLine([&asked](std::string_view line) { asked += asksSomething(line) ? 1 : 0; });
    if (asked > longestSong) throw Failure(errors::overflow);
    eachLine([this](std::string_view line) { perform(line); });
}

void Jokes::perform(std::string_view line) {
    if (line == "Show") {
        needs_.AgentVisible();
    } else if (line.starts_with(speakWord)) {
        needs_.Character().Speak(std::string(monotone).append(line.substr(speakWord.size())));
    } else if (line.starts_with(playWord)) {
        needs_.Character().Play(std::string(line.substr(playWord.size())));
    }
}

}  // namespace velmora
