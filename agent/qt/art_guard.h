#pragma once

#include <QByteArray>

namespace agent {

/// Throws BadPackage, with the line, for art that is more than drawings: what unfolds without end (entities,
/// references), reaches for other files, moves by itself, or is too large or too deep to be a figure.
void refuseUnfitArt(const QByteArray& art);

}  // namespace agent
