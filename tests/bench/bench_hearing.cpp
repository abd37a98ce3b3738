// How well and how soon the character understands what it has heard.

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <thread>

#include "agent/hearing/phrase_finder.h"
#include "agent/hearing/phrase_reader.h"
#include "agent/hearing/recogniser.h"
#include "agent/hearing/sound_out.h"
#include "character/vocabulary.h"
#include "platform/engine/command_collection.h"
#include "tests/bench/benchmark.h"
#include "tests/hearing/spoken.h"
#include "tools/hearing/noise.h"

namespace {

using namespace velmora;
using namespace velmora::bench;

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

double milliseconds(Clock::duration taken) {
    return std::chrono::duration<double, std::milli>(taken).count();
}

struct Phrase {
    const char* words;
    const char* command;  ///< empty: it is none
};
constexpr std::array phrases{
    Phrase{"check mail", "Check Mail"},
    Phrase{"show calculator program", "Calculator"},
    Phrase{"tell a joke", "Tell joke"},
    Phrase{"open the general menu please", "General"},
    Phrase{"move to mouse", "MovetoMouse"},
    Phrase{"messenger log off", "Messenger Log Off"},
    Phrase{"open c d player", "CD Player"},
    Phrase{"read selection", "Read Selection"},
    Phrase{"what a lovely day for a walk it is", ""},
    Phrase{"check nail", ""},
    Phrase{"open calm lander", ""},
    Phrase{"the sun goes down behind the hills", ""},
    Phrase{"tell me about your holiday", ""},
    Phrase{"start the washing machine", ""},
};
constexpr std::array speakers{"en-us+f4", "en-gb-x-rp+m5", "en-us+adam"};
constexpr double roomNoise = 20;  // decibels below the voice

std::string percent(int count, int all) {
    return std::to_string(count).append(" of ").append(std::to_string(all));
}

/// How often the right thing is understood.
void reportRates(agent::Recogniser& recogniser, const std::vector<std::string>& names) {
    int commands = 0, understood = 0, others = 0, mistaken = 0;
    unsigned seed = 0;
    for (const Phrase& phrase : phrases) {
        for (const char* speaker : speakers) {
            const bool command = *phrase.command != '\0';
            agent::Samples samples = test::spoken(phrase.words, speaker);
            if (++seed % 2 == 0) samples = hearing::withNoise(std::move(samples), seed, roomNoise);
            bool passes = false;
            for (const agent::Samples& piece : agent::findPhrases(samples)) {
                const auto heard = recogniser.recognise(piece);
                passes = heard && heard->command && heard->score > agent::noCommandScore &&
                         (!command || names.at(*heard->command) == phrase.command);
            }
            ++(command ? commands : others);
            if (passes) ++(command ? understood : mistaken);
        }
    }
    report("commands understood", 100.0 * understood / commands, "%", percent(understood, commands));
    report("other phrases taken for commands", 100.0 * mistaken / others, "%", percent(mistaken, others));
}

/// Keeps a core busy as long as it lives.
class BusyCore {
public:
    BusyCore()
        : thread_([this](const std::stop_token& stop) {
              while (!stop.stop_requested()) ++turns_;
          }) {}

private:
    std::atomic<unsigned> turns_ = 0;
    std::jthread thread_;
};

/// Speaks the samples to a reader as fast as a person does. Returns how long after the last sound the answer
/// came; with `lettingGo`, the speaker lets the key go a tenth of a second after the last sound.
double answerTime(agent::Recogniser& recogniser, const agent::Samples& samples, bool lettingGo) {
    constexpr std::size_t piece = agent::hearingRate / 50;
    const auto loud = std::ranges::find_if(samples.rbegin(), samples.rend(),
                                           [](int sample) { return std::abs(sample) > 300; });
    const auto spoken = static_cast<std::size_t>(samples.rend() - loud);
    agent::PhraseReader reader(
        [&recogniser](const agent::Samples& phrase, const std::stop_token& stop) {
            return recogniser.recognise(phrase, stop);
        },
        [&recogniser](const agent::Samples& beginning, const std::stop_token& stop) {
            recogniser.readAhead(beginning, stop);
        });
    const auto start = Clock::now();
    bool ended = false;
    for (std::size_t at = 0; !ended && at + piece <= samples.size(); at += piece) {
        std::this_thread::sleep_until(start + 20ms * (at / piece + 1));
        ended = reader.feed(std::span(samples).subspan(at, piece));
        if (!ended && lettingGo && at > spoken + agent::hearingRate / 10) break;
    }
    if (!ended) reader.finish();
    reader.result();
    const double ofSpeech = 1000.0 * static_cast<double>(spoken) / agent::hearingRate;
    return milliseconds(Clock::now() - start) - ofSpeech;
}

void reportTimes(agent::Recogniser& recogniser) {
    const std::vector<BusyCore> busy(2);
    for (const char* words : {"check mail", "show calculator program", "tell me about your holiday",
                              "what a lovely day for a walk it is"}) {
        agent::Samples samples = test::spoken(words);
        for (const bool lettingGo : {true, false}) {
            constexpr int runs = 7;
            std::vector<double> taken;
            taken.reserve(runs);
            for (int run = 0; run < runs; ++run) taken.push_back(answerTime(recogniser, samples, lettingGo));
            report(std::string("\"").append(words).append("\", answer after the last sound"), median(taken),
                   "ms",
                   std::string(lettingGo ? "push to talk, " : "with a pause, ")
                       .append("two busy cores, median of ")
                       .append(std::to_string(runs)));
        }
    }
}

}  // namespace

void velmora::bench::benchmark(const std::filesystem::path&) {
    CommandCollection collection;
    InitCommands(collection, {});
    std::vector<std::string> grammars;
    std::vector<std::string> names;
    for (const AgentCommand& command : collection.all()) {
        grammars.push_back(command.Voice);
        names.push_back(command.Name);
    }
    const auto start = Clock::now();
    const auto recogniser = agent::Recogniser::load({}, grammars, agent::soundOutByVoice());
    if (!recogniser) throw std::runtime_error("the recogniser's model is missing");
    report("recogniser with all commands", milliseconds(Clock::now() - start), "ms",
           "once, before the first phrase");
    reportRates(*recogniser, names);
    reportTimes(*recogniser);
}
