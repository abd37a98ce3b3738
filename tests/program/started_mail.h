#pragma once

#include <string>
#include <vector>

#include "core/crypter.h"
#include "tests/program/started_program.h"

namespace velmora {

/// A program whose user has a mailbox at `host`; the server is the test's to make.
class StartedMail : public StartedProgram {
protected:
    StartedMail() {
        machine.setting("/home", "EMail", "Server", host);
        machine.setting("/home", "EMail", "User", "ann");
        machine.setting("/home", "EMail", "Pass", Encipher("secret", mainKey));
        machine.setting("/home", "EMail", "Interval", "0");
    }

    /// The line for what is spoken as it is written.
    static std::string said(const std::string& text) { return "speak " + text + " " + text; }

    /// What the mail panel lists.
    std::vector<std::string> subjects() {
        std::vector<std::string> texts;
        program().run([&](Program& inside) {
            for (const Row& row : inside.main().comMail.listedRows()) texts.push_back(row.Text);
        });
        return texts;
    }

    static constexpr const char* host = "mail.example";
};

}  // namespace velmora
