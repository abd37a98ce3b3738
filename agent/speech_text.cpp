#include "agent/speech_text.h"

#include <algorithm>
#include <utility>

#include "agent/speech_tags.h"

namespace agent {
namespace {

constexpr std::chrono::milliseconds longestPause{60'000};

// A Map may speak any amount of text in place of one word; a voice is given it in portions.
constexpr std::size_t longestPortion = 400;

bool separatesWords(char c) {
    return static_cast<unsigned char>(c) <= ' ';
}

std::uint16_t within(std::uint32_t number, std::uint32_t least, std::uint32_t most) {
    return static_cast<std::uint16_t>(std::clamp(number, least, most));
}

// Whether the byte can't begin a character in UTF-8.
bool continuesSequence(char c) {
    return (static_cast<unsigned char>(c) & 0xc0) == 0x80;
}

class LineBuilder {
public:
    explicit LineBuilder(const Delivery& delivery) : delivery_(delivery) {}

    void add(std::string_view spoken, std::string_view shown) {
        next_.spoken += spoken;
        line_.shown += shown;
        inWord_ = inWord_ || !spoken.empty() || !shown.empty();
    }

    void addSeparator(char c) {
        endWord();
        line_.shown += c;
    }

    void apply(const SpeechTag& tag) {
        constexpr std::uint32_t lowest = 40;
        constexpr std::uint32_t highest = 400;
        constexpr std::uint32_t slowest = 80;
        constexpr std::uint32_t fastest = 450;
        if (tag.name == TagName::Map) return add(tag.spoken, tag.shown);
        if (tag.name == TagName::Lst) return;
        endWord();
        switch (tag.name) {
            case TagName::Chr:
                delivery_.character = static_cast<Delivery::Character>(tag.choice);
                break;
            case TagName::Ctx:
                delivery_.context = static_cast<Delivery::Context>(tag.choice);
                break;
            case TagName::Emp:
                next_.stressed = true;
                break;
            case TagName::Mrk:
                if (next_.bookmark != 0) pushMark();
                next_.bookmark = tag.number;
                break;
            case TagName::Pau:
                if (next_.bookmark != 0) pushMark();
                next_.pause = std::min(longestPause, next_.pause + std::chrono::milliseconds(within(
                                                                       tag.number, 0, longestPause.count())));
                break;
            case TagName::Pit:
                delivery_.pitch = within(tag.number, lowest, highest);
                break;
            case TagName::Spd:
                delivery_.rate = within(tag.number, slowest, fastest);
                break;
            case TagName::Vol:
                delivery_.volume = within(tag.number, 0, Delivery::fullVolume);
                break;
            case TagName::Rst:
                delivery_ = {};
                next_.stressed = false;
                break;
            case TagName::Map:
            case TagName::Lst:
                break;
        }
    }

    const Delivery& delivery() const { return delivery_; }

    // Whether something waits for the word that it belongs to.
    bool expectsWord() const {
        return !inWord_ && (next_.stressed || next_.bookmark != 0 || next_.pause.count() != 0);
    }

    SpokenLine take() {
        endWord();
        if (next_.bookmark != 0 || next_.pause.count() != 0) push();
        return std::move(line_);
    }

private:
    void endWord() {
        if (!inWord_) return;
        const std::string spoken = std::exchange(next_.spoken, {});
        const bool stressed = next_.stressed;
        std::string_view rest = spoken;
        while (rest.size() > longestPortion) {
            const auto blank = rest.rfind(' ', longestPortion);
            if (blank == std::string_view::npos) break;
            next_.spoken = rest.substr(0, blank);
            push();
            next_.stressed = stressed;
            rest.remove_prefix(blank + 1);
        }
        next_.spoken = rest;
        push();
    }

    // A mark that no word stands with; the stress waits for one.
    void pushMark() {
        const bool stressed = std::exchange(next_.stressed, false);
        push();
        next_.stressed = stressed;
    }

    void push() {
        next_.shownEnd = line_.shown.size();
        next_.delivery = delivery_;
        line_.words.push_back(std::exchange(next_, {}));
        inWord_ = false;
    }

    SpokenLine line_;
    SpokenWord next_;
    Delivery delivery_;
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
    Delivery delivery;
    return takeSpeech(oneAlternative, oneAlternative.size(), delivery);
}

SpokenLine takeSpeech(std::string_view& rest, std::size_t most, Delivery& delivery) {
    LineBuilder line(delivery);
    const std::size_t before = rest.size();
    while (!rest.empty()) {
        const std::size_t taken = before - rest.size();
        if (taken >= most && separatesWords(rest.front()) && !line.expectsWord()) break;
        if (taken / 2 >= most && !continuesSequence(rest.front())) break;
        std::size_t used = 1;
        if (separatesWords(rest.front())) {
            line.addSeparator(rest.front());
        } else if (rest.starts_with("\\\\")) {
            line.add("\\", "\\");
            used = 2;
        } else if (const auto tag = readTag(rest)) {
            line.apply(*tag);
            used = tag->length;
        } else {
            line.add(rest.substr(0, 1), rest.substr(0, 1));
        }
        rest.remove_prefix(used);
    }
    delivery = line.delivery();
    return line.take();
}

std::string shownText(std::string_view oneAlternative) {
    return parseSpeech(oneAlternative).shown;
}

bool asksForLastLine(std::string_view oneAlternative) {
    const auto tag = readTag(oneAlternative);
    return tag && tag->name == TagName::Lst && tag->length == oneAlternative.size();
}

}  // namespace agent
