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
// A line of LIST is FILE<TAB>COMMAND, with -random, -near or -alike (but for a sound or two) for a phrase
// that is no command; `synthesise` writes such lists. Each file is read clean and with noise 20 dB below the
// voice (both; the default), or in these ways by turns, or varied: by turns clean and with noise 15, 20 and
// 25 dB below.

#include <algorithm>
#include <ctime>
#include <fstream>
#include <functional>
#include <iomanip>
#include <iostream>
#include <map>
#include <optional>
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
    bool spoken = false;  ///< whether a command was heard; without one, what follows is empty
    agent::Evidence evidence{};

    bool isCommand() const { return !meant.starts_with(noCommand); }
    bool passes() const { return spoken && agent::scoreOf(agent::likelihood(evidence.signals)) > -60; }
};

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
        const agent::Readings readings = recogniser.read(phrase);
        const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        std::cout << entry.at(0) << '\t' << condition << '\t' << entry.at(1) << '\t' << seconds;
        for (const auto* reading : {&readings.command, &readings.words, &readings.sounds})
            std::cout << '\t' << readingText(*reading);
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

std::vector<Row> readRows(const std::string& path, const Vocabulary& commands) {
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
        fields.resize(7);
        Row row{fields[0], fields[1], fields[2], std::stod(fields[3])};
        const agent::Readings readings{readReading(fields[4]), readReading(fields[5]),
                                       readReading(fields[6])};
        row.spoken = readings.spoken();
        if (row.spoken) {
            row.evidence = agent::weigh(graphs, readings);
            if (const auto heard = voices.recognise(row.evidence.words, [](std::size_t) { return true; }))
                row.evidence.command = heard->command;
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

std::string voiceOf(const Row& row) {
    const std::string file = row.file.substr(row.file.rfind('/') + 1);
    return file.substr(0, file.find("--"));
}

/// How strict one has to be for this: of the phrases that are no command 17 in 100 pass, about as many as
/// commands are missed, with both of their
/// kinds counting the same, however many there are of each.
double strictness(const std::vector<Row>& rows, const std::vector<double>& sums) {
    std::map<std::string, double> kinds;
    for (const Row& row : rows) {
        if (!row.isCommand()) ++kinds[row.meant];
    }
    std::vector<std::pair<double, double>> shares;  // from the sum on that it passes with
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].spoken && !rows[i].isCommand())
            shares.emplace_back(sums[i], 1 / kinds.at(rows[i].meant) / static_cast<double>(kinds.size()));
    }
    std::ranges::sort(shares, std::greater());
    constexpr double mayPass = 0.17;
    double passing = 0;
    for (const auto& [sum, share] : shares) {
        passing += share;
        if (passing > mayPass) return sum;
    }
    return 0;
}

/// For each row its sum with weights that do not know its voice.
std::vector<double> sumsOf(const std::vector<Row>& rows, const std::vector<Example>& examples) {
    const std::vector<double> known = crossValidate(examples);
    std::vector<double> sums;
    std::size_t next = 0;
    for (const Row& row : rows) sums.push_back(row.spoken ? known.at(next++) : 0);
    return sums;
}

int learnFrom(const std::string& path) {
    std::vector<Example> examples;
    const Vocabulary commands = vocabulary();
    const std::vector<Row> rows = readRows(path, commands);
    const auto isRight = [&commands](const Row& row) {
        return row.spoken && commands.names.at(row.evidence.command) == row.meant;
    };
    for (const Row& row : rows) {
        if (row.spoken) examples.push_back({row.evidence.signals, isRight(row), voiceOf(row)});
    }
    const std::vector<double> sums = sumsOf(rows, examples);
    const double limit = strictness(rows, sums);
    std::map<std::string, std::pair<int, int>> passing;  // how many, and of how many
    for (std::size_t i = 0; i < rows.size(); ++i) {
        auto& [some, all] = passing[rows[i].isCommand() ? "commands" : rows[i].meant];
        ++all;
        some += rows[i].spoken && sums[i] > limit && (!rows[i].isCommand() || isRight(rows[i])) ? 1 : 0;
    }
    for (const auto& [kind, counts] : passing)
        std::cout << "// " << kind << ": " << counts.first << " of " << counts.second << " pass\n";
    const Weights weights = learn(examples);
    std::cout << "constexpr double judgeBias = " << weights.bias - limit
              << ";\nconstexpr Signals judgeWeights{";
    for (std::size_t i = 0; i < weights.weights.size(); ++i)
        std::cout << (i > 0 ? ", " : "") << weights.weights.at(i);
    std::cout << "};\n";
    return 0;
}

int check(const std::string& path) {
    struct Count {
        int all = 0, rightCommand = 0, accepted = 0;
    };
    std::map<std::string, Count> counts;
    double seconds = 0;
    const Vocabulary commands = vocabulary();
    const auto rows = readRows(path, commands);
    for (const Row& row : rows) {
        const bool command = row.isCommand();
        const bool right = command && row.spoken && commands.names.at(row.evidence.command) == row.meant;
        for (const std::string& detail : {std::string("all"), row.condition, voiceOf(row)}) {
            Count& count = counts[(command ? "commands, " : row.meant + ", ") + detail];
            ++count.all;
            count.rightCommand += right ? 1 : 0;
            count.accepted += row.passes() && (!command || right) ? 1 : 0;
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

int faults(const std::string& path) {
    const Vocabulary commands = vocabulary();
    for (const Row& row : readRows(path, commands)) {
        const std::string heard = row.spoken ? commands.names.at(row.evidence.command) : "";
        if (row.passes() ? heard == row.meant : !row.isCommand()) continue;
        std::cout << row.file.substr(row.file.rfind('/') + 1) << '\t' << row.condition << '\t' << heard
                  << '\t' << row.evidence.freeWords << '\t' << std::setprecision(3);
        for (const double signal : row.evidence.signals) std::cout << signal << ' ';
        std::cout << '\n';
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const std::string what = arguments.size() > 1 ? arguments[0] : "";
    if (what == "faults") return faults(arguments[1]);
    if (what == "decode") {
        Selection selection;
        if (arguments.size() > 4)
            selection = {static_cast<unsigned>(std::stoul(arguments[3])),
                         static_cast<unsigned>(std::max(1UL, std::stoul(arguments[4])))};
        return decodeAll(arguments[1], arguments.size() > 2 ? arguments[2] : "both", selection);
    }
    if (what == "learn") return learnFrom(arguments[1]);
    if (what == "check") return check(arguments[1]);
    std::cerr << "usage: velmora-hearing decode LIST [both|turns|varied] [PART PARTS] | learn READINGS | "
                 "check READINGS | faults "
                 "READINGS\n";
    return 2;
}
