#include "agent/hearing/transcriber.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "agent/hearing/decoder.h"

namespace agent {

/// One text under way.
struct Transcriber::Hypothesis {
    WritingGraph::Places places;  ///< none: it is written freely
    double logLikelihood = 0;
    std::size_t row = 0;  ///< of the model's last answer
    Token token = 0;      ///< the last one
    bool wild = false;    ///< which a `[...]` took up

    bool free() const { return places.empty(); }
};

namespace {

constexpr double rate = 16000;
constexpr double mostTokensASecond = 6;

/// Natural logarithms of likelihoods: a command that is this much less likely than the best one, or than what
/// was written freely, is not followed up.
constexpr double hopelessBehindBest = 10;
constexpr double hopelessBehindFree = 14;
/// The same where the words of the best command are what was written freely, or where there is no other.
constexpr double hopelessBehindAgreed = 4;
/// What each token counts that a `[...]` takes up, beside its own likelihood.
constexpr double wildToken = -0.5;
constexpr std::size_t wildChoices = 3;

constexpr double never = -std::numeric_limits<double>::infinity();

/// The likelihoods of the tokens that may come next in one text.
class Likelihoods {
public:
    explicit Likelihoods(std::span<const float> values, bool first) : values_(values), first_(first) {
        for (std::size_t token = 0; token < values.size(); ++token) {
            if (allowed(token) && (!allowed(best_) || values[token] > values[best_])) best_ = token;
        }
        constexpr float negligible = 16;
        const float greatest = values[best_];
        double sum = 0;
        for (std::size_t token = 0; token < values.size(); ++token) {
            if (values[token] > greatest - negligible && allowed(token))
                sum += std::exp(static_cast<double>(values[token]) - greatest);
        }
        base_ = greatest + std::log(sum);
    }

    /// A token that the model does not know never comes.
    double of(Token token) const {
        const auto index = static_cast<std::size_t>(token);
        return index < values_.size() ? values_[index] - base_ : never;
    }
    Token best() const { return static_cast<Token>(best_); }

    std::array<Token, wildChoices> likeliest() const {
        std::vector<Token> all(values_.size());
        for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<Token>(i);
        std::array<Token, wildChoices> found{};
        std::ranges::partial_sort_copy(
            all, found, std::ranges::greater(),
            [this](Token token) { return values_[static_cast<std::size_t>(token)]; },
            [this](Token token) { return values_[static_cast<std::size_t>(token)]; });
        return found;
    }

private:
    /// Something was said, so the text does not end before it begins.
    bool allowed(std::size_t token) const { return !first_ || token != Tokens::end; }

    std::span<const float> values_;
    bool first_;
    std::size_t best_ = 0;
    double base_ = 0;
};

}  // namespace

/// The search for the likeliest texts.
class Transcriber::Search {
public:
    /// `freely`: the likelihood of what was written freely, as far as it is known.
    Search(const WritingGraph& graph, const Tokens& tokens, std::vector<Hypothesis> begin, double freely)
        : graph_(graph), under_(std::move(begin)), single_(under_.size() == 1), freely_(freely) {
        for (const char* mark : {".", ",", "!", "?"}) {
            for (const Token token : tokens.split(mark)) marks_.push_back(token);
        }
    }

    /// Takes what may come next in the texts, and returns those that go on, until there are none.
    std::vector<WritingModel::Text> step(const NextTokens& next) {
        std::map<std::size_t, Likelihoods> likelihoods;
        for (const Hypothesis& hypothesis : under_)
            likelihoods.try_emplace(hypothesis.row, next.row(hypothesis.row), first_);
        first_ = false;
        std::vector<Hypothesis> on;
        for (const Hypothesis& hypothesis : under_) {
            const Likelihoods& here = likelihoods.at(hypothesis.row);
            if (hypothesis.free()) {
                goOnFreely(hypothesis, here);
            } else {
                endCommand(hypothesis, here);
                goOnAsCommand(hypothesis, here, on);
            }
        }
        choose(std::move(on));
        // What is written freely is often what is written as a command.
        std::vector<WritingModel::Text> texts;
        for (Hypothesis& hypothesis : under_) {
            const WritingModel::Text text{hypothesis.row, hypothesis.token};
            const auto same = std::ranges::find(texts, text);
            hypothesis.row = static_cast<std::size_t>(same - texts.begin());
            if (same == texts.end()) texts.push_back(text);
        }
        return texts;
    }

    Transcript result(const Tokens& tokens) && {
        std::ranges::sort(ended_, std::greater(), &Transcript::Command::logLikelihood);
        return {tokens.text(text_), freely_, std::move(ended_)};
    }

private:
    void goOnFreely(const Hypothesis& hypothesis, const Likelihoods& here) {
        const Token token = here.best();
        freely_ = hypothesis.logLikelihood + here.of(token);
        freeRow_.reset();
        if (token == Tokens::end) return;
        text_.push_back(token);
        freeRow_ = {.places = {}, .logLikelihood = freely_, .row = hypothesis.row, .token = token};
    }

