#include "agent/qt/package_reader.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

#include "agent/qt/art_guard.h"
#include "agent/qt/rig_reader.h"

namespace agent {
namespace {

namespace fs = std::filesystem;

constexpr qsizetype largestFile = 1'000'000;
constexpr qsizetype longestReason = 300;

bool isPlainName(const std::string& name) {
    return !name.empty() && name.front() != '.' &&
           name.find_first_of(std::string_view("/\\\0", 3)) == std::string::npos;
}

// Whether a link takes the path out of the folder: a package shows nothing but what is in it.
bool leadsOut(const fs::path& folder, const fs::path& path) {
    std::error_code error;
    const fs::path inside = fs::canonical(folder, error);
    return !error && fs::canonical(path, error).parent_path() != inside && !error;
}

QByteArray readFile(const fs::path& folder, const std::string& name) {
    const QString shown = QString::fromStdString(name);
    if (!isPlainName(name)) throw BadPackage(QStringLiteral("\"%1\" is no file name").arg(shown));
    const fs::path path = folder / name;
    if (leadsOut(folder, path)) throw BadPackage(QStringLiteral("%1 is a link out of it").arg(shown));
    std::error_code error;
    // A pipe or device would be read for ever.
    std::ifstream file;
    if (fs::is_regular_file(path, error)) file.open(path, std::ios::binary);
    if (!file.is_open()) throw BadPackage(QStringLiteral("%1 can't be read").arg(shown));
    QByteArray bytes(largestFile + 1, Qt::Uninitialized);
    file.read(bytes.data(), bytes.size());
    bytes.truncate(static_cast<qsizetype>(file.gcount()));
    if (bytes.size() > largestFile) throw BadPackage(QStringLiteral("%1 is too large").arg(shown));
    return bytes;
}

bool isColour(const QString& text) {
    static const QRegularExpression colour(QStringLiteral("^#[0-9a-fA-F]{6}$"));
    return colour.match(text).hasMatch();
}

// Colours of the art, "#rrggbb", in place of which others stand.
QByteArray recolour(const QByteArray& art, const QJsonObject& palette) {
    constexpr qsizetype length = 7;
    QByteArray result;
    for (qsizetype i = 0; i < art.size(); ++i) {
        const auto other =
            art[i] == '#' ? palette.value(QString::fromLatin1(art.mid(i, length))) : QJsonValue();
        if (other.isString()) {
            if (!isColour(other.toString()))
                throw BadPackage(QStringLiteral("the palette's \"%1\" is no colour").arg(other.toString()));
            result += other.toString().toLatin1();
            i += length - 1;
        } else {
            result += art[i];
        }
    }
    return result;
}

// Says in which file a fault lies.
template <typename Step>
auto in(const std::string& file, Step step) {
    try {
        return step();
    } catch (const BadPackage& bad) {
        throw BadPackage(QStringLiteral("%1: %2").arg(QString::fromStdString(file), bad.reason));
    }
}

Package read(const fs::path& folder) {
    const std::string description = "character.json";
    const QByteArray text = readFile(folder, description);
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(text, &error);
    if (!document.isObject()) {
        throw BadPackage(QStringLiteral("character.json: %1 at byte %2")
                             .arg(error.error == QJsonParseError::NoError ? QStringLiteral("no object")
                                                                          : error.errorString())
                             .arg(error.offset));
    }
    const QJsonObject root = document.object();
    Package package;
    package.rig = in(description, [&root] { return readRig(root); });
    const std::string file = root.value(u"art").toString().toStdString();
    const QByteArray art = readFile(folder, file);
    package.art = in(description, [&] { return recolour(art, root.value(u"palette").toObject()); });
    in(file, [&package] { return refuseUnfitArt(package.art); });
    return package;
}

// Names come from the disk: a person reads this in a terminal.
std::string readable(QString reason) {
    constexpr qsizetype half = longestReason / 2;
    if (reason.size() > longestReason)
        reason = reason.left(half) + QStringLiteral("...") + reason.right(half);
    for (QChar& c : reason) {
        if (!c.isPrint()) c = u'?';
    }
    return reason.toStdString();
}

}  // namespace

PackageResult readPackage(const std::string& root, const std::string& name) {
    try {
        if (!isPlainName(name)) throw BadPackage(QStringLiteral("that is no name of a character"));
        const fs::path folder = fs::path(root) / name;
        std::error_code error;
        if (!fs::is_directory(folder, error)) {
            throw BadPackage(
                QStringLiteral("there is no folder %1").arg(QString::fromStdString(folder.string())));
        }
        return read(folder);
    } catch (const BadPackage& bad) {
        return "The character \"" + name + "\" can't be loaded: " + readable(bad.reason) + ".";
    }
}

}  // namespace agent
