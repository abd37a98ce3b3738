#include <array>

#include "base/conversions.h"
#include "base/failure.h"
#include "core/crypter.h"
#include "options/frm_options.h"

namespace velmora {

template <class... Steps>
void FrmOptions::save(Steps... steps) {
    guarded(
        [this](const Failure& failure) {
            needs_.dialogs.MsgBox(std::to_string(failure.number) + "\n" + failure.description,
                                  "Error During Save", BoxIcon::exclamation);
            return After::next;
        },
        steps...);
}

void FrmOptions::write(std::string_view section, std::string_view key, std::string_view value) {
    needs_.settings.WriteIni(section, key, value, needs_.IniFile);
}

void FrmOptions::CmdSave_Click() {
    static constexpr std::array pages{&FrmOptions::saveOffice, &FrmOptions::saveAccessories,
                                      &FrmOptions::saveFavourites, &FrmOptions::saveMail,
                                      &FrmOptions::saveJokes};
    if (CurrentFrame == 0) return;
    (this->*pages.at(static_cast<std::size_t>(CurrentFrame) - 1))();
}

void FrmOptions::saveOffice() {
    save([this] { needs_.SaveOfficeList(); }, [this] { Set_Office(); }, [this] { play("Write"); },
         [this] { speak("I have updated your office menu."); }, [this] { play("WriteReturn"); },
         [this] { play("Restpose"); });
}

void FrmOptions::saveAccessories() {
    save([this] { writeAccessories(); }, [this] { SetAccessoriesMnu(); }, [this] { play("Write"); },
         [this] { speak("I have updated the accessories menu."); }, [this] { play("WriteReturn"); });
}

void FrmOptions::saveFavourites() {
    save([this] { needs_.SaveFavouritesList(); }, [this] { Set_Favourites(); }, [this] { play("Write"); },
         [this] { speak("I have updated your favourites menu."); }, [this] { play("WriteReturn"); },
         [this] { play("Restpose"); });
}

void FrmOptions::saveMail() {
    save([this] { write("EMail", "Server", TxtServer.Text.get()); },
         [this] { write("EMail", "User", TxtUser.Text.get()); },
         [this] { write("EMail", "Pass", Encipher(TxtPass.Text.get(), needs_.MainKey)); },
         [this] { write("EMail", "Interval", TxtChkInterval.Text.get()); },
         [this] { write("EMail", "Entire", booleanText(needs_.ReadEntire)); },
         [this] { needs_.MailInterval = toInteger16(TxtChkInterval.Text.get()); });
    if (needs_.MailInterval != 0) {
        save([this] { needs_.TmrMail.Enabled = true; }, [this] { speak("Mail Checking is on"); });
    } else {
        // That turning it off is told by a box, and turning it on by the character, is meant.
        save([this] { needs_.TmrMail.Enabled = false; },
             [this] { needs_.dialogs.MsgBox("Mail Checking OFF", "Velmora"); });
    }
}

void FrmOptions::saveJokes() {
    const bool tell = chkJoke.Value == 1;
    save(
        [this] {
            if (jokesFile_.empty()) throw Failure(errors::pathFileAccess);
            needs_.files.replace(jokesFile_, rtbJokes.Text.get(), Privacy::shared);
        },
        [&] { write("Options", "Jokes", tell ? "On" : "Off"); }, [&] { needs_.TimerJoke.Enabled = tell; },
        [this] { play("Congratulate_2"); }, [this] { speak("Your jokes have been saved."); },
        [this] { play("Pleased"); });
}

}  // namespace velmora
