#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "organiser/line_list.h"
#include "platform/agent_control.h"
#include "platform/controls.h"
#include "platform/files.h"
#include "platform/list_controls.h"
#include "platform/menu.h"
#include "platform/random.h"

namespace velmora {

/// The character's small talk: a joke now and then, jokes and tips on request, and songs, all out of text
/// files in the application folder that the user may edit.
class Jokes {
public:
    struct Needs {
        const Files& files;
        std::string applicationFolder;
        Random& random;
        FileListBox& fleSongs;
        Timer& TimerJoke;
        Menu& mnuJokeTell;
        Menu& mnuInteractTip;
        Menu& mnuInteractSong;
        std::function<AgentCharacter&()> Character;  ///< fails with 91 while there is none
        std::function<void()> AgentVisible;
    };
    explicit Jokes(Needs needs);

    LineList JokeList;
    std::int32_t JokeIndex = 0;  ///< of the last joke told, from 1
    LineList TipList;
    std::int32_t TipIndex = 0;          ///< of the last tip told, from 1
    std::vector<std::string> SongList;  ///< names of files in the folder that `fleSongs` shows
    std::int16_t JokeTicks = 0;         ///< minutes since the last joke that came unasked

    /// Load the files of the application folder. A missing file leaves its list as it is; one that is there
    /// and can't be read fails with 75.
    void loadJokesAndTips();
    /// Points `fleSongs` at the folder of the songs, and fills `SongList` from it.
    void buildSongList();

    /// Append the lines of the file to the list. False if the path is empty or names no plain file; fails
    /// with 75 if the file can't be read.
    bool LoadJokes(const std::string& path);
    bool LoadTips(const std::string& path);
    /// Appends the rows of `fleSongs` to `SongList`; the menu entry is disabled if there is no song then.
    void LoadSongs();

    void TellJoke();
    void TellTip();
    /// Performs one song, chosen at random. Whatever fails is told by the character.
    void SingSong();
    void TimerJoke_Timer();

private:
    bool load(LineList& list, const std::string& path);
    std::int32_t chosenFrom(const LineList& list);
    void performChosenSong();
    void perform(std::string_view line);

    Needs needs_;
};

}  // namespace velmora
