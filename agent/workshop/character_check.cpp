#include "agent/workshop/character_check.h"

#include <QImage>
#include <QSvgRenderer>
#include <algorithm>
#include <array>
#include <set>
#include <span>
#include <string_view>
#include <utility>
#include <variant>

#include "agent/animator.h"
#include "agent/qt/package_reader.h"
#include "agent/qt/part_art.h"
#include "agent/workshop/animation_names.h"

namespace agent {
namespace {

using Complaints = std::vector<std::string>;

constexpr std::array<std::string_view, 3> lidShapes = {"open", "half", "closed"};

// Loud enough to be seen as a straight edge where the frame ends.
constexpr int visibleAlpha = 64;
constexpr Milliseconds samplingStep{80};
constexpr double samplingScale = 0.5;

// Above the figure at rest this part of the frame's height is clear: nods and hops need it.
constexpr double headroom = 0.06;

std::string inClip(const Clip& clip, std::string_view what) {
    return "character.json: clip \"" + clip.name + "\" " + std::string(what);
}

void checkParts(const Package& package, Complaints& complaints) {
    QSvgRenderer svg;
    if (!svg.load(package.art)) return complaints.emplace_back("art: it is no SVG document"), void();
    std::set<std::string> missing;
    for (const Bone& bone : package.rig.bones) {
        for (const Slot& slot : bone.slots) {
            if (slot.art.empty() || svg.elementExists(QString::fromStdString(slot.art))) continue;
            if (!missing.insert(slot.art).second) continue;
            complaints.push_back("art: no part \"" + slot.art + "\", which bone \"" + bone.id + "\" shows");
        }
    }
}

void checkSlots(const Rig& rig, std::string_view bone, std::span<const std::string_view> needed,
                Complaints& complaints) {
    const auto index = rig.bone(bone);
    if (!index) return complaints.push_back("character.json: no bone \"" + std::string(bone) + "\"");
    for (const auto slot : needed) {
        if (slotOf(rig.bones[*index], slot)) continue;
        complaints.push_back("character.json: bone \"" + std::string(bone) + "\" has no slot \"" +
                             std::string(slot) + "\"");
    }
}

void checkEnd(const Rig& rig, const Clip& clip, Family family, Complaints& complaints) {
    const bool endsAtRest = clip.keys.back().pose == rig.rest;
    switch (family) {
        case Family::held:
            if (clip.next.empty()) complaints.push_back(inClip(clip, "holds a pose, but has no \"next\""));
            if (clip.loop) complaints.push_back(inClip(clip, "holds a pose, and must not loop"));
            if (endsAtRest) complaints.push_back(inClip(clip, "holds a pose, but its last key is at rest"));
            break;
        case Family::looped:
            if (!clip.loop) complaints.push_back(inClip(clip, "goes on until told, but has no \"loop\""));
            if (clip.next.empty() && !endsAtRest)
                complaints.push_back(inClip(clip, "does not end at rest, and has no \"next\""));
            break;
        case Family::gesture:
            if (!endsAtRest) {
                complaints.push_back(inClip(clip, "does not end at rest: key " +
                                                      std::to_string(clip.keys.size()) + " at " +
                                                      std::to_string(clip.length().count()) + " ms"));
            }
            break;
        case Family::leaving:
            break;
    }
}

void checkClips(const Rig& rig, Complaints& complaints) {
    for (const auto& [name, family] : animationNames()) {
        if (const Clip* clip = rig.clip(name)) {
            checkEnd(rig, *clip, family, complaints);
        } else {
            complaints.push_back("character.json: no clip \"" + std::string(name) + "\"");
        }
    }
    for (const Clip& clip : rig.clips) {
        if (!clip.next.empty() && rig.clip(clip.next) == nullptr)
            complaints.push_back(inClip(clip, "is followed by \"" + clip.next + "\", which is not there"));
    }
}

bool isSeen(const QImage& frame, int x, int y) {
    return qAlpha(frame.pixel(x, y)) >= visibleAlpha;
}

bool touchesEdge(const QImage& frame) {
    for (int x = 0; x < frame.width(); ++x) {
        if (isSeen(frame, x, 0) || isSeen(frame, x, frame.height() - 1)) return true;
    }
    for (int y = 0; y < frame.height(); ++y) {
        if (isSeen(frame, 0, y) || isSeen(frame, frame.width() - 1, y)) return true;
    }
    return false;
}

int firstSeenRow(const QImage& frame) {
    for (int y = 0; y < frame.height(); ++y) {
        for (int x = 0; x < frame.width(); ++x) {
            if (isSeen(frame, x, y)) return y;
        }
    }
    return frame.height();
}

void checkFrames(const Package& package, Complaints& complaints) {
    std::string reason;
    const auto art = PartArt::load(package.art, package.rig, reason);
    if (!art) return complaints.push_back("art: " + reason);
    const QImage rest = art->paint(package.rig, package.rig.rest, 1);
    if (const int row = firstSeenRow(rest); row < headroom * rest.height()) {
        complaints.push_back("art: at rest the figure begins " + std::to_string(row) +
                             " below the frame's top; leave 6 % of its height free");
    }
    for (const Clip& clip : package.rig.clips) {
        for (auto time = Milliseconds(0); time <= clip.length(); time += samplingStep) {
            if (!touchesEdge(art->paint(package.rig, poseAt(clip, time), samplingScale))) continue;
            complaints.push_back(
                inClip(clip, "is cut off by the frame at " + std::to_string(time.count()) + " ms"));
            break;
        }
    }
}

}  // namespace

std::vector<std::string> checkCharacter(const std::string& root, const std::string& name) {
    const auto read = readPackage(root, name);
    if (const auto* reason = std::get_if<std::string>(&read)) return {*reason};
    const auto& package = std::get<Package>(read);
    Complaints complaints;
    checkParts(package, complaints);
    checkSlots(package.rig, "mouth", mouthShapes(), complaints);
    checkSlots(package.rig, "lids", lidShapes, complaints);
    checkSlots(package.rig, "gaze", {}, complaints);
    checkClips(package.rig, complaints);
    if (complaints.empty()) checkFrames(package, complaints);
    return complaints;
}

}  // namespace agent
