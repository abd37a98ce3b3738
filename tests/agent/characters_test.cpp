#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <array>
#include <cstdlib>
#include <set>

#include "agent/animator.h"
#include "agent/workshop/character_check.h"
#include "agent/workshop/contact_sheet.h"

namespace {

using namespace agent;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

class ShippedCharacter : public testing::TestWithParam<std::string> {};

INSTANTIATE_TEST_SUITE_P(Each, ShippedCharacter, testing::Values("Genie", "Merlin", "Peedy", "Robby"),
                         [](const auto& shown) { return shown.param; });

TEST_P(ShippedCharacter, IsComplete) {
    EXPECT_THAT(checkCharacter(CHARACTERS, GetParam()), IsEmpty());
}

TEST(ShippedCharacters, HaveEachAVoiceOfItsOwn) {
    std::set<std::string> voices;
    for (const char* name : {"Genie", "Merlin", "Peedy", "Robby"})
        voices.insert(std::get<Package>(readPackage(CHARACTERS, name)).rig.voice.name);
    EXPECT_THAT(voices, testing::SizeIs(4));
}

// Poses that use every part of the body, side by side.
QImage poses(const std::string& name) {
    constexpr int height = 100;
    constexpr std::array<std::pair<std::string_view, int>, 4> moments = {
        {{"RestPose", 0}, {"Wave", 800}, {"Read", 1900}, {"Surprised", 700}}};
    const auto read = readPackage(CHARACTERS, name);
    const auto& package = std::get<Package>(read);
    std::string reason;
    const auto art = PartArt::load(package.art, package.rig, reason);
    QImage picture(height * static_cast<int>(moments.size()), height, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    int x = 0;
    for (const auto& [clip, time] : moments) {
        const Pose pose = poseAt(*package.rig.clip(clip), Milliseconds(time));
        painter.drawImage(x, 0, art->paint(package.rig, pose, height / package.rig.height));
        x += height;
    }
    return picture;
}

// How far apart the pictures are where they differ most, 0 to 255, looked at from so far that the smoothing
// of an edge is not seen.
int difference(const QImage& a, const QImage& b) {
    constexpr int block = 5;
    const auto far = [](const QImage& image) {
        return image.scaled(image.size() / block, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    };
    if (a.size() != b.size()) return 255;
    const QImage left = far(a);
    const QImage right = far(b);
    int most = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x) {
            const QRgb p = left.pixel(x, y);
            const QRgb q = right.pixel(x, y);
            most = std::max({most, std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                             std::abs(qBlue(p) - qBlue(q))});
        }
    }
    return most;
}

constexpr int unseen = 24;

TEST_P(ShippedCharacter, LooksAsItDid) {
    const QString file = QString::fromStdString(GetParam()) + QStringLiteral(".png");
    const QImage now = poses(GetParam());
    const QImage then(QStringLiteral(PICTURES "/") + file);
    if (difference(now, then.convertToFormat(QImage::Format_RGB32)) < unseen) return;
    const QString kept = QDir::temp().filePath(file);
    now.save(kept);
    ADD_FAILURE() << "The art has changed. If that is meant, copy " << kept.toStdString() << " to " PICTURES;
}

TEST(PictureComparison, SeesAClosedEyeAndAnotherCharacter) {
    const auto read = readPackage(CHARACTERS, "Merlin");
    const auto& package = std::get<Package>(read);
    std::string reason;
    const auto art = PartArt::load(package.art, package.rig, reason);
    const auto eyes = [&](Milliseconds time) {
        QImage picture(100, 100, QImage::Format_RGB32);
        picture.fill(Qt::white);
        QPainter(&picture).drawImage(0, 0,
                                     art->paint(package.rig, poseAt(*package.rig.clip("Blink"), time), 0.5));
        return picture;
    };
    EXPECT_GE(difference(eyes(Milliseconds(60)), eyes(Milliseconds(190))), unseen);
    EXPECT_GE(difference(poses("Merlin"), poses("Robby")), unseen);
}

// A copy of Merlin, with one thing changed.
class BrokenCharacter : public testing::Test {
protected:
    std::vector<std::string> complaints(const QString& file, const QByteArray& from, const QByteArray& to) {
        const QTemporaryDir root;
        QDir(root.path()).mkdir(QStringLiteral("Merlin"));
        for (const QString& name : {QStringLiteral("character.json"), QStringLiteral("merlin.svg")}) {
            QFile source(QStringLiteral(CHARACTERS "/Merlin/") + name);
            QFile copy(root.filePath(QStringLiteral("Merlin/") + name));
            EXPECT_TRUE(source.open(QIODevice::ReadOnly) && copy.open(QIODevice::WriteOnly));
            QByteArray bytes = source.readAll();
            EXPECT_TRUE(name != file || bytes.contains(from)) << from.constData();
            copy.write(name == file ? bytes.replace(from, to) : bytes);
        }
        return checkCharacter(root.path().toStdString(), "Merlin");
    }
};

TEST_F(BrokenCharacter, IsFoundOutAndTheComplaintSaysWhere) {
    const QString rig = QStringLiteral("character.json");
    const QString art = QStringLiteral("merlin.svg");
    struct Case {
        QString file;
        QByteArray from, to;
        const char* complaint;
    };
    const std::vector<Case> cases = {
        {art, R"(id="robe")", R"(id="rob")", R"(no part "robe", which bone "body" shows)"},
        {rig, R"("Hearing_3": {)", R"("Hearing_33": {)", R"(no clip "Hearing_3")"},
        {rig, R"("W": "m-W")", R"("X": "m-W")", R"(bone "mouth" has no slot "W")"},
        {rig, R"("half": "lids-half")", R"("halb": "lids-half")", R"(pose "read": "lids" is set to a slot)"},
        {rig, R"("id": "gaze")", R"("id": "eye")", "gaze"},
        {rig, R"("next": "ReadReturn", )", "", R"(clip "Read" holds a pose, but has no "next")"},
        {rig, R"("next": "ReadReturn")", R"("next": "Back")", R"(followed by "Back", which is not there)"},
        {rig, R"("Searching": {"loop": [560, 2700], )", R"("Searching": {)",
         R"("Searching" goes on until told)"},
        {rig, R"({"at": 50, "set": {"lids": "closed")", R"({"at": 50, "set": {"lids": "shut")",
         R"(clip "Blink", key 2)"},
        {rig, R"("RestPose": {"keys": [)",
         R"("RestPose": {"keys": [{"at": 0, "set": {"root.x": 1}},{"at": 1}],"a":[)",
         R"("RestPose" does not end at rest: key 2 at 1 ms)"},
        {rig, R"("Blink": {"keys": [)", R"("Blink": {"keys": [{"at": 0, "set": {"root.y": -30}},)",
         R"("Blink" is cut off by the frame at 0 ms)"},
        {rig, R"("rest": {)", R"("rest": {"root.y": -12, )", "leave 6 %"},
    };
    for (const auto& c : cases)
        EXPECT_THAT(complaints(c.file, c.from, c.to), Contains(HasSubstr(c.complaint))) << c.to.constData();
}

TEST(ContactSheet, ShowsTheAnimationsThatWereAskedFor) {
    const auto read = readPackage(CHARACTERS, "Merlin");
    const auto& package = std::get<Package>(read);
    std::string reason;
    const auto art = PartArt::load(package.art, package.rig, reason);
    const QStringList clips = {QStringLiteral("wave"), QStringLiteral("RestPose"), QStringLiteral("Nothing")};
    const QImage sheet =
        contactSheet(package.rig, *art, {.clips = clips, .size = 64, .columns = 2, .most = 3});
    EXPECT_EQ(sheet.height(), 2 * (64 + 16)) << "four pictures in rows of two";
    EXPECT_NE(sheet.pixel(1, 1), sheet.pixel(1, 64 + 16 + 1)) << "rows on light and dark ground";
    EXPECT_NE(sheet.pixel(32, 32), sheet.pixel(1, 1));
}

}  // namespace
