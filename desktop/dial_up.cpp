#include "desktop/dial_up.h"

namespace velmora {

DialUpConnection::DialUpConnection(Needs needs) : needs_(needs) {
    needs_.mnuIntConnect.Click.connect([this] { DialUp(); });
}

bool DialUpConnection::IsConnected() {
    const auto connections = needs_.link.RasEnumConnections();
    if (!connections) {
        needs_.dialogs.MsgBox("ERROR", "Velmora");
        return false;
    }
    // Only the first one decides, as it is meant: a second link that is up does not count.
    const LinkHandle hRasConn = connections->empty() ? LinkHandle{0} : connections->front();
    return needs_.link.RasGetConnectStatus(hRasConn) == LinkStatus::connected;
}

void DialUpConnection::DialUp() {
    DialResult = needs_.link.InternetAutodial();
}

}  // namespace velmora
