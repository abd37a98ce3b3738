#include "platform/console/lines.h"

#include <algorithm>
#include <array>
#include <ostream>

#include "agent/bytes.h"

namespace velmora {
namespace {

struct Escape {
    char character;
    char letter;
};
constexpr std::array escapes{Escape{'\\', '\\'}, Escape{'\t', 't'}, Escape{'\r', 'r'}, Escape{'\n', 'n'},
                             Escape{'\0', '0'}};
constexpr std::string_view blanks = " ";

}  // namespace

std::string escapeField(std::string_view text) {
    std::string field;
    field.reserve(text.size());
    for (const char character : text) {
        const Escape* found = nullptr;
        for (const Escape& escape : escapes) {
            if (escape.character == character) found = &escape;
        }
        if (found) {
            field += {'\\', found->letter};
        } else {
            field += character;
        }
    }
    return field;
}

std::string unescapeField(std::string_view field) {
    std::string text;
    text.reserve(field.size());
    for (std::size_t i = 0; i < field.size(); ++i) {
        const Escape* found = nullptr;
        if (field[i] == '\\' && i + 1 < field.size()) {
            for (const Escape& escape : escapes) {
                if (escape.letter == field[i + 1]) found = &escape;
            }
        }
        text += found ? found->character : field[i];
        if (found) ++i;
    }
    return text;
}

std::vector<std::string> splitFields(std::string_view line, std::size_t atMost) {
    std::vector<std::string> fields;
    if (line.find('\t') != std::string_view::npos) {
        for (std::size_t begin = 0; begin <= line.size();) {
            const std::size_t end = std::min(line.find('\t', begin), line.size());
            fields.push_back(unescapeField(line.substr(begin, end - begin)));
            begin = end + 1;
        }
        return fields;
    }
    for (std::size_t begin = line.find_first_not_of(blanks); begin != std::string_view::npos;
         begin = line.find_first_not_of(blanks, begin)) {
        const bool last = fields.size() + 1 == atMost;
        const std::size_t end = last ? line.size() : std::min(line.find_first_of(blanks, begin), line.size());
        fields.push_back(unescapeField(line.substr(begin, end - begin)));
        begin = end;
    }
    return fields;
}

std::string_view firstField(std::string_view line) {
    if (const auto tab = line.find('\t'); tab != std::string_view::npos) return line.substr(0, tab);
    const std::size_t begin = std::min(line.find_first_not_of(blanks), line.size());
    return line.substr(begin, std::min(line.find_first_of(blanks, begin), line.size()) - begin);
}

template <class Fields>
void LinePrinter::printAll(const Fields& fields) {
    if (muted_) return;
    std::string line;
    for (const auto& field : fields) {
        if (!line.empty()) line += '\t';
        line += escapeField(agent::toUtf8(field));
    }
    line += '\n';
    out_.write(line.data(), static_cast<std::streamsize>(line.size())).flush();
}

void LinePrinter::print(std::initializer_list<std::string_view> fields) {
    printAll(fields);
}

void LinePrinter::print(const std::vector<std::string>& fields) {
    printAll(fields);
}

}  // namespace velmora
