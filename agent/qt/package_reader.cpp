#include "agent/qt/package_reader.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <utility>

#include "agent/qt/rig_reader.h"

namespace agent {
namespace {

constexpr qint64 largestFile = 4'000'000;

bool isPlainName(const QString& name) {
    return !name.isEmpty() && !name.startsWith(u'.') && !name.contains(u'/') && !name.contains(u'\\') &&
           !name.contains(QChar(u'\0'));
}

QByteArray readFile(const QDir& folder, const QString& name) {
    if (!isPlainName(name)) throw BadPackage(QStringLiteral("\"%1\" is no file name").arg(name));
    const QString path = folder.filePath(name);
    QFile file(path);
    // A pipe or device would be read for ever.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        throw BadPackage(QStringLiteral("%1 can't be read").arg(name));
    }
    QByteArray bytes = file.read(largestFile + 1);
    if (bytes.size() > largestFile) throw BadPackage(QStringLiteral("%1 is too large").arg(name));
    return bytes;
}

// Colours of the art, "#rrggbb", in place of which others stand.
QByteArray recolour(const QByteArray& art, const QJsonObject& palette) {
    constexpr qsizetype length = 7;
    QByteArray result;
    for (qsizetype i = 0; i < art.size(); ++i) {
        const auto other =
            art[i] == '#' ? palette.value(QString::fromLatin1(art.mid(i, length))) : QJsonValue();
        if (other.isString()) {
            result += other.toString().left(length).toLatin1();
            i += length - 1;
        } else {
            result += art[i];
        }
    }
    return result;
}

Package read(const QDir& folder) {
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(readFile(folder, QStringLiteral("character.json")), &error);
    if (!document.isObject()) {
        throw BadPackage(QStringLiteral("character.json: %1 at byte %2")
                             .arg(error.error == QJsonParseError::NoError ? QStringLiteral("no object")
                                                                          : error.errorString())
                             .arg(error.offset));
    }
    const QJsonObject root = document.object();
    Package package;
    package.rig = readRig(root);
    const QByteArray art = readFile(folder, root.value(u"art").toString());
    // Compressed art could unfold to any size.
    if (art.startsWith("\x1f\x8b")) throw BadPackage(QStringLiteral("the art is compressed"));
    package.art = recolour(art, root.value(u"palette").toObject());
    return package;
}

}  // namespace

PackageResult readPackage(const QString& root, const QString& name) {
    try {
        if (!isPlainName(name)) throw BadPackage(QStringLiteral("that is no name of a character"));
        const QDir folder(QDir(root).filePath(name));
        if (!folder.exists()) throw BadPackage(QStringLiteral("there is no folder %1").arg(folder.path()));
        return read(folder);
    } catch (const BadPackage& bad) {
        return "The character \"" + name.toStdString() + "\" can't be loaded: " + bad.reason.toStdString() +
               ".";
    }
}

}  // namespace agent
