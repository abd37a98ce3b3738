#include "platform/machine_settings.h"

#include <array>

#include "base/text.h"

namespace velmora {
namespace {

struct Entry {
    std::string_view section;
    std::string_view key;
    std::string_view value;
    std::string_view comment;
};

constexpr std::array entries{
    Entry{"Character", "Default", "Merlin", "Name of the character package."},
    Entry{"Character", "Size", "100", "Its size on the desktop, in percent: 25 to 400."},
    Entry{"Character", "Balloon", "True", "Whether what it says is shown in a balloon."},
    Entry{"Character", "AutoHide", "True", "Whether the balloon closes by itself."},
    Entry{"Character", "Idle", "True", "Whether it moves of its own accord."},
    Entry{"Directory", "Endpoint", "http://127.0.0.1:8080",
          "Scheme, host and port of the messenger's directory service."},
    Entry{"Community", "Site", "",
          "Scheme and host of the community's web site; empty: the directory's endpoint."},
    Entry{"Maker", "Site", "https://velmora.invalid", "The maker's web site."},
    Entry{"Feedback", "Address", "feedback@velmora.invalid", "Mail address of the error report."},
    Entry{"Search", "AltaVista", "https://search.yahoo.com",
          "Scheme, host and port of each search service, put in front of its search path."},
    Entry{"Search", "Excite", "https://www.excite.com", ""},
    Entry{"Search", "Hotbot", "https://www.hotbot.com", ""},
    Entry{"Search", "Infoseek", "https://search.yahoo.com", ""},
    Entry{"Search", "Lycos", "https://search.lycos.com", ""},
    Entry{"Search", "Yahoo", "https://search.yahoo.com", ""},
    Entry{"Search", "SoftSeek", "https://search.yahoo.com", ""},
    Entry{"Search", "AudioFind", "http://audiofind.invalid:70",
          "Nobody offers this one in public any more; name a service of your own."},
    Entry{
        "Accessories", "Calculator", "calculator",
        "What each accessory opens: a program or a file. The names given here stand for the desktop's own."},
    Entry{"Accessories", "CDPlayer", "audio-player", ""},
    Entry{"Accessories", "Wordpad", "word-processor", ""},
    Entry{"Accessories", "Notepad", "text-editor", ""},
    Entry{"Accessories", "SystemInformation", "system-information", "What the about box opens."},
    Entry{"Link", "Kinds", "any",
          "What counts as a connection: any, or a list of ppp, ethernet, wifi, wwan, tunnel."},
    Entry{"Mail", "mail.example", "",
          "How a mail server is reached, a line for each: tls:PORT or starttls; else in clear, port 110."},
    Entry{"Speech", "Device", "default",
          "default, none (silent, in time) or file:PATH (a WAV of all that is said)."},
    Entry{"Speech", "Voice", "", "Name of the speech engine's voice; empty: the character's own."},
    Entry{"Speech", "Rate", "", "Words per minute; empty: the character's own."},
    Entry{"Speech", "Pitch", "", "0 to 99; empty: the character's own."},
    Entry{"Hearing", "Device", "default", "default (the microphone) or none."},
    Entry{"Hearing", "Key", "Scroll_Lock", "Held down while speaking; empty: none."},
};

}  // namespace

MachineSettings::MachineSettings(const SettingsFile& reader, const std::string& folder)
    : reader_(reader), file_(path(folder, fileName)) {}

std::string MachineSettings::value(std::string_view section, std::string_view key) const {
    std::string_view standing;
    for (const Entry& entry : entries) {
        if (equalsIgnoringCase(entry.section, section) && equalsIgnoringCase(entry.key, key))
            standing = entry.value;
    }
    return reader_.read(section, key, standing, file_);
}

std::string MachineSettings::initialText() {
    std::string text =
        "; What Velmora needs to know about this machine. Change a value and start the program anew.\n";
    std::string_view section;
    for (const Entry& entry : entries) {
        if (entry.section != section) {
            section = entry.section;
            text.append("\n[").append(section).append("]\n");
        }
        if (!entry.comment.empty()) text.append("; ").append(entry.comment).append("\n");
        text.append(entry.key).append("=").append(entry.value).append("\n");
    }
    return text;
}

}  // namespace velmora
