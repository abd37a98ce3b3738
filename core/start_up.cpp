#include "core/start_up.h"

#include "base/failure.h"

namespace velmora {

void StartUp::Main() {
    std::string useDefault;
    passOver(
        [&] { useDefault = needs_.settings.ReadIni("Options", "Default", missingValue, defaultProfile); });
    if (useDefault == "True") {
        IniFile = defaultProfile;
    } else {
        // The dialog is shown again in its own second run of this, although its work is done: it is unloaded
        // only after that run has returned.
        passOver([&] { needs_.Login.Show(); });
        if (!needs_.Login.LoginOK) return;
    }

    bool previous = false;
    passOver([&] { needs_.Splash.Show(); }, [&] { previous = needs_.application.PrevInstance(); },
             [&] {
                 if (!previous) needs_.Main.Load();
             },
             [&] {
                 if (!previous) needs_.SetAgent();
             },
             [&] { needs_.Splash.Unload(); });
}

void StartUp::UnloadForms() {
    needs_.releaseWordApp();
    for (std::size_t i = needs_.forms.Count(); i-- > 0;) {
        // Unloading one form may unload others.
        if (i < needs_.forms.Count()) needs_.forms(i).Unload();
    }
}

}  // namespace velmora
