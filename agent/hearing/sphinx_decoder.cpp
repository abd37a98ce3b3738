#include <pocketsphinx.h>
#include <sphinxbase/err.h>
#include <sphinxbase/fsg_model.h>

#include <map>
#include <utility>

#include "agent/hearing/decoder.h"

namespace agent {
namespace {

constexpr std::string_view soundPrefix = "_";
constexpr std::string_view commandPrefix = "#";
// What each sound costs, as natural logarithms: where any may come, and where a `[...]` takes them up. Those
// are dear, as a short word among any sounds explains every other command a little better than its own words
// do.
constexpr double logSound = -4;
constexpr double logFillingSound = -25;

// How much of what is possible is followed up: a command must not be lost on its way, and there are few.
constexpr const char* beam = "1e-64";
constexpr const char* wordBeam = "1e-48";

struct Free {
    void operator()(ps_decoder_t* decoder) const { ps_free(decoder); }
    void operator()(cmd_ln_t* config) const { cmd_ln_free_r(config); }
    void operator()(fsg_model_t* grammar) const { fsg_model_free(grammar); }
};

std::string soundWord(std::string_view sound) {
    return std::string(soundPrefix).append(sound);
}

/// The name under which the decoder knows a word of a command: unlike any other word, and free of whatever a
/// user may have typed.
std::string commandWord(std::size_t command, std::size_t arc) {
    return std::string(commandPrefix).append(std::to_string(command)).append("_").append(std::to_string(arc));
}

/// One decoder with its dictionary, and the searches that it can do.
class Engine {
public:
    bool load(const HearingModel& model) {
        // Scores of all senones are needed: with only the active ones, two readings would be measured against
        // different bests. Removing noise is off: it remembers earlier phrases, and what it leaves of a
        // phrase is recognised less often.
        const std::unique_ptr<cmd_ln_t, Free> config(
            cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", model.acoustic.c_str(), "-fwdflat", "no",
                        "-bestpath", "no", "-beam", beam, "-pbeam", beam, "-wbeam", wordBeam, "-compallsen",
                        "yes", "-remove_silence", "no", "-remove_noise", "no", nullptr));
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
    bool load(const HearingModel& model, const std::vector<CommandGraph>& commands) {
        err_set_logfp(nullptr);
        if (!commands_.load(model) || !sounds_.load(model)) return false;
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
        return setCommands(commands_, commands) && setSounds(sounds_);
    }

    Reading asCommand(std::span<const std::int16_t> samples) override {
        return commands_.read("commands", samples);
    }
    Reading asSounds(std::span<const std::int16_t> samples) override {
        return sounds_.read("sounds", samples);
    }

private:
    Engine commands_;
    Engine sounds_;
};

}  // namespace

std::unique_ptr<Decoder> Decoder::load(const HearingModel& model, const std::vector<CommandGraph>& commands) {
    auto decoder = std::make_unique<SphinxDecoder>();
    if (!decoder->load(model, commands)) return nullptr;
    return decoder;
}

}  // namespace agent
