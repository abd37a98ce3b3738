#include "agent/voice_form.h"

#include <algorithm>
#include <utility>

#include "agent/bytes.h"

namespace agent {
namespace {

constexpr std::string_view blanks = " \t\r\n\v\f";
constexpr std::string_view signs = "[]()|";

bool isIn(std::string_view set, char character) {
    return set.find(character) != std::string_view::npos;
}

/// Length of a `[...]` at the start of the text, 0 if there is none.
std::size_t anyWordsLength(std::string_view text) {
    constexpr std::string_view dots = "...";
    if (text.front() != '[') return 0;
    const auto begin = text.find_first_not_of(blanks, 1);
    if (begin == std::string_view::npos || !text.substr(begin).starts_with(dots)) return 0;
    const auto end = text.find_first_not_of(blanks, begin + dots.size());
    return end != std::string_view::npos && text[end] == ']' ? end + 1 : 0;
}

/// Builds a form from left to right.
class Builder {
public:
    void addWord(std::string_view text) {
        if (afterWord_) step(VoiceArc::Kind::space);
        step(VoiceArc::Kind::word, lowerCase(text));
        afterWord_ = true;
        fill();
    }

    void addAnyWords() {
        step(VoiceArc::Kind::empty);
        form_.arcs.push_back({here_, here_, VoiceArc::Kind::anyWord});
        afterWord_ = false;
        fill();
    }

    void open(char bracket) {
        open_.push_back({bracket, here_, {}});
        beginAlternative();
    }

    /// The next alternative of the innermost bracket. False if it can't stand here.
    bool bar() {
        if (open_.empty() || !open_.back().filled) return false;
        open_.back().ends.push_back(here_);
        beginAlternative();
        return true;
    }

    /// False if the innermost bracket can't be closed this way, or not here.
    bool close(char bracket) {
        if (open_.empty() || !open_.back().filled || (open_.back().bracket == '[') != (bracket == ']'))
            return false;
        Open closed = std::move(open_.back());
        open_.pop_back();
        closed.ends.push_back(here_);
        if (bracket == ']') closed.ends.push_back(closed.start);
        const std::size_t behind = form_.states++;
        for (const std::size_t end : closed.ends) form_.arcs.push_back({end, behind, VoiceArc::Kind::empty});
        here_ = behind;
        afterWord_ = false;
        fill();
        return true;
    }

    bool balanced() const { return open_.empty(); }

    VoiceForm take() {
        std::ranges::stable_sort(form_.arcs, {}, &VoiceArc::from);
        return std::move(form_);
    }

private:
    struct Open {
        char bracket;
        std::size_t start;
        std::vector<std::size_t> ends;  // of the alternatives so far
        bool filled = false;            // whether the present alternative holds anything
    };

    void step(VoiceArc::Kind kind, std::string word = {}) {
        const std::size_t next = form_.states++;
        form_.arcs.push_back({here_, next, kind, std::move(word)});
        here_ = next;
    }

    void beginAlternative() {
        here_ = open_.back().start;
        open_.back().filled = false;
        step(VoiceArc::Kind::empty);
        afterWord_ = false;
    }

    void fill() {
        if (!open_.empty()) open_.back().filled = true;
    }

    VoiceForm form_;
    std::vector<Open> open_;
    std::size_t here_ = 0;
    bool afterWord_ = false;
};

/// Adds the words of the text, up to the first sign that is not theirs. Returns what is left.
std::string_view addWords(Builder& builder, std::string_view text, std::string_view ends) {
    while (!text.empty() && !isIn(ends, text.front())) {
        if (isIn(blanks, text.front())) {
            text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
            continue;
        }
        const auto stop = std::ranges::find_if(
            text, [ends](char character) { return isIn(blanks, character) || isIn(ends, character); });
        const auto length = static_cast<std::size_t>(stop - text.begin());
        builder.addWord(text.substr(0, length));
        text.remove_prefix(length);
    }
    return text;
}

/// False if the text is no grammar.
bool addGrammar(Builder& builder, std::string_view text) {
    for (text = addWords(builder, text, signs); !text.empty(); text = addWords(builder, text, signs)) {
        const char sign = text.front();
        if (const std::size_t length = anyWordsLength(text); length > 0) {
            builder.addAnyWords();
            text.remove_prefix(length);
            continue;
        }
        text.remove_prefix(1);
        if (sign == '[' || sign == '(') {
            builder.open(sign);
        } else if (!(sign == '|' ? builder.bar() : builder.close(sign))) {
            return false;
        }
    }
    return builder.balanced();
}

}  // namespace

std::string spokenPhrase(std::string_view text) {
    std::string phrase;
    for (auto begin = text.find_first_not_of(blanks); begin != std::string_view::npos;) {
        const auto end = std::min(text.find_first_of(blanks, begin), text.size());
        if (!phrase.empty()) phrase += ' ';
        phrase += lowerCase(text.substr(begin, end - begin));
        begin = text.find_first_not_of(blanks, end);
    }
    return phrase;
}

VoiceForm readVoiceGrammar(std::string_view grammar) {
    Builder builder;
    if (addGrammar(builder, grammar)) return builder.take();
    Builder plain;
    addWords(plain, grammar, {});
    return plain.take();
}

}  // namespace agent
