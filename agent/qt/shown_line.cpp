#include "agent/qt/shown_line.h"

#include <string_view>

#include "agent/bytes.h"

namespace agent {
namespace {

void append(QString& text, const QString& piece) {
    for (qsizetype i = 0; i < piece.size(); ++i) {
        const QChar c = piece[i];
        const bool pairs = c == u'\r' && i + 1 < piece.size() && piece[i + 1] == u'\n';
        if ((c == u'\n' || c == u'\r') && !pairs) {
            text += QChar(QChar::LineSeparator);
        } else if (c == u'\t') {
            text += u' ';
        } else if (c.category() != QChar::Other_Control) {
            text += c;
        }
    }
}

}  // namespace

ShownLine toShown(const SpokenLine& line) {
    const bool utf8 = isUtf8(line.shown);
    ShownLine shown;
    std::size_t from = 0;
    const auto appendUpTo = [&](std::size_t end) {
        const auto bytes = std::string_view(line.shown).substr(from, end - from);
        append(shown.text, QString::fromStdString(utf8 ? std::string(bytes) : fromWindows1252(bytes)));
        from = end;
    };
    for (const auto& word : line.words) {
        appendUpTo(word.shownEnd);
        shown.wordEnds.push_back(shown.text.size());
    }
    appendUpTo(line.shown.size());
    return shown;
}

}  // namespace agent
