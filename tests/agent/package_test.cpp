#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include "agent/animator.h"
#include "agent/qt/package_reader.h"
#include "agent/qt/part_art.h"

namespace {

using namespace agent;
using testing::HasSubstr;

QString shipped() {
    return QStringLiteral(CHARACTERS);
}

// A folder of characters with one, "Stick", in it.
class PackageTest : public testing::Test {
protected:
    PackageTest() {
        QDir(root.path()).mkdir(QStringLiteral("Stick"));
        write(QStringLiteral("stick.svg"), R"(<svg xmlns="http://www.w3.org/2000/svg" width="50" height="50">
            <rect id="stick" x="10" y="10" width="10" height="30" fill="#112233"/></svg>)");
        write(QStringLiteral("character.json"), good);
    }

    void write(const QString& name, const QByteArray& bytes) {
        QFile file(root.filePath(QStringLiteral("Stick/") + name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    // Why the character can't be loaded; empty if it can.
    std::string reason(const std::string& name = "Stick") {
        auto read = readPackage(root.path().toStdString(), name);
        if (const auto* why = std::get_if<std::string>(&read)) return *why;
        auto& package = std::get<Package>(read);
        std::string why;
        if (const auto art = PartArt::load(package.art, package.rig, why))
            art->paint(package.rig, package.rig.rest, 1);
        return why;
    }

    const QByteArray good = R"({"format":1,"name":"Stick","size":[50,50],"art":"stick.svg",
        "palette":{"#112233":"#445566"},
        "bones":[{"id":"a","art":"stick"},{"id":"b","parent":"a","slots":{"on":"stick","off":""},"slot":"off"}],
        "poses":{"up":{"a.y":-5}},
        "clips":{"Wave":{"keys":[{"at":0,"pose":"up"},{"at":100,"set":{"a.rot":90}}]}}})";
    QTemporaryDir root;
};

TEST_F(PackageTest, ReadsACharacterInOtherColours) {
    ASSERT_EQ(reason(), "");
    const auto package = std::get<Package>(readPackage(root.path().toStdString(), "Stick"));
    const Pose& last = package.rig.clip("wave")->keys.back().pose;
    EXPECT_EQ(last[0][Channel::y], -5);
    EXPECT_EQ(last[0][Channel::rot], 90);
    std::string why;
    const auto art = PartArt::load(package.art, package.rig, why);
    const QImage picture = art->paint(package.rig, package.rig.rest, 2);
    EXPECT_EQ(picture.size(), QSize(100, 100));
    EXPECT_EQ(picture.pixel(30, 50), 0xff445566);
    EXPECT_EQ(qAlpha(picture.pixel(50, 50)), 0);
}

TEST_F(PackageTest, RefusesNamesThatReachOutOfTheFolder) {
    for (const char* name : {"", ".", "..", "../Stick", "Stick/../Stick", "/etc", "a\\b", "Missing"}) {
        EXPECT_NE(reason(name), "") << name;
    }
}

TEST_F(PackageTest, SaysWhatIsWrongWithABrokenCharacter) {
    struct Case {
        QByteArray from, to;
        const char* complaint;
    };
    const std::vector<Case> cases = {
        {R"({"format")", R"({"format)", "character.json"},
        {R"("format":1)", R"("format":"1")", "format"},
        {R"("name":"Stick")", R"("name":7)", "name"},
        {R"("name":"Stick")", R"("name":" ")", "name"},
        {R"("name":"Stick")", R"("name":"St\u0000ick")", "name"},
        {R"("name":"Stick")", R"("name":")" + QByteArray(1000, 'S') + '"', "name"},
        {"stick.svg", R"(a\u001b\u0000)", "\"a??\" is no file name"},
        {"[50,50]", "[50,1e9]", "size"},
        {"[50,50]", "[50]", "size"},
        {"stick.svg", "../Stick/stick.svg", "no file name"},
        {"stick.svg", "other.svg", "can't be read"},
        {R"("parent":"a")", R"("parent":"b")", "parent"},
        {R"("parent":"a")", R"("parent":"c")", "parent"},
        {R"("parent":"a")", R"("parent":5)", "parent"},
        {R"("id":"b")", R"("id":"a")", "bone"},
        {R"("slot":"off")", R"("slot":"none")", "slot"},
        {R"("on":"stick")", R"("on":"leg")", "no part \"leg\""},
        {R"("a.y":-5)", R"("a.y":1e300)", "sensible"},
        {R"("a.y":-5)", R"("a.y":"x")", "sensible"},
        {R"("a.y":-5)", R"("a.w":5)", "channel"},
        {R"("a.y":-5)", R"("c.y":5)", "bone"},
        {R"("a.y":-5)", R"("b":"up")", "slot"},
        {R"("at":100)", R"("at":-1)", "sensible"},
        {R"("at":0)", R"("at":101)", "order"},
        {R"("pose":"up")", R"("pose":"down")", "pose"},
        {R"("Wave":{)", R"("Wave":{"loop":[50,50],)", "repeats"},
        {R"("Wave":{)", R"("Wave":{"loop":[0,5000],)", "repeats"},
        {R"("Wave":{"keys")", R"("Wave":{"kes")", "keys"},
        {R"("clips")", R"("clip")", "clips"},
        {R"("bones")", R"("bone")", "bones"},
        {R"("at":100)", R"("at":100,"ease":"hop")", "clip \"Wave\", key 2: there is no ease \"hop\""},
        {R"("palette":{"#112233":"#445566"})", R"("palette":{"#112233":"\"/><use"})", "no colour"},
        {R"("poses":{)", R"("poses":[{)", "character.json"},
    };
    for (const auto& c : cases) {
        auto bad = good;
        ASSERT_TRUE(bad.contains(c.from)) << c.from.constData();
        write(QStringLiteral("character.json"), bad.replace(c.from, c.to));
        EXPECT_THAT(reason(), HasSubstr(c.complaint)) << c.to.constData();
    }
}

TEST_F(PackageTest, RefusesArtThatIsNoPlainSvg) {
    for (const QByteArray& art :
         {QByteArray(), QByteArray("<svg><g"), QByteArray("\x1f\x8b\x08"), QByteArray(5'000'000, ' ')}) {
        write(QStringLiteral("stick.svg"), art);
        EXPECT_NE(reason(), "");
    }
}

TEST_F(PackageTest, RefusesLinksThatLeadOutOfIt) {
    const QString inside = root.filePath(QStringLiteral("Stick/stick.svg"));
    ASSERT_TRUE(QFile::rename(inside, root.filePath(QStringLiteral("Stick/drawing.svg"))));
    ASSERT_TRUE(QFile::link(QStringLiteral("drawing.svg"), inside));
    EXPECT_EQ(reason(), "");
    ASSERT_TRUE(QFile::link(QStringLiteral("Stick"), root.filePath(QStringLiteral("Alias"))));
    EXPECT_EQ(reason("Alias"), "");
    ASSERT_TRUE(QFile::rename(root.filePath(QStringLiteral("Stick/drawing.svg")),
                              root.filePath(QStringLiteral("drawing.svg"))));
    ASSERT_TRUE(QFile::remove(inside));
    ASSERT_TRUE(QFile::link(QStringLiteral("../drawing.svg"), inside));
    EXPECT_THAT(reason(), HasSubstr("stick.svg is a link out of it"));
}

TEST_F(PackageTest, SaysWhatIsWrongInOneShortLine) {
    auto description = good;
    write(QStringLiteral("character.json"),
          description.replace(R"("a.y")", '"' + QByteArray(9000, 'a') + '"'));
    EXPECT_THAT(reason(), HasSubstr("is of no bone"));
    EXPECT_LT(reason().size(), 500U);
}

TEST_F(PackageTest, NoCutOfADescriptionDoesHarm) {
    for (qsizetype length = 0; length < good.size(); length += 3) {
        write(QStringLiteral("character.json"), good.left(length));
        EXPECT_NE(reason(), "");
    }
}

TEST_F(PackageTest, RefusesArtThatUnfoldsReachesForOtherFilesOrTakesForEver) {
    struct Case {
        QByteArray before, inside;
        const char* complaint;
    };
    const QByteArray nested = QByteArray("<g>").repeated(80) + QByteArray("</g>").repeated(80);
    const std::vector<Case> cases = {
        {"", R"(<g id="a"><rect/></g><use xlink:href="#a"/>)", "stick.svg: line 2 has a \"use\" element"},
        {"", R"(<x:use xmlns:x="http://elsewhere" xlink:href="#a"/>)", "use"},
        {"", R"(<image xlink:href="/dev/zero"/>)", "image"},
        {"", R"(<linearGradient xlink:href="file:///etc/passwd"/>)", "outside"},
        {"", R"(<path stroke-dasharray="0.0001" d="M0 0L9 9"/>)", "dashed"},
        {"", R"(<path style="stroke-dasharray:0.0001" d="M0 0L9 9"/>)", "dashed"},
        {"", R"(<path style="stroke-dasharray:0.01;fill:none" d="M0 0L9 9"/>)", "dashed"},
        {"", R"(<path style="stroke-dasharray:none;stroke-dasharray : 0.01" d="M0 0L9 9"/>)", "dashed"},
        {"", R"(<path stroke-dasharray="0.01 none" d="M0 0L9 9"/>)", "dashed"},
        {"", QByteArray("<linearGradient>") + QByteArray("<stop/>").repeated(100), "stop"},
        {"", R"(<animateTransform attributeName="transform"/>)", "animateTransform"},
        {"", nested, "too deeply"},
        {"", QByteArray("<g/>").repeated(20'000), "too many"},
        {R"(<!DOCTYPE svg [<!ENTITY a "ha"><!ENTITY b "&a;&a;&a;">]>)", "<title>&b;</title>", "entities"},
    };
    for (const auto& c : cases) {
        write(QStringLiteral("stick.svg"),
              c.before +
                  QByteArray("<svg xmlns=\"http://www.w3.org/2000/svg\" "
                             "xmlns:xlink=\"http://www.w3.org/1999/xlink\" width=\"50\" height=\"50\">"
                             "<rect id=\"stick\" width=\"9\" height=\"9\"/>\n") +
                  c.inside + "</svg>");
        EXPECT_THAT(reason(), HasSubstr(c.complaint)) << c.inside.left(60).constData();
    }
}

TEST_F(PackageTest, RefusesDrawingsThatWouldFillTheMemory) {
    for (const char* size : {"1e30", "100000", "199"}) {
        write(QStringLiteral("stick.svg"),
              QByteArray("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"50\" "
                         "height=\"50\"><rect id=\"stick\" x=\"-199\" y=\"-199\" width=\"") +
                  QByteArray::number(QByteArray(size).toDouble() * 2) + "\" height=\"398\"/></svg>");
        EXPECT_THAT(reason(), testing::AnyOf(HasSubstr("far beyond"), HasSubstr("too large"))) << size;
    }
}

TEST_F(PackageTest, RefusesAClipOfAMillionKeys) {
    const auto withKeys = [this](int count) {
        auto description = good;
        return description.replace(R"({"at":0,"pose":"up"})",
                                   QByteArray(R"({"at":0})") + QByteArray(R"(,{"at":0})").repeated(count));
    };
    write(QStringLiteral("character.json"), withKeys(1'000'000));
    EXPECT_THAT(reason(), HasSubstr("too large"));
    write(QStringLiteral("character.json"), withKeys(60'000));
    EXPECT_THAT(reason(), HasSubstr("too many"));
}

TEST_F(PackageTest, PaintsNothingOfBonesThatGrowBeyondAllBounds) {
    auto description = good;
    write(QStringLiteral("character.json"),
          description.replace(R"("a.y":-5)", R"("a.sx":10000,"b.sx":10000,"b":"on")"));
    ASSERT_EQ(reason(), "");
    const auto package = std::get<Package>(readPackage(root.path().toStdString(), "Stick"));
    std::string why;
    const auto art = PartArt::load(package.art, package.rig, why);
    EXPECT_EQ(art->paint(package.rig, package.rig.clips[0].keys[0].pose, 1).size(), QSize(50, 50));
}

TEST(Merlin, AppearsAtOnce) {
    const auto read = readPackage(shipped().toStdString(), "Merlin");
    ASSERT_TRUE(std::holds_alternative<Package>(read)) << std::get<std::string>(read);
    EXPECT_LE(std::get<Package>(read).rig.clip("Show")->length(), Milliseconds(400));
}

}  // namespace
