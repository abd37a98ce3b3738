#include "platform/qt/resources.h"

#include <qresource.h>

// What the macro declares stands outside of every namespace.
static void initialise() {
    Q_INIT_RESOURCE(velmora);
}

namespace velmora::qt {

void useResources() {
    initialise();
}

QIcon programIcon() {
    useResources();
    return QIcon(QStringLiteral(":/velmora/icons/velmora.svg"));
}

}  // namespace velmora::qt
