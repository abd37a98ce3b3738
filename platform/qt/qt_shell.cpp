#include "platform/qt/qt_shell.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QProcess>
#include <QStandardPaths>
#include <algorithm>
#include <array>

#include "base/text.h"
#include "platform/qt/desktop_programs.h"
#include "platform/qt/text.h"

namespace velmora::qt {
namespace {

constexpr std::array<std::string_view, 4> schemes{"http:", "https:", "ftp:", "mailto:"};

bool isAddress(std::string_view target) {
    return std::any_of(schemes.begin(), schemes.end(), [target](std::string_view scheme) {
        return equalsIgnoringCase(target.substr(0, scheme.size()), scheme);
    });
}

// Every byte of the address arrives: those that may not stand in one are written in their percent form.
QUrl addressUrl(std::string_view target) {
    QByteArray encoded;
    for (const char byte : target) {
        const auto code = static_cast<unsigned char>(byte);
        if (code > ' ' && code < 0x7F) {
            encoded.append(byte);
        } else {
            encoded.append('%').append(QByteArray(1, byte).toHex().toUpper());
        }
    }
    return QUrl::fromEncoded(encoded, QUrl::TolerantMode);
}

QString nativePath(const std::string& path) {
    return QFile::decodeName(QByteArray::fromStdString(path));
}

}  // namespace

QtShell::QtShell() : opener_(&QDesktopServices::openUrl) {}

void QtShell::open(const std::string& target, const std::string& folder) {
    if (target.empty() || target.find('\0') != std::string::npos) return;
    const QString directory = nativePath(folder);
    const QString named = nativePath(target);
    const QFileInfo file(QDir(directory), named);
    if (!file.exists() && isAddress(target)) {
        opener_(addressUrl(target));
        return;
    }
    const bool bare = !named.contains(u'/');
    const QString program = file.isFile() && file.isExecutable() ? file.absoluteFilePath()
                            : bare && !file.exists()             ? QStandardPaths::findExecutable(named)
                                                                 : QString();
    if (const auto own = program.isEmpty() && !file.exists() ? desktopProgram(target) : std::nullopt) {
        openOwn(*own);
    } else if (program.isEmpty()) {
        opener_(QUrl::fromLocalFile(file.absoluteFilePath()));
    } else {
        QProcess::startDetached(program, {}, directory);
    }
}

void QtShell::openOwn(const DesktopProgram& own) const {
    if (!own.id.empty()) {
        startDesktopProgram(own.id);
    } else if (!own.document.isEmpty()) {
        opener_(QUrl::fromLocalFile(own.document));
    }
}

std::string QtShell::clipboardText() const {
    return typedBytes(QGuiApplication::clipboard()->text());
}

void QtShell::setClipboardText(const std::string& text) {
    QGuiApplication::clipboard()->setText(shown(text));
}

}  // namespace velmora::qt
