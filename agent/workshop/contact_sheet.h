#pragma once

#include <QImage>
#include <QStringList>

#include "agent/qt/package_reader.h"
#include "agent/qt/part_art.h"

namespace agent {

/// What a contact sheet shows.
struct SheetOptions {
    QStringList clips;  ///< names in any case; empty: the figure in four sizes, its mouth, and every clip
    int size = 128;     ///< height of a figure among the clips, in pixels, 32 to 400
    int columns = 12;   ///< figures in a row, at least 1
    int most = 3;       ///< pictures of a clip, at least 1; those of its keys, evenly chosen
};

/// A picture of a character for its artist: each figure with its clip and time below, on light and dark
/// ground by turns. Clips that the rig doesn't have are passed over.
QImage contactSheet(const Rig& rig, PartArt& art, const SheetOptions& options);

}  // namespace agent
