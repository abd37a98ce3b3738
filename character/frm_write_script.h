#pragma once

#include <functional>
#include <string>

#include "character/action_scripts.h"
#include "core/file_dialogs.h"
#include "platform/agent_control.h"
#include "platform/controls.h"
#include "platform/dialogs.h"
#include "platform/files.h"
#include "platform/form.h"
#include "platform/list_controls.h"

namespace velmora {

/// The window in which action scripts are written, tried out and saved.
class frmWriteScript : public Form {
public:
    struct Needs {
        Menu& mnuScriptWrite;
        FileDialogs& fileDialogs;
        Files& files;
        std::string applicationFolder;
        Dialogs& dialogs;
        ActionScripts& scripts;
        std::function<AgentCharacter&()> Character;  ///< fails with 91 while there is none
    };
    frmWriteScript(Forms& forms, Needs needs);

    Frame Script{*this, "Script", {.Caption = "Create Action Script."}};
    Label Label1{*this, "Label1", {.Caption = "Animation:"}};
    ComboBox comAnim{*this,
                     "comAnim",
                     {.Text = "Select ...",
                      .List = {"Acknowledge",   "Alert",          "Announce",    "Blink",     "Confused",
                               "Congratulate",  "Congratulate_2", "Decline",     "DoMagic1",  "DoMagic2",
                               "DontRecognize", "Explain",        "GestureDown", "GestureUp", "GestureRight",
                               "GestureLeft",   "GetAttention",   "Greet",       "LookDown",  "LookUp",
                               "Pleased",       "Process",        "Read",        "Sad",       "Search",
                               "Suggest",       "Surprised",      "Think",       "Uncertain", "Wave",
                               "Write"}}};
    Array<Button> cmdAdd{
        *this, "cmdAdd", {{.Caption = "Add"}, {.Caption = "Add"}}, &frmWriteScript::cmdAdd_Click};
    Array<Button> cmdPreview{*this,
                             "cmdPreview",
                             {{.Caption = "Preview"}, {.Caption = "Preview"}},
                             &frmWriteScript::cmdPreview_Click};
    Label Label2{*this, "Label2", {.Caption = "Say This:"}};
    TextBox txtSay{*this, "txtSay", {.Text = "Say This ..."}};
    RichTextBox txtScript{*this, "txtScript"};
    Frame Frame1{*this, "Frame1", {.Caption = "Finished ?"}};
    Button cmdPreviewScript{
        *this, "cmdPreviewScript", {.Caption = "Preview Script"}, &frmWriteScript::cmdPreviewScript_Click};
    Button cmdSaveScript{
        *this, "cmdSaveScript", {.Caption = "Save Script"}, &frmWriteScript::cmdSaveScript_Click};
    Picture ImgInfo{*this, "ImgInfo", {.ToolTipText = "Click for Help"}, &frmWriteScript::ImgInfo_Click};

    /// The animation picked last; empty until one is picked. What is typed into the combo is none.
    std::string SelectedAnim;

    void comAnim_Click();
    /// Adds a line to the script: 0 an animation, any other the sentence.
    void cmdAdd_Click(int Index);
    /// Tries the animation (0) or the sentence (1) on the character.
    void cmdPreview_Click(int Index);
    /// Runs the script by way of a file in the application folder, which stays there.
    void cmdPreviewScript_Click();
    void cmdSaveScript_Click();
    void ImgInfo_Click();

private:
    Needs needs_;
};

}  // namespace velmora
