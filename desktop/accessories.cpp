#include "desktop/accessories.h"

#include <array>

#include "base/failure.h"

namespace velmora {
namespace {

/// What the character does before the launch, in this order; what is empty is left out.
struct Accessory {
    std::string_view entry;
    std::string_view setting;  ///< key of what is opened
    std::string_view playFirst;
    std::string_view speak;
    std::string_view playLast;
};

constexpr std::array accessories{
    Accessory{"mnuCalculator", "Calculator", "", "Let's get that math done.", "Process"},
    Accessory{"mnuCDPlayer", "CDPlayer", "", "How about some music?", ""},
    Accessory{"mnuNotepad", "Notepad", "Write", "Ready to write some notes?", "ReadReturn"},
    Accessory{
        "mnuWordpad", "Wordpad", "Write",
        "How about a short story today?|A poem would be nice, don't you think?|What are we writing today?",
        "ReadReturn"},
};

}  // namespace

Accessories::Accessories(Needs needs) : needs_(std::move(needs)) {
    for (const Accessory& accessory : accessories) {
        const auto play = [this](std::string_view animation) {
            if (!animation.empty()) needs_.Character().Play(std::string(animation));
        };
        needs_.menu(accessory.entry).Click.connect([this, &accessory, play] {
            passOver([&] { play(accessory.playFirst); },
                     [&] { needs_.Character().Speak(std::string(accessory.speak)); },
                     [&] { play(accessory.playLast); },
                     [&] { needs_.Execute(needs_.machine.value("Accessories", accessory.setting)); });
        });
    }
    needs_.menu("mnuEMail").Click.connect([this] { MnuEMail_Click(); });
}

void Accessories::MnuEMail_Click() {
    needs_.Execute("mailto:");
}

}  // namespace velmora
