#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// One thing that was asked of the character. The queue works requests off one at a time, in the order given.
/// Keeping the handle is what asks for `RequestComplete`: for a request whose handle was dropped at once,
/// none is raised.
class AgentRequest {
public:
    virtual ~AgentRequest() = default;
};
using Request = std::shared_ptr<const AgentRequest>;

/// Something that the character can be asked for by name or by voice.
struct AgentCommand {
    const std::string Name;           ///< its key in the collection, case and all
    const std::string Caption;        ///< in the character's list of commands
    const std::string Voice;          ///< the grammar of what may be said for it
    bool Enabled = true;              ///< a disabled command is not heard
    bool Visible = true;              ///< whether the list shows it; a hidden one can be spoken all the same
    int Confidence = 0;               ///< the score that it asks for, -100 to 100
    std::string ConfidenceText = {};  ///< the tip for a recognition below that
};

/// The commands that the character knows.
class AgentCommands {
public:
    virtual ~AgentCommands() = default;
    /// Fails with 457 if there is a command of that name.
    virtual void Add(const std::string& name, const std::string& caption, const std::string& voice,
                     bool enabled, bool visible) = 0;
    /// The command, which stays in its place as long as the collection. Fails with 91 if there is none.
    virtual AgentCommand& Item(std::string_view name) = 0;
    virtual void setVisible(bool visible) = 0;
    virtual void setCaption(const std::string& caption) = 0;
    virtual void setVoice(const std::string& voice) = 0;
};

/// A loaded character. Calls return at once; what they ask for runs later, in order. Every call fails with 91
/// once the character has been unloaded.
class AgentCharacter {
public:
    virtual ~AgentCharacter() = default;

    virtual std::string Name() const = 0;
    /// Whether it is on the screen; changes when the `Show` or `Hide` runs, not when it is asked for.
    virtual bool Visible() const = 0;
    /// 1033 is English, the one language there is.
    virtual void setLanguageID(int id) = 0;
    /// Whether a right click opens a menu of the character's own.
    virtual void setAutoPopupMenu(bool automatic) = 0;

    virtual Request Show() = 0;
    virtual Request Hide() = 0;
    /// Says the text with a word balloon. Where it holds `|`, one of the alternatives between the bars is
    /// picked at random; `\Map="spoken"="shown"\` says one text and shows the other.
    virtual Request Speak(const std::string& text) = 0;
    /// Shows the text in a thought balloon, silently.
    virtual Request Think(const std::string& text) = 0;
    /// Plays the animation, named in any case. On a hidden character, or with a name that it lacks, the
    /// request fails.
    virtual Request Play(const std::string& animation) = 0;
    /// Moves to the position, in pixels.
    virtual Request MoveTo(int x, int y) = 0;
    /// Drops all requests, the one under way included.
    virtual void StopAll() = 0;
    /// Turns the speech input on or off.
    virtual void Listen(bool on) = 0;

    virtual AgentCommands& Commands() = 0;
};

/// A command that a person has picked or spoken.
struct AgentUserInput {
    std::string Name;    ///< of the command, empty if none was recognised
    std::string Voice;   ///< the words as they were heard
    int Confidence = 0;  ///< how sure the recognition is, -100 to 100; 0 for a pick from the list
};

/// What a mouse did on the character: button 1 is the left one, 2 the right one; x and y are pixels on the
/// screen.
struct AgentClick {
    int button = 1;
    int shift = 0;
    int x = 0;
    int y = 0;
};

/// The character server, as `AgentCtrl` on the main window reaches it. Its events come each in a turn of its
/// own.
class AgentControl {
public:
    virtual ~AgentControl() = default;

    /// Loads the default character under this id. Fails with 91 if there is no character to load.
    virtual void CharactersLoad(const std::string& id) = 0;
    /// Fails with 91 if none is loaded under this id.
    virtual AgentCharacter& CharactersItem(const std::string& id) = 0;
    /// Fails with 91 if none is loaded under this id.
    virtual void CharactersUnload(const std::string& id) = 0;

    /// The window with the character's own options.
    virtual void setPropertySheetVisible(bool visible) = 0;
    /// The dialog that chooses the default character; the choice tells at the next start.
    virtual void ShowDefaultCharacterProperties() = 0;

    std::function<void(const AgentUserInput&)> Command;
    std::function<void(const Request&)> RequestComplete;
    std::function<void(const AgentClick&)> Click;
    std::function<void(const AgentClick&)> DblClick;
};

}  // namespace velmora
