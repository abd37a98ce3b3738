#include "options/frm_options.h"

#include "base/failure.h"

namespace velmora {
namespace {

constexpr int rows = 10;

void carry(const ComboBox& names, const std::function<Menu&(int)>& entryOf) {
    for (int row = 0; row < rows; ++row) {
        passOver([&] {
            const std::string name = names.List(row);
            Menu& entry = entryOf(row);
            const bool used = !name.starts_with("Item");
            if (used) entry.Caption = name;
            entry.Visible = used;
        });
    }
}

}  // namespace

FrmOptions::FrmOptions(Forms& forms, Needs needs)
    : Form(forms, "FrmOptions", "Options"), needs_(std::move(needs)) {}

std::vector<std::string> FrmOptions::unusedRows() {
    std::vector<std::string> names;
    for (int row = 1; row <= rows; ++row) names.push_back("Item " + std::to_string(row));
    return names;
}

void FrmOptions::Form_Load() {
    passOver([this] { needs_.LoadFavouritesList(); }, [this] { needs_.LoadOfficeList(); });
}

void FrmOptions::Set_Office() {
    carry(ComOffice, needs_.mnuOffice);
}

void FrmOptions::Set_Favourites() {
    carry(comFavourites, needs_.mnuCustom);
}

}  // namespace velmora
