#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/controls.h"
#include "platform/form.h"
#include "platform/list_controls.h"
#include "platform/menu.h"

namespace velmora {

/// The options window. Its combos hold the office programs and the favourite sites, for the whole program.
class FrmOptions : public Form {
public:
    struct Needs {
        std::function<Menu&(int)> mnuOffice;
        std::function<Menu&(int)> mnuCustom;
        std::function<void()> LoadOfficeList;
        std::function<void()> LoadFavouritesList;
    };
    FrmOptions(Forms& forms, Needs needs);

    ComboBox ComOffice{*this, "ComOffice", {.Text = "Office Items", .List = unusedRows()}};
    ComboBox comOfficeCommands{
        *this, "comOfficeCommands", {.Text = "Office Commands", .List = unusedRows(), .Visible = false}};
    ComboBox comFavourites{*this, "comFavourites", {.Text = "Favourite Items", .List = unusedRows()}};
    ComboBox comFavouriteURL{
        *this, "comFavouriteURL", {.Text = "Favourite URL", .List = unusedRows(), .Visible = false}};

    TextBox TxtServer{*this, "TxtServer"};
    TextBox TxtUser{*this, "TxtUser"};
    TextBox TxtPass{*this, "TxtPass", {.Password = true}};
    TextBox TxtChkInterval{*this, "TxtChkInterval", {.Text = "5"}};
    CheckBox chkReadEntire{*this, "chkReadEntire", {.Caption = "Read message body."}};

    // Carry the names to the menu. A name that begins with "Item" counts as an unused row, whatever it names,
    // and hides the entry.
    void Set_Office();
    void Set_Favourites();

protected:
    void Form_Load() override;

private:
    static std::vector<std::string> unusedRows();

    Needs needs_;
};

}  // namespace velmora
