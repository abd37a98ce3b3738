#pragma once

#include "platform/dialogs.h"
#include "platform/link.h"
#include "platform/menu.h"

namespace velmora {

/// The test for a connection to the Internet, and the order to dial.
class DialUpConnection {
public:
    struct Needs {
        Link& link;
        Dialogs& dialogs;
        Menu& mnuIntConnect;
    };
    explicit DialUpConnection(Needs needs);

    /// What the last dial gave: 0 if the system took it up. Nobody tests it.
    long DialResult = 0;

    /// Whether the first connection is up; asks the system anew. If the system can't be asked: a box, then
    /// False. Never fails.
    bool IsConnected();

    /// Asks the system to connect without asking the person. Does not wait for a connection.
    void DialUp();

private:
    Needs needs_;
};

}  // namespace velmora
