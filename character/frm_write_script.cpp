#include "character/frm_write_script.h"

#include <utility>

#include "base/failure.h"

namespace velmora {
namespace {

constexpr std::string_view previewFile = "Temp.vls";

}  // namespace

frmWriteScript::frmWriteScript(Forms& forms, Needs needs)
    : Form(forms, "frmWriteScript", "Write Action Script"), needs_(std::move(needs)) {
    needs_.mnuScriptWrite.Click.connect([this] { Show(); });
    comAnim.Click.connect([this] { comAnim_Click(); });
}

void frmWriteScript::comAnim_Click() {
    SelectedAnim = comAnim.List(comAnim.ListIndex());
}

void frmWriteScript::cmdAdd_Click(int Index) {
    std::string line = Index == 0 ? "Play:" : "Say:";
    line.append(Index == 0 ? SelectedAnim : txtSay.Text.get());
    const std::string& script = txtScript.Text;
    txtScript.Text = script.empty() ? line : script + "\r\n" + line;
}

void frmWriteScript::cmdPreview_Click(int Index) {
    if (Index == 0) needs_.Character().Play(SelectedAnim);
    if (Index == 1) needs_.Character().Speak(txtSay.Text);
}

void frmWriteScript::cmdPreviewScript_Click() {
    const std::string preview = path(needs_.applicationFolder, previewFile);
    guarded([this](const Failure& failure) { return needs_.scripts.failed(failure); },
            [&] { needs_.files.replace(preview, txtScript.Text.get(), Privacy::shared); });
    // It is the file that runs, also an older one that could not be replaced.
    needs_.scripts.run(preview);
}

void frmWriteScript::cmdSaveScript_Click() {
    const std::string closed = actionScriptFilter() + std::string(2, '\0');
    needs_.fileDialogs.SaveDialog(closed);
    // A cancelled dialog saves over the path of the last one, without a word: this is meant.
    const std::string script = needs_.fileDialogs.DialogFile;
    if (script.empty()) return;
    try {
        needs_.files.replace(script, txtScript.Text.get(), Privacy::shared);
    } catch (const Failure& failure) {
        needs_.dialogs.MsgBox("The script could not be saved.\n" + failure.description, "Save Script",
                              BoxIcon::exclamation);
    }
}

void frmWriteScript::ImgInfo_Click() {
    AgentCharacter& character = needs_.Character();
    character.Play("Explain");
    character.Speak(
        "Use the Animations combo box to select an animation to add to the current script, click Add "
        "Animation to add the selected animation.");
    character.Speak(
        "Type your message in the text box and click add to add a comment that the agent will speak.");
}

}  // namespace velmora
