#include <pocketsphinx.h>
#include <sphinxbase/err.h>
#include <sphinxbase/fsg_model.h>
#include <sphinxbase/ngram_model.h>

#include <map>
#include <set>
#include <utility>

#include "agent/hearing/decoder.h"
#include "agent/hearing/frequent_words.h"

namespace agent {
namespace {

constexpr std::string_view soundPrefix = "_";
constexpr std::string_view commandPrefix = "#";
// What each sound costs, as natural logarithms: where any may come, and where a `[...]` takes them up. Those
// are dear, as a short word among any sounds explains every other command a little better than its own words
// do.
constexpr double logSound = -4;
constexpr double logFillingSound = -25;

// How much the order of words counts against their sounds, and what a new word costs.
constexpr float languageWeight = 4.0F;
constexpr float wordPenalty = 0.65F;

struct Free {
    void operator()(ps_decoder_t* decoder) const { ps_free(decoder); }
    void operator()(cmd_ln_t* config) const { cmd_ln_free_r(config); }
    void operator()(fsg_model_t* grammar) const { fsg_model_free(grammar); }
    void operator()(ngram_model_t* model) const { ngram_model_free(model); }
};

std::string soundWord(std::string_view sound) {
    return std::string(soundPrefix).append(sound);
}

/// The name under which the decoder knows a word of a command: unlike any other word, and free of whatever a
/// user may have typed.
std::string commandWord(std::size_t command, std::size_t arc) {
    return std::string(commandPrefix).append(std::to_string(command)).append("_").append(std::to_string(arc));
}

/// How much of what is possible is followed up.
struct Width {
    const char* beam;
    const char* wordBeam;
    const char* mostStates;
    const char* mostWords;
};
// A command must not be lost on its way, and there are few of them; free words have to be quick.
constexpr Width wide{"1e-64", "1e-48", "30000", "-1"};
constexpr Width narrow{"1e-40", "1e-25", "1000", "20"};

/// One decoder with its dictionary, and the searches that it can do.
class Engine {
public:
    bool load(const HearingModel& model, const Width& width) {
        // Scores of all senones are needed: with only the active ones, two readings would be measured against
        // different bests. Removing noise is off: it remembers earlier phrases, and what it leaves of a
        // phrase is recognised less often.
        const std::unique_ptr<cmd_ln_t, Free> config(
            cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", model.acoustic.c_str(), "-fwdflat", "no",
                        "-bestpath", "no", "-beam", width.beam, "-pbeam", width.beam, "-wbeam",
                        width.wordBeam, "-maxhmmpf", width.mostStates, "-maxwpf", width.mostWords,
                        "-compallsen", "yes", "-remove_silence", "no", "-remove_noise", "no", nullptr));
        if (config) decoder_.reset(ps_init(config.get()));
        return decoder_ != nullptr;
    }

    ps_decoder_t* get() const { return decoder_.get(); }
    logmath_t* logarithms() const { return ps_get_logmath(decoder_.get()); }

    void add(const std::string& name, const std::vector<Phones>& saidAs, const HeardPiece& meaning) {
        for (std::size_t way = 0; way < saidAs.size(); ++way) {
            std::string variant = name;
            if (way > 0) variant.append("(").append(std::to_string(way + 1)).append(")");
            const std::string phones = phoneText(saidAs[way]);
            if (ps_add_word(decoder_.get(), variant.c_str(), phones.c_str(), FALSE) < 0) continue;
            HeardPiece& piece = meanings_.emplace(std::move(variant), meaning).first->second;
            piece.phones = saidAs[way];
        }
    }

    Reading read(const char* search, std::span<const std::int16_t> samples) {
        Reading reading;
        if (ps_set_search(get(), search) < 0 || ps_start_utt(get()) < 0) return reading;
        ps_process_raw(get(), samples.data(), samples.size(), FALSE, TRUE);
        if (ps_end_utt(get()) < 0) return reading;
        int score = 0;
        const char* words = ps_get_hyp(get(), &score);
        if (words == nullptr || *words == '\0') return reading;
        for (ps_seg_t* segment = ps_seg_iter(get()); segment != nullptr; segment = ps_seg_next(segment)) {
            HeardPiece piece = pieceOf(segment);
            if (piece.frames > 0) reading.push_back(std::move(piece));
        }
        return reading;
    }

private:
    HeardPiece pieceOf(ps_seg_t* segment) const {
        constexpr double scoreUnit = 1024;  // the decoder's scores are shifted by ten bits
        const auto meaning = meanings_.find(ps_seg_word(segment));
        HeardPiece piece = meaning == meanings_.end() ? HeardPiece{} : meaning->second;
        int last = 0;
        ps_seg_frames(segment, &piece.first, &last);
        piece.frames = last - piece.first + 1;
        int acoustic = 0;
        int language = 0;
        int back = 0;
        ps_seg_prob(segment, &acoustic, &language, &back);
        piece.fit = logmath_log_to_ln(logarithms(), acoustic) * scoreUnit;
        return piece;
    }

    std::unique_ptr<ps_decoder_t, Free> decoder_;
    std::map<std::string, HeardPiece, std::less<>> meanings_;
};

/// A grammar under construction.
class Grammar {
public:
    /// From state 0 to state 1.
    Grammar(const Engine& engine, const char* name, std::size_t states)
        : engine_(engine),
          name_(name),
          grammar_(fsg_model_init(name, engine.logarithms(), 1.0F, static_cast<int>(states))) {
        grammar_->start_state = 0;
        grammar_->final_state = 1;
    }

    void addWord(std::size_t from, std::size_t to, const std::string& word, double natural) {
        fsg_model_trans_add(grammar_.get(), static_cast<int>(from), static_cast<int>(to), logOf(natural),
                            fsg_model_word_add(grammar_.get(), word.c_str()));
    }

