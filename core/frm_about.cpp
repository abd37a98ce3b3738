#include "core/frm_about.h"

namespace velmora {

frmAbout::frmAbout(Forms& forms, Needs needs)
    : Form(forms, "frmAbout", "About Velmora"), needs_(std::move(needs)) {}

void frmAbout::StartSysInfo() {
    needs_.Execute(needs_.machine.value("Accessories", "SystemInformation"));
}

void frmAbout::cmdSysInfo_Click() {
    StartSysInfo();
}

void frmAbout::cmdOK_Click() {
    Unload();
}

}  // namespace velmora
