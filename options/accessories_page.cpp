#include "base/failure.h"
#include "options/frm_options.h"

namespace velmora {
namespace {

constexpr std::string_view selected = "Sel";

void mirror(const CheckBox& box, TextBox& text) {
    passOver([&] { text.Text = box.Value == 1 ? std::string(selected) : std::string(); });
}

}  // namespace

/// A program on the page: its box, the hidden text that is saved and applied in place of the box, and what
/// follows that text.
struct FrmOptions::Accessory {
    CheckBox FrmOptions::*box;
    TextBox FrmOptions::*mirror;
    std::string_view key;
    std::string_view entry;
    std::string_view command;
};

const std::vector<FrmOptions::Accessory>& FrmOptions::accessories() {
    static const std::vector<Accessory> table{
        {&FrmOptions::ChkCalc, &FrmOptions::TxtCalcSel, "Calc", "mnuCalculator", "Calculator"},
        {&FrmOptions::ChkCD, &FrmOptions::TxtCDSel, "CD", "mnuCDPlayer", "CD Player"},
        {&FrmOptions::ChkNotePad, &FrmOptions::TxtNotepadSel, "Notepad", "mnuNotepad", "Notepad"},
        {&FrmOptions::ChkWordpad, &FrmOptions::TxtWordpadSel, "Wordpad", "mnuWordpad", "Wordpad"},
    };
    return table;
}

void FrmOptions::ChkCalc_Click() {
    mirror(ChkCalc, TxtCalcSel);
}

void FrmOptions::ChkCD_Click() {
    mirror(ChkCD, TxtCDSel);
}

void FrmOptions::ChkNotePad_Click() {
    mirror(ChkNotePad, TxtNotepadSel);
}

void FrmOptions::ChkWordpad_Click() {
    mirror(ChkWordpad, TxtWordpadSel);
}

// At the start there is no character yet, so that the commands of programs that are off are meant to stay
// enabled until the page is saved.
void FrmOptions::SetAccessoriesMnu() {
    for (const Accessory& each : accessories()) {
        passOver([&] {
            (this->*each.mirror).Text =
                needs_.settings.ReadIni("Accessories", each.key, missingValue, needs_.IniFile);
        });
    }
    const auto isOn = [this](const Accessory& each) { return (this->*each.mirror).Text.get() == selected; };
    for (const Accessory& each : accessories()) {
        const bool on = isOn(each);
        passOver([&] { needs_.menu(each.entry, {}).Visible = on; },
                 [&] { needs_.Character().Commands().Item(each.command).Enabled = on; });
    }
    for (const Accessory& each : accessories()) {
        passOver([&] {
            if (isOn(each)) (this->*each.box).Value = 1;
        });
    }
}

void FrmOptions::writeAccessories() {
    for (const Accessory& each : accessories())
        write("Accessories", each.key, (this->*each.mirror).Text.get());
}

}  // namespace velmora
