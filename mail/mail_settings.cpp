#include "mail/mail_settings.h"

#include "base/conversions.h"
#include "base/failure.h"
#include "core/crypter.h"

namespace velmora {

std::string MailSettings::read(std::string_view key) const {
    return needs_.settings.ReadIni("EMail", key, "", needs_.IniFile);
}

void MailSettings::ReadMailSettings() {
    passOver([this] { needs_.TxtServer.Text = read("Server"); },
             [this] { needs_.TxtUser.Text = read("User"); },
             [this] { needs_.TxtPass.Text = Decipher(read("Pass"), needs_.MainKey); });
    const std::string Interval = read("Interval");
    const std::string Entire = read("Entire");
    if (Entire == "True") {
        needs_.ReadEntire = true;
        passOver([this] { needs_.chkReadEntire.Value = 1; });
    } else if (Entire == "False" || Entire.empty()) {
        // The box is meant to stay checked if it was: only a person takes the mark away.
        needs_.ReadEntire = false;
    }
    passOver([&] { needs_.TxtChkInterval.Text = Interval; });
    passOver([this] {
        const bool checks = needs_.TxtChkInterval.Text.get() != "0";
        needs_.TmrMail.Enabled = checks;
        if (checks) needs_.MailInterval = toInteger16(needs_.TxtChkInterval.Text.get());
    });
}

}  // namespace velmora
