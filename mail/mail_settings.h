#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "core/settings.h"
#include "platform/controls.h"

namespace velmora {

/// The mail account as the settings file holds it, on its way into the boxes of the options window.
class MailSettings {
public:
    struct Needs {
        Settings& settings;
        const std::string& IniFile;
        const std::string& MainKey;
        TextBox& TxtServer;
        TextBox& TxtUser;
        TextBox& TxtPass;
        TextBox& TxtChkInterval;
        CheckBox& chkReadEntire;
        Timer& TmrMail;
        std::int16_t& MailInterval;  ///< minutes between checks
        bool& ReadEntire;
    };
    explicit MailSettings(Needs needs) : needs_(needs) {}

    /// Fills the boxes, and turns the timer of the mail check on or off. An interval that is no number leaves
    /// the one before in place. Never fails.
    void ReadMailSettings();

private:
    std::string read(std::string_view key) const;

    Needs needs_;
};

}  // namespace velmora
