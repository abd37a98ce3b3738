#pragma once

#include <QIcon>

namespace velmora::qt {

/// Makes the drawings under ":/velmora" readable. May be called again.
void useResources();

/// The program's icon, for windows and tray.
QIcon programIcon();

}  // namespace velmora::qt
