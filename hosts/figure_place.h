#pragma once

#include <QPoint>
#include <optional>
#include <string>

#include "platform/settings_file.h"

namespace velmora {

/// Where the figure stood, kept from one start to the next in a file of the user's, apart from all settings.
/// What can't be read or written is passed over.
class FigurePlace {
public:
    /// `folder` is made when it is needed; an empty one keeps nothing. `settings` outlives this.
    FigurePlace(SettingsFile& settings, const std::string& folder);

    /// Nothing if none has been kept, or no sensible one.
    std::optional<QPoint> kept() const;

    void keep(QPoint corner);

private:
    SettingsFile& settings_;
    std::string folder_;
    std::string file_;
};

}  // namespace velmora
