#pragma once

#include <QByteArray>
#include <QImage>
#include <QRectF>
#include <QSvgRenderer>
#include <memory>
#include <string>
#include <unordered_map>

#include "agent/rig.h"

namespace agent {

/// The drawings of a figure, rendered once each for the scale in use.
class PartArt {
public:
    /// Null if `svg` is no SVG document, lacks a drawing that the rig names, or has drawings that no figure
    /// of this size can have; `reason` then says which.
    static std::unique_ptr<PartArt> load(const QByteArray& svg, const Rig& rig, std::string& reason);

    /// Paints a pose in device pixels: `scale` of them to a unit of the rig.
    QImage paint(const Rig& rig, const Pose& pose, double scale);

private:
    struct Part {
        QRectF bounds;  ///< in the rig's units
        QImage image;
    };

    const Part& part(std::string_view art, const Rig& rig);

    QSvgRenderer svg_;
    double scale_ = 0;
    std::unordered_map<std::string, Part> parts_;
};

}  // namespace agent
