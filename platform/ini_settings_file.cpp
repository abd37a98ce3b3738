#include "platform/ini_settings_file.h"

#include <charconv>
#include <optional>

#include "base/failure.h"
#include "base/text.h"
#include "platform/files.h"

namespace velmora {
namespace {

constexpr std::size_t longestRead = 254;
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

// An enciphered value can hold any byte. Stored as it is, one with a line end would be cut there, and what
// follows would stand as a line of its own, a key forged by whoever chose the text; one with blanks or quotes
// at its ends would lose them. Such values stand behind this mark, the bytes in question as %XX.
constexpr std::string_view mark = "%q:";

constexpr std::string_view hexDigits = "0123456789ABCDEF";

bool isQuoted(std::string_view value) {
    return value.size() >= 2 && value.front() == value.back() &&
           (value.front() == '"' || value.front() == '\'');
}

bool needsMark(std::string_view value) {
    if (value.empty()) return false;
    return isBlank(value.front()) || isBlank(value.back()) || isQuoted(value) || value.starts_with(mark) ||
           value.find_first_of(std::string_view("\r\n\0", 3)) != std::string_view::npos;
}

std::string stored(std::string_view value) {
    if (!needsMark(value)) return std::string(value);
    std::string text(mark);
    for (std::size_t i = 0; i < value.size(); ++i) {
        const auto code = static_cast<unsigned char>(value[i]);
        const bool atEnd = i == 0 || i + 1 == value.size();
        if (code < ' ' || code == '%' || (atEnd && isBlank(value[i]))) {
            text += '%';
            text += hexDigits[code / 16];
            text += hexDigits[code % 16];
        } else {
            text += value[i];
        }
    }
    return text;
}

/// What `stored` made of a value; a '%' that no two hexadecimal digits follow stands for itself.
std::string unmarked(std::string_view text) {
    std::string value;
    value.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned char code = 0;
        const auto* digits = text.data() + i + 1;
        if (text[i] == '%' && i + 2 < text.size() &&
            std::from_chars(digits, digits + 2, code, 16).ptr == digits + 2) {
            value += static_cast<char>(code);
            i += 2;
        } else {
            value += text[i];
        }
    }
    return value;
}

std::string valueOf(std::string_view text) {
    if (text.starts_with(mark)) return unmarked(text.substr(mark.size()));
    if (isQuoted(text)) text = text.substr(1, text.size() - 2);
    return std::string(text);
}

/// The name in a "[name]" line, nothing for any other line.
std::optional<std::string_view> sectionName(std::string_view line) {
    const auto trimmed = trim(line);
    if (!trimmed.starts_with('[')) return std::nullopt;
    const auto end = trimmed.find(']');
    if (end == std::string_view::npos) return std::nullopt;
    return trim(trimmed.substr(1, end - 1));
}

bool isComment(std::string_view line) {
    const auto trimmed = trim(line);
    return trimmed.empty() || trimmed.front() == ';' || trimmed.front() == '#';
}

/// Where a key stands, or would stand. Offsets into the content of the file.
struct Place {
    bool sectionFound = false;
    bool keyFound = false;
    std::size_t begin =
        0;  ///< the value's text, trimmed; without a key, the end of the section's last line of text
    std::size_t end = 0;
};

/// Walks to the key and no further.
Place locate(std::string_view content, std::string_view section, std::string_view key) {
    Place place;
    LineWalk walk(content, content.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
    while (const auto span = walk.next()) {
        const auto line = content.substr(span->begin, span->end - span->begin);
        const auto name = sectionName(line);
        if (!place.sectionFound) {
            if (!name || !equalsIgnoringCase(*name, section)) continue;
            place.sectionFound = true;
        } else if (name) {
            break;
        } else if (const auto equals = line.find('=');
                   equals != std::string_view::npos && !isComment(line) &&
                   equalsIgnoringCase(trim(line.substr(0, equals)), key)) {
            const auto text = trim(line.substr(equals + 1));
            place.keyFound = true;
            place.end = text.empty() ? span->end
                                     : static_cast<std::size_t>(text.data() - content.data()) + text.size();
            place.begin = place.end - text.size();
            return place;
        }
        if (!trim(line).empty()) place.begin = place.end = span->next;
    }
    return place;
}

std::string_view lineEndOf(std::string_view content) {
    const auto first = LineWalk(content).next();
    if (!first || first->end == first->next) return "\n";
    return content.substr(first->end, first->next - first->end);
}

bool canBeWritten(std::string_view name) {
    return !name.empty() && name.find_first_of(std::string_view("\r\n\0]=", 5)) == std::string_view::npos;
}

/// Puts the lines at the offset, which is where a line begins, or the end of the content.
void insertLines(std::string& content, std::size_t offset, std::string lines, std::string_view lineEnd) {
    const bool lacksEnd =
        offset > 0 && content[offset - 1] != '\n' && content[offset - 1] != '\r' && content != byteOrderMark;
    if (lacksEnd) lines.insert(0, lineEnd);
    content.insert(offset, lines);
}

}  // namespace

std::string IniSettingsFile::read(std::string_view section, std::string_view key,
                                  std::string_view defaultValue, const std::string& file) const {
    std::string value(defaultValue);
    passOver([&] {
        const auto content = files_.read(file);
        const auto place = locate(content, trim(section), trim(key));
        if (place.keyFound) {
            value = valueOf(std::string_view(content).substr(place.begin, place.end - place.begin));
        }
    });
    if (value.size() > longestRead) value.resize(longestRead);
    return value;
}

void IniSettingsFile::write(std::string_view section, std::string_view key, std::string_view value,
                            const std::string& file) {
    const auto sectionToWrite = trim(section);
    const auto keyToWrite = trim(key);
    if (!canBeWritten(sectionToWrite) || !canBeWritten(keyToWrite) || isComment(keyToWrite) ||
        keyToWrite.starts_with('[')) {
        return;
    }
    std::string content;
    try {
        content = files_.read(file);
    } catch (const Failure& failure) {
        // Anything but a missing file may hold settings that can't be seen now: it is not to be replaced by
        // one key.
        if (failure.number != errors::fileNotFound) return;
    }

    const auto place = locate(content, sectionToWrite, keyToWrite);
    if (place.keyFound) {
        const auto length = place.end - place.begin;
        if (valueOf(std::string_view(content).substr(place.begin, length)) == value) return;
        content.replace(place.begin, length, stored(value));
    } else {
        const auto lineEnd = std::string(lineEndOf(content));
        auto lines = std::string(keyToWrite).append("=").append(stored(value)).append(lineEnd);
        if (!place.sectionFound) lines.insert(0, "[" + std::string(sectionToWrite) + "]" + lineEnd);
        insertLines(content, place.sectionFound ? place.end : content.size(), std::move(lines), lineEnd);
    }
    passOver([&] { files_.replace(file, content, Privacy::ownersOnly); });
}

}  // namespace velmora
