#pragma once

#include <QJsonObject>
#include <QString>
#include <utility>

#include "agent/rig.h"

namespace agent {

/// Thrown for a package that can't be used.
struct BadPackage {
    explicit BadPackage(QString reason_) : reason(std::move(reason_)) {}
    QString reason;  ///< a clause for the person who made it
};

/// The rig that a package's description holds. Throws BadPackage.
Rig readRig(const QJsonObject& root);

}  // namespace agent
