#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/file_dialogs.h"
#include "core/settings.h"
#include "platform/agent_control.h"
#include "platform/controls.h"
#include "platform/dialogs.h"
#include "platform/files.h"
#include "platform/form.h"
#include "platform/list_controls.h"
#include "platform/menu.h"

namespace velmora {

/// The options window: five pages on a tab strip, and a button that saves the page in view. Its controls hold
/// the launch lists and the mail account for the whole program, so that an edit tells before it is saved.
class FrmOptions : public Form {
public:
    struct Needs {
        Files& files;
        Settings& settings;
        const std::string& IniFile;
        std::string applicationFolder;
        Dialogs& dialogs;
        FileDialogs& fileDialogs;
        /// Any entry of the main menu; a member of an array by its index.
        std::function<Menu&(std::string_view, std::optional<int>)> menu;
        std::function<AgentCharacter&()> Character;  ///< fails with 91 while there is none
        const std::string& MainKey;
        Timer& TmrMail;
        Timer& TimerJoke;
        std::int16_t& MailInterval;  ///< minutes between mail checks, 0 for none
        bool& ReadEntire;            ///< whether the body of a message is read with its subject
        std::function<void()> ReadMailSettings;
        std::function<void()> LoadOfficeList;
        std::function<void()> SaveOfficeList;
        std::function<void()> LoadFavouritesList;
        std::function<void()> SaveFavouritesList;
    };
    FrmOptions(Forms& forms, Needs needs);

    velmora::TabStrip TabStrip{*this,
                               "TabStrip",
                               {.Rows = {{.Text = "My Office"},
                                         {.Text = "Accessories"},
                                         {.Text = "Favourites"},
                                         {.Text = "E-Mail"},
                                         {.Text = "Jokes"}}}};
    Array<velmora::Frame> Frame{*this,
                                "Frame",
                                {{.Caption = "My Office Settings", .Visible = false},
                                 {.Caption = "Accessories Settings", .Visible = false},
                                 {.Caption = "Internet favourites", .Visible = false},
                                 {.Caption = "E-Mail Settings", .Visible = false},
                                 {.Caption = "Jokes/Tips", .Visible = false}},
                                nullptr,
                                1};

    ComboBox ComOffice{*this, "ComOffice", {.Text = "Office Items", .List = unusedRows()}};
    ComboBox comOfficeCommands{
        *this, "comOfficeCommands", {.Text = "Office Commands", .List = unusedRows(), .Visible = false}};
    TextBox txtProgrammeName{*this, "txtProgrammeName", {}, &FrmOptions::txtProgrammeName_Change};
    TextBox txtOfficeCommand{*this, "txtOfficeCommand", {}, &FrmOptions::txtOfficeCommand_Change};
    Button cmdOfficeBrowse{
        *this, "cmdOfficeBrowse", {.Caption = "Browse"}, &FrmOptions::cmdOfficeBrowse_Click};

    CheckBox ChkCalc{*this, "ChkCalc", {.Caption = "Calculator"}, &FrmOptions::ChkCalc_Click};
    CheckBox ChkCD{*this, "ChkCD", {.Caption = "CD Player"}, &FrmOptions::ChkCD_Click};
    CheckBox ChkNotePad{*this, "ChkNotePad", {.Caption = "Notepad"}, &FrmOptions::ChkNotePad_Click};
    CheckBox ChkWordpad{*this, "ChkWordpad", {.Caption = "WordPad"}, &FrmOptions::ChkWordpad_Click};
    TextBox TxtCalcSel{*this, "TxtCalcSel", {.Visible = false}};
    TextBox TxtCDSel{*this, "TxtCDSel", {.Visible = false}};
    TextBox TxtNotepadSel{*this, "TxtNotepadSel", {.Visible = false}};
    TextBox TxtWordpadSel{*this, "TxtWordpadSel", {.Visible = false}};

    ComboBox comFavourites{*this, "comFavourites", {.Text = "Favourite Items", .List = unusedRows()}};
    ComboBox comFavouriteURL{
        *this, "comFavouriteURL", {.Text = "Favourite URL", .List = unusedRows(), .Visible = false}};
    TextBox txtFavouriteSite{*this, "txtFavouriteSite", {}, &FrmOptions::txtFavouriteSite_Change};
    TextBox txtURL{*this, "txtURL", {}, &FrmOptions::txtURL_Change};

    TextBox TxtServer{*this, "TxtServer"};
    TextBox TxtUser{*this, "TxtUser"};
    TextBox TxtPass{*this, "TxtPass", {.Password = true}};
    TextBox TxtChkInterval{*this, "TxtChkInterval", {.Text = "5"}};
    CheckBox chkReadEntire{
        *this, "chkReadEntire", {.Caption = "Read message body."}, &FrmOptions::chkReadEntire_Click};

    RichTextBox rtbJokes{*this, "rtbJokes"};
    CheckBox chkJoke{*this, "chkJoke", {.Caption = "Tell jokes automatically."}};

    Button CmdSave{*this, "CmdSave", {.Caption = "Save ..."}, &FrmOptions::CmdSave_Click};
    Button cmdDone{*this, "cmdDone", {.Caption = "Done"}, &FrmOptions::cmdDone_Click};

    std::int16_t CurrentFrame = 0;  ///< the page in view, 0 before there was one
    int ListIndex = 0;              ///< the row picked last, in either of the two lists

    /// Brings a page into view and shows the window. A name that no page has changes no page.
    void Show_Frame(std::string_view name);

    // Carry the names to the menu. A name that begins with "Item" counts as an unused row, whatever it names,
    // and hides the entry.
    void Set_Office();
    void Set_Favourites();
    /// Has the menu and the character's commands offer the accessories that the settings name, and no others.
    void SetAccessoriesMnu();

    void TabStrip_Click();
    void ChkCalc_Click();
    void ChkCD_Click();
    void ChkNotePad_Click();
    void ChkWordpad_Click();
    void chkReadEntire_Click();
    void ComOffice_Click();
    void comFavourites_Click();
    void txtProgrammeName_Change();
    void txtOfficeCommand_Change();
    void txtFavouriteSite_Change();
    void txtURL_Change();
    void cmdOfficeBrowse_Click();
    void CmdSave_Click();
    void cmdDone_Click();

protected:
    void Form_Load() override;
    void Form_Unload() override;

private:
    struct Accessory;
    static const std::vector<Accessory>& accessories();
    static std::vector<std::string> unusedRows();

    void bringIntoView(int page);
    void pick(const ComboBox& names, ComboBox& targets, TextBox& name, TextBox& target);
    void loadJokes();

    /// Runs the steps in order; one that fails is told in a box, and the next one runs.
    template <class... Steps>
    void save(Steps... steps);
    void saveOffice();
    void saveAccessories();
    void saveFavourites();
    void saveMail();
    void saveJokes();
    void writeAccessories();
    void write(std::string_view section, std::string_view key, std::string_view value);
    void play(const std::string& animation) { needs_.Character().Play(animation); }
    void speak(const std::string& text) { needs_.Character().Speak(text); }

    Needs needs_;
    std::string jokesFile_;  // where the text of rtbJokes came from; empty if no file could be read
};

}  // namespace velmora
