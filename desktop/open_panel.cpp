#include "desktop/open_panel.h"

#include "base/failure.h"

namespace velmora {
namespace {

using namespace std::string_literals;

const std::string programsFirst = "Executable Files\0*.exe\0All Files (*.*)\0*.*"s;

}  // namespace

OpenPanel::OpenPanel(Needs needs) : needs_(std::move(needs)) {
    needs_.mnuOpenFile.Click.connect([this] { mnuOpenFile_Click(); });
    needs_.cmdOpenBrowse.Click.connect([this] { cmdOpenBrowse_Click(); });
    needs_.cmdOpenGo.Click.connect([this] { cmdOpenGo_Click(); });
}

void OpenPanel::mnuOpenFile_Click() {
    needs_.show();
}

void OpenPanel::cmdOpenBrowse_Click() {
    needs_.dialogs.MyDialog(programsFirst);
    needs_.txtOpenFile.Text = needs_.dialogs.DialogFile;
}

void OpenPanel::cmdOpenGo_Click() {
    const std::string file = needs_.txtOpenFile.Text;
    if (!file.empty()) return needs_.Execute(file);
    passOver([&] { needs_.Character().Play("Sad"); },
             [&] { needs_.Character().Speak("I can't see what you want me to open."); },
             [&] { needs_.txtOpenFile.SetFocus(); });
}

}  // namespace velmora
