#include "agent/speech_tags.h"

#include <algorithm>
#include <array>
#include <charconv>
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

// In the order of TagName.
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
constexpr std::array<std::string_view, 3> contexts = {"Unknown", "Address", "E-mail"};

// `"..."` at the start of `text`, which is moved behind it.
std::optional<std::string_view> takeQuoted(std::string_view& text) {
    if (!text.starts_with('"')) return std::nullopt;
    const auto end = text.find('"', 1);
    if (end == std::string_view::npos) return std::nullopt;
    const auto inside = text.substr(1, end - 1);
    text.remove_prefix(end + 1);
    return inside;
}

bool takeNumber(std::string_view& text, const TagKind& kind, SpeechTag& tag) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), tag.number);
    if (error != std::errc() || tag.number < kind.least || tag.number > kind.most) return false;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return true;
}

bool takeChoice(std::string_view& text, std::span<const std::string_view> choices, SpeechTag& tag) {
    const auto word = takeQuoted(text);
    if (!word) return false;
    const auto found = std::ranges::find_if(choices, [&](auto known) { return sameName(known, *word); });
    tag.choice = static_cast<std::size_t>(found - choices.begin());
    return found != choices.end();
}

bool takeMap(std::string_view& text, SpeechTag& tag) {
    const auto spoken = takeQuoted(text);
    if (!spoken || !text.starts_with('=')) return false;
    text.remove_prefix(1);
    const auto shown = takeQuoted(text);
    if (!shown) return false;
    tag.spoken = *spoken;
    tag.shown = *shown;
    return true;
}

bool takeValue(std::string_view& text, const TagKind& kind, SpeechTag& tag) {
    if (kind.value == Value::none) return true;
    if (!text.starts_with('=')) return false;
    text.remove_prefix(1);
    switch (kind.value) {
        case Value::number:
            return takeNumber(text, kind, tag);
        case Value::character:
            return takeChoice(text, characters, tag);
        case Value::context:
            return takeChoice(text, contexts, tag);
        case Value::map:
            return takeMap(text, tag);
        case Value::none:
            break;
    }
    return false;
}

}  // namespace

std::optional<SpeechTag> readTag(std::string_view line) {
    constexpr std::size_t nameLength = 3;
    if (line.size() < nameLength + 2 || line.front() != '\\') return std::nullopt;
    const auto name = line.substr(1, nameLength);
    const auto kind = std::ranges::find_if(tagKinds, [&](auto& k) { return sameName(k.name, name); });
    if (kind == tagKinds.end()) return std::nullopt;
    SpeechTag tag{.name = static_cast<TagName>(kind - tagKinds.begin())};
    auto rest = line.substr(1 + nameLength);
    if (!takeValue(rest, *kind, tag) || !rest.starts_with('\\')) return std::nullopt;
    tag.length = line.size() - rest.size() + 1;
    return tag;
}

}  // namespace agent