    void endCommand(const Hypothesis& hypothesis, const Likelihoods& here) {
        double likeliest = here.of(Tokens::end);
        for (const Token mark : marks_) likeliest = std::max(likeliest, here.of(mark));
        for (auto& [command, words] : graph_.ends(hypothesis.places)) {
            const double all = hypothesis.logLikelihood + likeliest;
            best_ = std::max(best_, all);
            const auto before = std::ranges::find(ended_, command, &Transcript::Command::command);
            if (before == ended_.end()) {
                ended_.push_back({command, std::move(words), all});
            } else if (before->logLikelihood < all) {
                *before = {command, std::move(words), all};
            }
        }
    }

    void goOnAsCommand(const Hypothesis& hypothesis, const Likelihoods& here,
                       std::vector<Hypothesis>& on) const {
        for (auto& [token, places] : graph_.next(hypothesis.places))
            on.push_back(
                {std::move(places), hypothesis.logLikelihood + here.of(token), hypothesis.row, token});
        const auto wild = graph_.wild(hypothesis.places);
        if (wild.empty()) return;
        for (const Token token : here.likeliest()) {
            if (token != Tokens::end)
                on.push_back({.places = wild,
                              .logLikelihood = hypothesis.logLikelihood + here.of(token) + wildToken,
                              .row = hypothesis.row,
                              .token = token,
                              .wild = true});
        }
    }

    void choose(std::vector<Hypothesis> on) {
        std::ranges::sort(on, std::greater(), &Hypothesis::logLikelihood);
        // Where a `[...]` takes up what is written freely, that tells nothing against the other commands.
        const bool agreed = freeRow_ && !on.empty() && on[0].row == freeRow_->row &&
                            on[0].token == freeRow_->token && !on[0].wild;
        const double best = on.empty() ? best_ : std::max(best_, on[0].logLikelihood);
        const double hopeless =
            std::max(best - (agreed || single_ ? hopelessBehindAgreed : hopelessBehindBest),
                     freely_ - hopelessBehindFree);
        std::erase_if(
            on, [hopeless](const Hypothesis& hypothesis) { return hypothesis.logLikelihood < hopeless; });
        under_.clear();
        if (freeRow_) under_.push_back(*freeRow_);
        // Of the ways to write the same words only the likeliest is followed.
        std::set<std::vector<std::size_t>> reached;
        for (Hypothesis& hypothesis : on) {
            if (under_.size() == WritingModel::mostTexts) break;
            std::vector<std::size_t> nodes;
            for (const WritingGraph::Place& place : hypothesis.places) nodes.push_back(place.node);
            if (reached.insert(std::move(nodes)).second) under_.push_back(std::move(hypothesis));
        }
    }

    const WritingGraph& graph_;
    std::vector<Hypothesis> under_;
    bool single_;  ///< it is about one command
    TokenList marks_;
    std::optional<Hypothesis> freeRow_;
    TokenList text_;
    double freely_;
    double best_ = never;
    bool first_ = true;
    std::vector<Transcript::Command> ended_;
};

namespace {

/// The phrase as the model likes it: loud, and some time after the beginning.
std::vector<float> prepare(std::span<const std::int16_t> samples) {
    constexpr double secondsBefore = 0.3;
    constexpr float usualPeak = 0.5F;
    constexpr float mostGain = 50.0F / 32768;
    int peak = 1;
    for (const std::int16_t sample : samples) peak = std::max(peak, std::abs(int{sample}));
    const float gain = std::min(usualPeak / static_cast<float>(peak), mostGain);
    std::vector<float> prepared(static_cast<std::size_t>(secondsBefore * rate));
    prepared.reserve(prepared.size() + samples.size());
    for (const std::int16_t sample : samples) prepared.push_back(static_cast<float>(sample) * gain);
    return prepared;
}

}  // namespace

std::string defaultWritingFolder() {
    return AGENT_SPEECH_FOLDER;
}

std::unique_ptr<Transcriber> Transcriber::load(const std::string& folder,
                                               const std::vector<CommandGraph>& commands) {
    auto tokens = Tokens::read(folder + "/tokens.txt");
    auto model = WritingModel::load(folder);
    if (!tokens || !model) return nullptr;
    return std::make_unique<Transcriber>(std::move(model), std::move(*tokens), commands);
}

Transcript Transcriber::transcribe(std::span<const std::int16_t> samples, const std::stop_token& stop) {
    mostSteps_ = static_cast<int>(static_cast<double>(samples.size()) / rate * mostTokensASecond);
    freely_ = 0;
    Transcript transcript = follow({{}, {.places = graph_.begin()}}, model_->hear(prepare(samples)), stop);
    freely_ = transcript.logLikelihood;
    return transcript;
}

std::optional<Transcript::Command> Transcriber::asCommand(std::size_t command) {
    const auto begin = graph_.begin(command);
    if (begin.empty()) return {};
    const auto commands = follow({{.places = begin}}, model_->again(), {}).commands;
    return commands.empty() ? std::nullopt : std::optional(commands.front());
}

Transcript Transcriber::follow(std::vector<Hypothesis> begin, const NextTokens& first,
                               const std::stop_token& stop) {
    Search search(graph_, tokens_, std::move(begin), freely_);
    auto texts = search.step(first);
    for (int step = 0; step < mostSteps_ && !texts.empty() && !stop.stop_requested(); ++step)
        texts = search.step(model_->goOn(texts));
    return std::move(search).result(tokens_);
}

}  // namespace agent
