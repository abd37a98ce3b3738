#include <pocketsphinx.h>
#include <sphinxbase/err.h>
#include <sphinxbase/fsg_model.h>

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "agent/hearing/cepstra.h"
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

/// One way to read, with a dictionary of its own and the grammar "all".
class SphinxDecoder : public Decoder {
public:
    SphinxDecoder() = default;
    ~SphinxDecoder() override {
        if (reading_) end();
    }
    SphinxDecoder(const SphinxDecoder&) = delete;
    SphinxDecoder& operator=(const SphinxDecoder&) = delete;

    bool load(const HearingModel& model) {
        // Scores of all senones are needed: with only the active ones, two readings would be measured against
        // different bests. Removing noise is off: it remembers earlier phrases, and what it leaves of a
        // phrase is recognised less often.
        const std::unique_ptr<cmd_ln_t, Free> config(
            cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", model.acoustic.c_str(), "-fwdflat", "no",
                        "-bestpath", "no", "-beam", beam, "-pbeam", beam, "-wbeam", wordBeam, "-compallsen",
                        "yes", "-remove_silence", "no", "-remove_noise", "no", nullptr));
        if (config) decoder_.reset(ps_init(config.get()));
        if (!decoder_) return false;
        cepstra_ = Cepstra::make(ps_get_config(get()));
        // The means are taken away already. The model's own settings would override an option.
        ps_get_feat(get())->cmn = CMN_NONE;
        return cepstra_ != nullptr;
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

    void readAhead(std::span<const std::int16_t> beginning, const std::stop_token& stop) override {
        constexpr std::size_t piece = hearingRate / 10;
        if (!goesOnWith(beginning) && !begin()) return;
        while (read_.size() < beginning.size() && !stop.stop_requested()) {
            const auto rest = beginning.subspan(read_.size());
            const auto next = rest.first(std::min(piece, rest.size()));
            search(cepstra_->feed(next));
            read_.insert(read_.end(), next.begin(), next.end());
        }
    }

    Reading read(std::span<const std::int16_t> phrase, const std::stop_token& stop) override {
        readAhead(phrase, stop);
        if (!reading_ || stop.stop_requested()) return {};
        search(cepstra_->finish());
        return end() ? result() : Reading();
    }

private:
    /// Whether what was read up to now is how this begins.
    bool goesOnWith(std::span<const std::int16_t> beginning) const {
        return reading_ && read_.size() <= beginning.size() &&
               std::ranges::equal(read_, beginning.first(read_.size()));
    }

    bool begin() {
        if (reading_) end();
        read_.clear();
        cepstra_->begin();
        reading_ = ps_start_utt(get()) == 0;
        return reading_;
    }

    bool end() {
        reading_ = false;
        return ps_end_utt(get()) == 0;
    }

    void search(std::vector<Cepstrum> cepstra) {
        std::vector<mfcc_t*> rows(cepstra.size());
        std::ranges::transform(cepstra, rows.begin(), [](Cepstrum& cepstrum) { return cepstrum.data(); });
        ps_process_cep(get(), rows.data(), static_cast<int>(rows.size()), FALSE, FALSE);
    }

    Reading result() const {
        Reading reading;
        int score = 0;
        const char* words = ps_get_hyp(get(), &score);
        if (words == nullptr || *words == '\0') return reading;
        for (ps_seg_t* segment = ps_seg_iter(get()); segment != nullptr; segment = ps_seg_next(segment)) {
            HeardPiece piece = pieceOf(segment);
            if (piece.frames > 0) reading.push_back(std::move(piece));
        }
        return reading;
    }

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
    std::unique_ptr<Cepstra> cepstra_;
    std::map<std::string, HeardPiece, std::less<>> meanings_;
    bool reading_ = false;  ///< a phrase, of which so much has been read:
    Samples read_;
};

/// A grammar under construction.
class Grammar {
public:
    /// From state 0 to state 1.
    Grammar(const SphinxDecoder& decoder, std::size_t states)
        : decoder_(decoder),
          grammar_(fsg_model_init(name, decoder.logarithms(), 1.0F, static_cast<int>(states))) {
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
        return ps_set_fsg(decoder_.get(), name, grammar_.get()) == 0 &&
               ps_set_search(decoder_.get(), name) == 0;
    }

private:
    int logOf(double natural) const { return logmath_ln_to_log(decoder_.logarithms(), natural); }

    static constexpr const char* name = "all";
    const SphinxDecoder& decoder_;
    std::unique_ptr<fsg_model_t, Free> grammar_;
};

/// All commands side by side.
bool setCommands(const SphinxDecoder& decoder, const std::vector<CommandGraph>& commands) {
    std::size_t states = 2;
    for (const CommandGraph& command : commands) states += command.empty() ? 0 : command.states;
    Grammar grammar(decoder, states);
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

bool setSounds(const SphinxDecoder& decoder) {
    Grammar grammar(decoder, 2);
    grammar.addAnySounds(0, logSound);
    grammar.addNothing(0, 1, 0);
    return grammar.set();
}

/// Can say any sound.
std::unique_ptr<SphinxDecoder> load(const HearingModel& model) {
    auto decoder = std::make_unique<SphinxDecoder>();
    if (!decoder->load(model)) return nullptr;
    for (const std::string_view sound : phoneNames())
        decoder->add(soundWord(sound), {readPhones(sound)}, {.kind = HeardPiece::Kind::sound});
    return decoder;
}

}  // namespace

std::optional<Decoders> loadDecoders(const HearingModel& model, const std::vector<CommandGraph>& commands) {
    err_set_logfp(nullptr);
    auto asCommand = load(model);
    auto asSounds = load(model);
    if (!asCommand || !asSounds) return {};
    for (std::size_t command = 0; command < commands.size(); ++command) {
        const auto& arcs = commands[command].arcs;
        for (std::size_t arc = 0; arc < arcs.size(); ++arc)
            asCommand->add(commandWord(command, arc), arcs[arc].saidAs,
                           {.kind = HeardPiece::Kind::word, .command = command, .word = arcs[arc].word});
    }
    if (!setCommands(*asCommand, commands) || !setSounds(*asSounds)) return {};
    return Decoders{std::move(asCommand), std::move(asSounds)};
}

}  // namespace agent
