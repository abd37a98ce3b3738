#include "agent/qt/rig_reader.h"

#include <QJsonArray>
#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

namespace agent {
namespace {

// Beyond these, a description is a mistake or meant to harm.
constexpr qsizetype longestName = 64;
constexpr qsizetype mostBones = 128;
constexpr qsizetype mostSlots = 64;
constexpr qsizetype mostClips = 256;
constexpr qsizetype mostKeys = 256;
constexpr qsizetype mostKeysInAll = 2048;
constexpr double mostUnits = 10'000;
constexpr double smallestFigure = 16;
constexpr double largestFigure = 512;
constexpr double longestClip = 600'000;  // milliseconds
constexpr Milliseconds shortestLoop{40};

[[noreturn]] void fail(const QString& what, std::string_view name) {
    throw BadPackage(what.arg(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()))));
}

double number(const QJsonValue& value, std::string_view of, double least = -mostUnits,
              double most = mostUnits) {
    const double result = value.toDouble(std::nan(""));
    if (!(result >= least && result <= most)) fail(QStringLiteral("\"%1\" has no sensible number"), of);
    return result;
}

Milliseconds time(const QJsonValue& value, std::string_view of) {
    return Milliseconds(std::llround(number(value, of, 0, longestClip)));
}

std::string text(const QJsonValue& value) {
    return value.toString().toStdString();
}

std::pair<double, double> numberPair(const QJsonValue& value, std::string_view of, double least,
                                     double most) {
    const QJsonArray array = value.toArray();
    if (array.size() != 2) fail(QStringLiteral("\"%1\" is no pair of numbers"), of);
    return {number(array[0], of, least, most), number(array[1], of, least, most)};
}

// A member of the description that may be missing, but is otherwise of this kind.
QJsonObject objectIn(const QJsonObject& object, QStringView member) {
    const QJsonValue value = object.value(member);
    if (!value.isUndefined() && !value.isObject()) {
        throw BadPackage(QStringLiteral("\"%1\" is no object").arg(member));
    }
    return value.toObject();
}

Bone readBone(const QJsonObject& object, const Rig& rig) {
    Bone bone;
    bone.id = text(object.value(u"id"));
    if (bone.id.empty() || rig.bone(bone.id))
        fail(QStringLiteral("a bone \"%1\" has no name of its own"), bone.id);
    if (const auto parent = object.value(u"parent"); !parent.isUndefined()) {
        // Parents stand before their children, so no circle can be closed.
        bone.parent = rig.bone(text(parent));
        if (!bone.parent) fail(QStringLiteral("the parent of bone \"%1\" doesn't stand before it"), bone.id);
    }
    if (const auto pivot = object.value(u"pivot"); !pivot.isUndefined()) {
        std::tie(bone.pivotX, bone.pivotY) = numberPair(pivot, bone.id, -mostUnits, mostUnits);
    }
    if (const auto z = object.value(u"z"); !z.isUndefined()) bone.z = number(z, bone.id);
    bone.mirror = object.value(u"mirror").toBool();
    const QJsonObject slots = objectIn(object, u"slots");
    if (slots.size() > mostSlots) fail(QStringLiteral("bone \"%1\" has too many slots"), bone.id);
    for (auto slot = slots.begin(); slot != slots.end(); ++slot) {
        bone.slots.push_back({slot.key().toStdString(), text(slot.value())});
    }
    if (bone.slots.empty()) bone.slots.push_back({"", text(object.value(u"art"))});
    if (const auto slot = object.value(u"slot"); !slot.isUndefined()) {
        const auto index = slotOf(bone, text(slot));
        if (!index) fail(QStringLiteral("bone \"%1\" begins with a slot that it hasn't"), bone.id);
        bone.slot = *index;
    }
    return bone;
}

std::optional<Channel> channelNamed(std::string_view name) {
    constexpr std::array<std::string_view, channelCount> names = {"x", "y", "rot", "sx", "sy", "alpha", "z"};
    const auto found = std::ranges::find(names, name);
    if (found == names.end()) return std::nullopt;
    return static_cast<Channel>(found - names.begin());
}

// "bone.channel": number, or "bone": slot.
void change(Pose& pose, const Rig& rig, const std::string& target, const QJsonValue& value) {
    const auto dot = target.find('.');
    const auto bone = rig.bone(std::string_view(target).substr(0, dot));
    if (!bone) fail(QStringLiteral("\"%1\" is of no bone"), target);
    if (dot == std::string::npos) {
        const auto slot = slotOf(rig.bones[*bone], text(value));
        if (!slot) fail(QStringLiteral("\"%1\" is set to a slot that it hasn't"), target);
        pose[*bone].slot = *slot;
        return;
    }
    const auto channel = channelNamed(std::string_view(target).substr(dot + 1));
    if (!channel) fail(QStringLiteral("\"%1\" is no channel"), target);
    pose[*bone][*channel] = number(value, target);
}

Pose changed(Pose pose, const Rig& rig, const QJsonObject& changes) {
    for (auto i = changes.begin(); i != changes.end(); ++i)
        change(pose, rig, i.key().toStdString(), i.value());
    return pose;
}

Pose designedPose(const Rig& rig) {
    Pose pose;
    for (const Bone& bone : rig.bones) {
        pose.emplace_back();
        pose.back().slot = bone.slot;
        pose.back()[Channel::z] = bone.z;
    }
    return pose;
}

// Says in which pose or key a fault lies.
template <typename Step>
auto in(const QString& place, Step step) {
    try {
        return step();
    } catch (const BadPackage& bad) {
        throw BadPackage(QStringLiteral("%1: %2").arg(place, bad.reason));
    }
}

