#pragma once

#include <QObject>

namespace velmora::qt {

/// Lets go of an object that Qt may still be delivering an event to.
struct DeleteLater {
    void operator()(QObject* object) const { object->deleteLater(); }
};

}  // namespace velmora::qt
