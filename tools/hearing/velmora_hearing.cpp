// Learns what tells a command from another phrase, and measures how well that works.
//
// velmora-hearing decode LIST [both|turns|varied] [PART PARTS]
//     how the recogniser reads each phrase of each recording: the READINGS that the others take; with two
//     numbers, only of every PARTSth recording, counted from PART
// velmora-hearing learn READINGS
//     the weights, as lines for agent/hearing/judge_weights.h, and how many phrases pass of voices that they
//     do not know
// velmora-hearing check READINGS
//     how many phrases there are, how many percent are taken for the right command, how many percent pass
// velmora-hearing faults READINGS
//     the phrases that are judged wrongly, with their signals
//
// With "sounds" behind READINGS, the last three do without transcripts, as where their model is missing.
//
// A line of LIST is FILE<TAB>COMMAND, with -random or -near for a phrase that is no command; `synthesise`
// writes such lists. Each file is read clean and with noise 20 dB below the voice (both; the default), or in
// these ways by turns, or varied: by turns clean and with noise 15, 20 and 25 dB below.

#include <algorithm>
#include <cmath>
#include <ctime>
#include <fstream>
#include <functional>
#include <iomanip>
#include <iostream>
#include <map>
#include <optional>
#include <span>
#include <sstream>
#include <string>

#include "agent/hearing/phrase_finder.h"
#include "agent/hearing/recogniser.h"
#include "agent/hearing/sound_out.h"
#include "character/vocabulary.h"
#include "platform/engine/command_collection.h"
#include "tools/hearing/learning.h"
#include "tools/hearing/noise.h"
#include "tools/hearing/reading_text.h"

namespace {

using namespace velmora;
using namespace velmora::hearing;

/// Begins what stands for a command with a phrase that is none; what follows tells its kind.
constexpr char noCommand = '-';

std::vector<std::string> fieldsOf(const std::string& line) {
    std::vector<std::string> fields;
    std::istringstream in(line);
    for (std::string field; std::getline(in, field, '\t');) fields.push_back(field);
    return fields;
}

struct Row {
    std::string file, condition, meant;
    double seconds = 0;
    std::string text = {};  ///< of its transcript, if it has one
    std::vector<agent::Candidate> candidates = {};
    std::size_t atFirst = 0;  ///< so many of them, before the phrase was played more slowly