using Poses = std::map<std::string, Pose, std::less<>>;

Ease easeNamed(const QJsonValue& value) {
    const std::map<std::string, Ease, std::less<>> eases = {{"", Ease::inOut},
                                                            {"io", Ease::inOut},
                                                            {"linear", Ease::linear},
                                                            {"back", Ease::back},
                                                            {"steps", Ease::steps}};
    const auto found = eases.find(text(value));
    if (found == eases.end()) fail(QStringLiteral("there is no ease \"%1\""), text(value));
    return found->second;
}

Key readKey(const QJsonObject& object, const Clip& clip, const Rig& rig, const Poses& poses) {
    Key key{.at = time(object.value(u"at"), clip.name), .ease = easeNamed(object.value(u"ease")), .pose = {}};
    if (!clip.keys.empty() && key.at < clip.length()) throw BadPackage(QStringLiteral("it is out of order"));
    const QJsonValue name = object.value(u"pose");
    const auto pose = poses.find(name.isUndefined() ? "rest" : text(name));
    if (pose == poses.end()) fail(QStringLiteral("there is no pose \"%1\""), text(name));
    const bool carries = name.isUndefined() && !clip.keys.empty();
    key.pose = changed(carries ? clip.keys.back().pose : pose->second, rig, objectIn(object, u"set"));
    return key;
}

Clip readClip(const std::string& name, const QJsonObject& object, const Rig& rig, const Poses& poses) {
    Clip clip;
    clip.name = name;
    clip.next = text(object.value(u"next"));
    const QJsonArray keys = object.value(u"keys").toArray();
    if (keys.empty() || keys.size() > mostKeys)
        fail(QStringLiteral("clip \"%1\" has no keys, or too many"), name);
    for (const auto& key : keys) {
        const QString place =
            QStringLiteral("clip \"%1\", key %2").arg(QString::fromStdString(name)).arg(clip.keys.size() + 1);
        clip.keys.push_back(in(place, [&] { return readKey(key.toObject(), clip, rig, poses); }));
    }
    if (const auto loop = object.value(u"loop"); !loop.isUndefined()) {
        const auto [start, end] = numberPair(loop, name, 0, longestClip);
        clip.loop = {Milliseconds(std::llround(start)), Milliseconds(std::llround(end))};
        if (clip.loop->second - clip.loop->first < shortestLoop || clip.loop->second > clip.length()) {
            fail(QStringLiteral("clip \"%1\" repeats a stretch that it hasn't"), name);
        }
        clip.free = clip.loop->first;
    }
    if (const auto free = object.value(u"free"); !free.isUndefined()) clip.free = time(free, name);
    return clip;
}

// It is said and shown.
std::string characterName(const QString& name) {
    if (name.trimmed().isEmpty()) throw BadPackage(QStringLiteral("it has no name"));
    const bool readable = std::ranges::all_of(name, [](QChar c) { return c.isPrint() || c.isSurrogate(); });
    if (!readable || name.size() > longestName)
        throw BadPackage(QStringLiteral("its \"name\" can't be that of a character"));
    return name.toStdString();
}

CharacterVoice readVoice(const QJsonObject& object) {
    CharacterVoice voice;
    const auto level = [&object](QStringView member, int standard, int least, int most) {
        return object.contains(member) ? static_cast<int>(number(object.value(member), "voice", least, most))
                                       : standard;
    };
    if (const auto name = object.value(u"name"); name.isString()) voice.name = text(name);
    voice.rate = level(u"rate", voice.rate, 80, 450);
    voice.pitch = level(u"pitch", voice.pitch, 0, 99);
    voice.range = level(u"range", voice.range, 0, 99);
    return voice;
}

}  // namespace

Rig readRig(const QJsonObject& root) {
    if (root.value(u"format").toInt() != 1) throw BadPackage(QStringLiteral("its format is not 1"));
    Rig rig;
    rig.name = characterName(root.value(u"name").toString());
    std::tie(rig.width, rig.height) = numberPair(root.value(u"size"), "size", smallestFigure, largestFigure);
    rig.voice = readVoice(objectIn(root, u"voice"));

    const QJsonArray bones = root.value(u"bones").toArray();
    if (bones.empty() || bones.size() > mostBones)
        throw BadPackage(QStringLiteral("it has no bones, or too many"));
    for (const auto& bone : bones) rig.bones.push_back(readBone(bone.toObject(), rig));

    const QJsonObject poseObjects = objectIn(root, u"poses");
    rig.rest = changed(designedPose(rig), rig, objectIn(poseObjects, u"rest"));
    Poses poses{{"rest", rig.rest}};
    if (poseObjects.size() > mostClips) throw BadPackage(QStringLiteral("it has too many poses"));
    for (auto i = poseObjects.begin(); i != poseObjects.end(); ++i) {
        // Every pose is a change of the resting one.
        Pose pose = in(QStringLiteral("pose \"%1\"").arg(i.key()),
                       [&] { return changed(rig.rest, rig, i.value().toObject()); });
        poses.insert_or_assign(i.key().toStdString(), std::move(pose));
    }

    const QJsonObject clips = objectIn(root, u"clips");
    if (clips.empty() || clips.size() > mostClips)
        throw BadPackage(QStringLiteral("it has no clips, or too many"));
    qsizetype keys = 0;
    for (auto i = clips.begin(); i != clips.end(); ++i) {
        keys += i.value().toObject().value(u"keys").toArray().size();
        if (keys > mostKeysInAll) throw BadPackage(QStringLiteral("it has too many keys"));
        rig.clips.push_back(readClip(i.key().toStdString(), i.value().toObject(), rig, poses));
    }
    return rig;
}

}  // namespace agent