    void addNothing(std::size_t from, std::size_t to, double natural) {
        fsg_model_null_trans_add(grammar_.get(), static_cast<int>(from), static_cast<int>(to),
                                 logOf(natural));
    }

    void addAnySounds(std::size_t state, double natural) {
        for (const std::string_view sound : phoneNames()) addWord(state, state, soundWord(sound), natural);
    }

    bool set() {
        glist_free(fsg_model_null_trans_closure(grammar_.get(), nullptr));
        return ps_set_fsg(engine_.get(), name_, grammar_.get()) == 0;
    }

private:
    int logOf(double natural) const { return logmath_ln_to_log(engine_.logarithms(), natural); }

    const Engine& engine_;
    const char* name_;
    std::unique_ptr<fsg_model_t, Free> grammar_;
};

/// All commands side by side.
bool setCommands(const Engine& engine, const std::vector<CommandGraph>& commands) {
    std::size_t states = 2;
    for (const CommandGraph& command : commands) states += command.empty() ? 0 : command.states;
    Grammar grammar(engine, "commands", states);
    std::size_t base = 2;
    for (std::size_t command = 0; command < commands.size(); ++command) {
        const CommandGraph& graph = commands[command];
        if (graph.empty()) continue;
        grammar.addNothing(0, base, 0);
        grammar.addNothing(base + graph.states - 1, 1, 0);
        for (std::size_t i = 0; i < graph.arcs.size(); ++i) {
            const auto& arc = graph.arcs[i];
            if (!arc.saidAs.empty()) {
                grammar.addWord(base + arc.from, base + arc.to, commandWord(command, i), 0);
            } else if (arc.anySound) {
                grammar.addAnySounds(base + arc.from, logFillingSound);
            } else {
                grammar.addNothing(base + arc.from, base + arc.to, 0);
            }
        }
        base += graph.states;
    }
    return grammar.set();
}

bool setSounds(const Engine& engine) {
    Grammar grammar(engine, "sounds", 2);
    grammar.addAnySounds(0, logSound);
    grammar.addNothing(0, 1, 0);
    return grammar.set();
}

class SphinxDecoder : public Decoder {
public:
    bool load(const HearingModel& model, const Dictionary& dictionary,
              const std::vector<CommandGraph>& commands) {
        err_set_logfp(nullptr);
        if (!commands_.load(model, wide) || !words_.load(model, narrow) || !sounds_.load(model, wide))
            return false;
        for (const std::string_view sound : phoneNames()) {
            for (Engine* engine : {&commands_, &sounds_})
                engine->add(soundWord(sound), {readPhones(sound)}, {.kind = HeardPiece::Kind::sound});
        }
        for (std::size_t command = 0; command < commands.size(); ++command) {
            const auto& arcs = commands[command].arcs;
            for (std::size_t arc = 0; arc < arcs.size(); ++arc)
                commands_.add(commandWord(command, arc), arcs[arc].saidAs,
                              {.kind = HeardPiece::Kind::word, .command = command, .word = arcs[arc].word});
        }
        return setCommands(commands_, commands) && setSounds(sounds_) &&
               setWords(model, dictionary, commands);
    }

    Reading asCommand(std::span<const std::int16_t> samples) override {
        return commands_.read("commands", samples);
    }
    Reading asSounds(std::span<const std::int16_t> samples) override {
        return sounds_.read("sounds", samples);
    }
    Reading asWords(std::span<const std::int16_t> samples) override { return words_.read("words", samples); }

private:
    bool setWords(const HearingModel& model, const Dictionary& dictionary,
                  const std::vector<CommandGraph>& commands) {
        const std::unique_ptr<ngram_model_t, Free> language(
            ngram_model_read(nullptr, model.language.c_str(), NGRAM_AUTO, words_.logarithms()));
        if (!language) return false;
        ngram_model_apply_weights(language.get(), languageWeight, wordPenalty);
        std::vector<std::pair<int, std::string>> ranked;
        const auto count = static_cast<int>(*ngram_model_get_counts(language.get()));
        for (int id = 0; id < count; ++id) {
            int depth = 0;
            const int score = ngram_ng_score(language.get(), id, nullptr, 0, &depth);
            ranked.emplace_back(-score, ngram_word(language.get(), id));
        }
        // The commands' own words belong to them: without them, a command would read like a phrase that only
        // resembles it.
        const std::vector<std::string> frequent = frequentWords(std::move(ranked));
        std::set<std::string> all(frequent.begin(), frequent.end());
        for (const CommandGraph& command : commands) {
            for (const CommandGraph::Arc& arc : command.arcs) {
                if (!arc.word.empty()) all.insert(arc.word);
            }
        }
        for (const std::string& word : all) {
            const std::vector<Phones> saidAs = dictionary.pronunciations(word);
            if (saidAs.empty()) continue;
            if (ngram_wid(language.get(), word.c_str()) == ngram_unknown_wid(language.get()))
                ngram_model_add_word(language.get(), word.c_str(), 1);
            words_.add(word, saidAs, {.kind = HeardPiece::Kind::word, .word = word});
        }
        return ps_set_lm(words_.get(), "words", language.get()) == 0;
    }

    Engine commands_;
    Engine words_;
    Engine sounds_;
};

}  // namespace

std::unique_ptr<Decoder> Decoder::load(const HearingModel& model, const Dictionary& dictionary,
                                       const std::vector<CommandGraph>& commands) {
    auto decoder = std::make_unique<SphinxDecoder>();
    if (!decoder->load(model, dictionary, commands)) return nullptr;
    return decoder;
}

}  // namespace agent