    bool isCommand() const { return !meant.starts_with(noCommand); }
    std::string voice() const {
        const std::string name = file.substr(file.rfind('/') + 1);
        return name.substr(0, name.find("--"));
    }
};

/// What a row was taken for.
struct Taken {
    double likelihood = 0;
    const agent::Candidate* candidate = nullptr;
};

/// The likeliest of a row's first candidates; `likelihoods` has one for each.
Taken likeliest(const Row& row, std::span<const double> likelihoods, std::size_t count) {
    Taken taken;
    for (std::size_t i = 0; i < count; ++i) {
        if (likelihoods[i] > taken.likelihood) taken = {likelihoods[i], &row.candidates[i]};
    }
    return taken;
}

/// The program's own commands.
struct Vocabulary {
    std::vector<std::string> names;
    std::vector<std::string> grammars;
};

Vocabulary vocabulary() {
    CommandCollection commands;
    InitCommands(commands, {});
    Vocabulary all;
    for (const AgentCommand& command : commands.all()) {
        all.names.push_back(command.Name);
        all.grammars.push_back(command.Voice);
    }
    return all;
}

/// The phrase with the moments before and after it that a microphone would have recorded.
agent::Samples inRoom(const agent::Samples& phrase) {
    agent::Samples samples(agent::hearingRate / 5);
    samples.insert(samples.end(), phrase.begin(), phrase.end());
    samples.resize(samples.size() + agent::hearingRate / 5);
    return samples;
}

/// What one recording is read with: `decibels` between voice and noise.
struct Condition {
    const char* name;
    std::optional<double> decibels = {};
};
const std::map<std::string, std::vector<Condition>> turnsOf{
    {"turns", {{"clean"}, {"noise", 20}}},
    {"varied", {{"clean"}, {"noise", 20}, {"clean"}, {"noise", 15}, {"noise", 25}}},
};

/// Goes the way of a recording that the program hears.
void decode(agent::Recogniser& recogniser, const std::vector<std::string>& entry,
            const agent::Samples& samples, const char* condition) {
    for (const agent::Samples& phrase : agent::findPhrases(samples)) {
        const std::clock_t start = std::clock();
        agent::Readings readings = recogniser.read(phrase);
        const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        recogniser.readSlower(phrase, readings);
        std::cout << entry.at(0) << '\t' << condition << '\t' << entry.at(1) << '\t' << seconds;
        for (const auto* reading : {&readings.command, &readings.sounds})
            std::cout << '\t' << readingText(*reading);
        for (const auto* transcript : {&readings.transcript, &readings.slower})
            std::cout << '\t' << transcriptText(*transcript);
        std::cout << std::endl;
    }
}

/// Every `parts`th recording of a list, from `part` on.
struct Selection {
    unsigned part = 0;
    unsigned parts = 1;
};

int decodeAll(const std::string& list, const std::string& mode, const Selection& selection) {
    const auto recogniser = agent::Recogniser::load({}, vocabulary().grammars, agent::soundOutByVoice());
    if (!recogniser) return 1;
    const bool both = !turnsOf.contains(mode);
    const auto& turns = turnsOf.at(both ? "turns" : mode);
    std::ifstream in(list);
    unsigned number = 0;
    for (std::string line; std::getline(in, line); ++number) {
        if (number % selection.parts != selection.part) continue;
        const auto entry = fieldsOf(line);
        const auto read = agent::readWav(entry.at(0));
        const auto* recorded = std::get_if<agent::Samples>(&read);
        if (recorded == nullptr) {
            std::cerr << std::get<std::string>(read) << '\n';
            continue;
        }
        const agent::Samples samples = inRoom(*recorded);
        for (std::size_t turn = 0; turn < turns.size(); ++turn) {
            if (!both && number / selection.parts % turns.size() != turn) continue;
            const auto& [name, decibels] = turns[turn];
            decode(*recogniser, entry, decibels ? withNoise(samples, number, *decibels) : samples, name);
        }
    }
    return 0;
}

std::vector<Row> readRows(const std::string& path, const Vocabulary& commands, bool withTranscripts) {
    const auto dictionary = agent::Dictionary::read(agent::HearingModel().dictionary);
    if (!dictionary) return {};
    std::vector<agent::CommandGraph> graphs;
    for (const std::string& grammar : commands.grammars)
        graphs.push_back(agent::makeCommandGraph(grammar, *dictionary, agent::soundOutByVoice()));
    const agent::VoiceVocabulary voices({commands.grammars.begin(), commands.grammars.end()});
    std::vector<Row> rows;
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);) {
        auto fields = fieldsOf(line);
        if (fields.size() < 4) continue;
        fields.resize(8);
        Row row{fields[0], fields[1], fields[2], std::stod(fields[3])};
        agent::Readings readings{readReading(fields[4]), readReading(fields[5])};
        if (withTranscripts) readings.transcript = readTranscript(fields[6]);
        row.atFirst = agent::candidates(graphs, readings).size();
        if (readings.transcript) {
            row.text = readings.transcript->text;
            readings.slower = readTranscript(fields[7]);
        }
        row.candidates = agent::candidates(graphs, readings);
        // As the program does: the same words may serve several commands.
        for (agent::Candidate& candidate : row.candidates) {
            if (const auto heard = voices.recognise(candidate.words, [](std::size_t) { return true; }))
                candidate.command = heard->command;
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

/// The likelihood above which so many of the phrases that are no command pass, all of their kinds counting
/// the same, however many there are of each.
double limitFor(double mayPass, const std::vector<Row>& rows, const std::vector<Taken>& taken) {
    std::map<std::string, double> kinds;
    for (const Row& row : rows) {
        if (!row.isCommand()) ++kinds[row.meant];
    }
    std::vector<std::pair<double, double>> shares;  // from the likelihood on that it passes with
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (!rows[i].isCommand())
            shares.emplace_back(taken[i].likelihood,
                                1 / kinds.at(rows[i].meant) / static_cast<double>(kinds.size()));
    }
    std::ranges::sort(shares, std::greater());
    double passing = 0;
    for (const auto& [likelihood, share] : shares) {
        passing += share;
        if (passing > mayPass) return likelihood;
    }
    return 0;
}

bool isRight(const Vocabulary& commands, const Row& row, const Taken& taken) {
    return taken.candidate != nullptr && commands.names.at(taken.candidate->command) == row.meant;
}

double logOdds(double likelihood) {
    return std::log(likelihood / (1 - likelihood));
}

int learnFrom(const std::string& path, bool withTranscripts) {
    constexpr double mayPass = 0.10;
    const Vocabulary commands = vocabulary();
    const std::vector<Row> rows = readRows(path, commands, withTranscripts);
    std::vector<Example> examples;
    for (const Row& row : rows) {
        for (const agent::Candidate& candidate : row.candidates)
            examples.push_back(
                {candidate.signals, commands.names.at(candidate.command) == row.meant, row.voice()});
    }
    const std::vector<double> likelihoods = crossValidate(examples);
    std::vector<Taken> taken;
    std::size_t next = 0;
    for (const Row& row : rows) {
        taken.push_back(likeliest(row, std::span(likelihoods).subspan(next), row.candidates.size()));
        next += row.candidates.size();
    }
    const double limit = limitFor(mayPass, rows, taken);
    std::map<std::string, std::pair<int, int>> passing;  // how many, and of how many
    for (std::size_t i = 0; i < rows.size(); ++i) {
        auto& [some, all] = passing[rows[i].isCommand() ? "commands" : rows[i].meant];
        ++all;
        some += taken[i].likelihood > limit && (!rows[i].isCommand() || isRight(commands, rows[i], taken[i]))
                    ? 1
                    : 0;
    }
    for (const auto& [kind, counts] : passing)
        std::cout << "// " << kind << ": " << counts.first << " of " << counts.second << " pass\n";
    const agent::JudgeWeights weights = learn(examples);
    std::cout << "constexpr JudgeWeights weightsWith" << (withTranscripts ? "" : "out") << "Transcript{\n    "
              << weights.bias - logOdds(limit) << ",\n    {";
    for (std::size_t i = 0; i < weights.weights.size(); ++i)
        std::cout << (i > 0 ? ", " : "") << weights.weights.at(i);
    std::cout << "}};\n";
    return 0;
}

bool passes(const Taken& taken) {
    return agent::scoreOf(taken.likelihood) > agent::noCommandScore;
}

/// What a row is taken for by the weights as they are.
Taken judged(const Row& row, bool withTranscripts) {
    std::vector<double> likelihoods;
    for (const agent::Candidate& candidate : row.candidates)
        likelihoods.push_back(agent::judgeWeights(withTranscripts).likelihood(candidate.signals));
    const Taken first = likeliest(row, likelihoods, row.atFirst);
    return agent::isUnclear(first.likelihood) ? likeliest(row, likelihoods, row.candidates.size()) : first;
}

int check(const std::string& path, bool withTranscripts) {
    struct Count {
        int all = 0, rightCommand = 0, accepted = 0;
    };
    std::map<std::string, Count> counts;
    double seconds = 0;
    const Vocabulary commands = vocabulary();
    const auto rows = readRows(path, commands, withTranscripts);
    for (const Row& row : rows) {
        const Taken taken = judged(row, withTranscripts);
        const bool right = row.isCommand() && isRight(commands, row, taken);
        for (const std::string& detail : {std::string("all"), row.condition, row.voice()}) {
            Count& count = counts[(row.isCommand() ? "commands, " : row.meant + ", ") + detail];
            ++count.all;
            count.rightCommand += right ? 1 : 0;
            count.accepted += passes(taken) && (!row.isCommand() || right) ? 1 : 0;
        }
        seconds += row.seconds;
    }
    std::cout << std::fixed << std::setprecision(1);
    for (const auto& [group, count] : counts) {
        std::cout << group << '\t' << count.all << '\t' << 100.0 * count.rightCommand / count.all << '\t'
                  << 100.0 * count.accepted / count.all << '\n';
    }
    std::cout << "milliseconds a phrase\t" << 1000 * seconds / static_cast<double>(rows.size()) << '\n';
    return 0;
}

int faults(const std::string& path, bool withTranscripts) {
    const Vocabulary commands = vocabulary();
    for (const Row& row : readRows(path, commands, withTranscripts)) {
        const Taken taken = judged(row, withTranscripts);
        if (passes(taken) ? isRight(commands, row, taken) : !row.isCommand()) continue;
        std::cout << row.file.substr(row.file.rfind('/') + 1) << '\t' << row.condition << '\t';
        if (taken.candidate != nullptr) std::cout << commands.names.at(taken.candidate->command);
        std::cout << '\t' << row.text << '\t' << std::setprecision(3) << taken.likelihood;
        if (taken.candidate != nullptr) {
            for (const double signal : taken.candidate->signals) std::cout << ' ' << signal;
        }
        std::cout << '\n';
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const std::string what = arguments.size() > 1 ? arguments[0] : "";
    if (what == "decode") {
        Selection selection;
        if (arguments.size() > 4)
            selection = {static_cast<unsigned>(std::stoul(arguments[3])),
                         static_cast<unsigned>(std::max(1UL, std::stoul(arguments[4])))};
        return decodeAll(arguments[1], arguments.size() > 2 ? arguments[2] : "both", selection);
    }
    const bool withTranscripts = arguments.size() < 3 || arguments[2] != "sounds";
    if (what == "faults") return faults(arguments[1], withTranscripts);
    if (what == "learn") return learnFrom(arguments[1], withTranscripts);
    if (what == "check") return check(arguments[1], withTranscripts);
    std::cerr
        << "usage: velmora-hearing decode LIST [both|turns|varied] [PART PARTS], or learn, check or faults "
           "READINGS [sounds]\n";
    return 2;
}
