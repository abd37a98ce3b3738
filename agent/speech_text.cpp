#include "agent/speech_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>
#include <span>

#include "agent/bytes.h"

namespace agent {
namespace {

enum class Value { none, number, character, context, map };

struct TagKind {
    std::string_view name;
    Value value;
    std::uint32_t least = 0;
    std::uint32_t most = UINT32_MAX;
};

constexpr std::array<TagKind, 11> tagKinds = {{{"Chr", Value::character},
                                               {"Ctx", Value::context},
                                               {"Emp", Value::none},
                                               {"Lst", Value::none},
                                               {"Map", Value::map},
                                               {"Mrk", Value::number, 1},
                                               {"Pau", Value::number},
                                               {"Pit", Value::number},
                                               {"Spd", Value::number},
                                               {"Vol", Value::number, 0, 65535},
                                               {"Rst", Value::none}}};

constexpr std::array<std::string_view, 3> characters = {"Normal", "Monotone", "Whisper"};
constexpr std::array<std::string_view, 3> contexts = {"Address", "E-mail", "Unknown"};

struct Tag {
    std::size_t length = 0;  // in the source, both backslashes included
    std::string_view spoken;
    std::string_view shown;
};

// `"..."` at the start of `text`, which is moved behind it.
std::optional<std::string_view> takeQuoted(std::string_view& text) {
    if (!text.starts_with('"')) return std::nullopt;
    const auto end = text.find('"', 1);
    if (end == std::string_view::npos) return std::nullopt;
    const auto inside = text.substr(1, end - 1);
    text.remove_prefix(end + 1);
    return inside;
}

bool takeNumber(std::string_view& text, const TagKind& kind) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || number < kind.least || number > kind.most) return false;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return true;
}

bool takeWordOf(std::string_view& text, std::span<const std::string_view> words) {
    const auto word = takeQuoted(text);
    return word && std::ranges::any_of(words, [&](auto known) { return sameName(known, *word); });
}

bool takeMap(std::string_view& text, Tag& tag) {
    const auto spoken = takeQuoted(text);
    if (!spoken || !text.starts_with('=')) return false;
    text.remove_prefix(1);
    const auto shown = takeQuoted(text);
    if (!shown) return false;
    tag.spoken = *spoken;
    tag.shown = *shown;
    return true;
}

bool takeValue(std::string_view& text, const TagKind& kind, Tag& tag) {
    if (kind.value == Value::none) return true;
    if (!text.starts_with('=')) return false;
    text.remove_prefix(1);
    switch (kind.value) {
        case Value::number:
            return takeNumber(text, kind);
        case Value::character:
            return takeWordOf(text, characters);
        case Value::context:
            return takeWordOf(text, contexts);
        case Value::map:
            return takeMap(text, tag);
        case Value::none:
            break;
    }
    return false;
}

// The tag that begins with the backslash at the start of `source`.
std::optional<Tag> readTag(std::string_view source) {
    constexpr std::size_t nameLength = 3;
    if (source.size() < nameLength + 2) return std::nullopt;
    const auto name = source.substr(1, nameLength);
    const auto kind = std::ranges::find_if(tagKinds, [&](auto& k) { return sameName(k.name, name); });
    if (kind == tagKinds.end()) return std::nullopt;
    Tag tag;
    auto rest = source.substr(1 + nameLength);
    if (!takeValue(rest, *kind, tag) || !rest.starts_with('\\')) return std::nullopt;
    tag.length = source.size() - rest.size() + 1;
    return tag;
}

bool separatesWords(char c) {
    return static_cast<unsigned char>(c) <= ' ';
}

// Whether the byte can't begin a character in UTF-8.
bool continuesSequence(char c) {
    return (static_cast<unsigned char>(c) & 0xc0) == 0x80;
}

class LineBuilder {
public:
    void add(std::string_view spoken, std::string_view shown) {
        spoken_ += spoken;
        line_.shown += shown;
        inWord_ = inWord_ || !spoken.empty() || !shown.empty();
    }

    void endWord() {
        if (inWord_) line_.words.push_back({std::move(spoken_), line_.shown.size()});
        spoken_.clear();
        inWord_ = false;
    }

    void addSeparator(char c) {
        endWord();
        line_.shown += c;
    }

    SpokenLine take() {
        endWord();
        return std::move(line_);
    }

private:
    SpokenLine line_;
    std::string spoken_;
    bool inWord_ = false;
};

}  // namespace

std::string chooseAlternative(std::string_view text, const std::function<std::size_t(std::size_t)>& pick) {
    const auto count = static_cast<std::size_t>(std::ranges::count(text, '|')) + 1;
    std::size_t skip = count > 1 ? pick(count) % count : 0;
    for (; skip > 0; --skip) text.remove_prefix(text.find('|') + 1);
    return std::string(text.substr(0, text.find('|')));
}

SpokenLine parseSpeech(std::string_view oneAlternative) {
    return takeSpeech(oneAlternative, oneAlternative.size());
}

SpokenLine takeSpeech(std::string_view& rest, std::size_t most) {
    LineBuilder line;
    const std::size_t before = rest.size();
    while (!rest.empty()) {
        const std::size_t taken = before - rest.size();
        if (taken >= most && separatesWords(rest.front())) break;
        if (taken / 2 >= most && !continuesSequence(rest.front())) break;
        std::size_t used = 1;
        if (separatesWords(rest.front())) {
            line.addSeparator(rest.front());
        } else if (rest.starts_with("\\\\")) {
            line.add("\\", "\\");
            used = 2;
        } else if (const auto tag = rest.front() == '\\' ? readTag(rest) : std::nullopt) {
            line.add(tag->spoken, tag->shown);
            used = tag->length;
        } else {
            line.add(rest.substr(0, 1), rest.substr(0, 1));
        }
        rest.remove_prefix(used);
    }
    return line.take();
}

std::string shownText(std::string_view oneAlternative) {
    return parseSpeech(oneAlternative).shown;
}

}  // namespace agent
