#pragma once

#include <functional>
#include <string>

#include "platform/application.h"
#include "platform/controls.h"
#include "platform/form.h"
#include "platform/machine_settings.h"

namespace velmora {

/// The about box: the version, and a way to the system's own information.
class frmAbout : public Form {
public:
    struct Needs {
        const MachineSettings& machine;
        std::function<void(const std::string&)> Execute;
    };
    frmAbout(Forms& forms, Needs needs);

    Label lblTitle{*this, "lblTitle", {.Caption = "Velmora"}};
    Label lblVersion{
        *this,
        "lblVersion",
        {.Caption = "Version " + std::to_string(Application::Major) + "." +
                    std::to_string(Application::Minor) + "." + std::to_string(Application::Revision)}};
    Label lblDescription{*this, "lblDescription", {.Caption = "A companion that stands on your desktop."}};
    Button cmdSysInfo{*this,
                      "cmdSysInfo",
                      {.Caption = "System Info...", .ToolTipText = "Shows what this computer is made of"},
                      &frmAbout::cmdSysInfo_Click};
    Button cmdOK{*this, "cmdOK", {.Caption = "OK"}, &frmAbout::cmdOK_Click};

    /// Starts the desktop's program for it.
    void StartSysInfo();
    void cmdSysInfo_Click();
    void cmdOK_Click();

private:
    Needs needs_;
};

}  // namespace velmora
