// How soon a voice begins, how soon it falls silent, and how far words and mouth are from the sound.

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

#include "agent/voice/device_thread.h"
#include "agent/voice/phrases.h"
#include "agent/voice/pulse_server.h"
#include "agent/voice/speech_worker.h"
#include "agent/voice/voice.h"
#include "tests/bench/benchmark.h"
#include "tests/support/posted_steps.h"

namespace {

using namespace agent;
using velmora::PostedSteps;
using namespace velmora::bench;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Server = std::shared_ptr<PulseServer>;  // null: no sound

constexpr int runs = 21;
const char* const line =
    "You have a new message from Anna in your mailbox, and she wants to have lunch with you.";

double milliseconds(Clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

void runUntil(PostedSteps& loop, const std::function<bool()>& condition) {
    if (!loop.runUntil(condition)) throw std::runtime_error("the voice is stuck");
}

// What the device of the latest line was asked, and when. Shared with devices' threads, which may outlive
// their voice.
class Record {
public:
    // Returns the line's number.
    int begin() {
        const std::lock_guard lock(mutex_);
        firstSample_.reset();
        return ++line_;
    }
    void noteWritten(int number) {
        const std::lock_guard lock(mutex_);
        if (number == line_ && !firstSample_) firstSample_ = Clock::now();
    }
    void noteDropped(int number) {
        const std::lock_guard lock(mutex_);
        dropped_.try_emplace(number, Clock::now());
    }
    int line() const {
        const std::lock_guard lock(mutex_);
        return line_;
    }
    std::optional<Clock::time_point> firstSample() const {
        const std::lock_guard lock(mutex_);
        return firstSample_;
    }
    std::optional<Clock::time_point> dropped(int number) const {
        const std::lock_guard lock(mutex_);
        const auto found = dropped_.find(number);
        return found == dropped_.end() ? std::nullopt : std::optional(found->second);
    }

private:
    mutable std::mutex mutex_;
    int line_ = 0;
    std::optional<Clock::time_point> firstSample_;
    std::map<int, Clock::time_point> dropped_;
};

class RecordingDevice : public AudioDevice {
public:
    RecordingDevice(std::shared_ptr<Record> record, std::unique_ptr<AudioDevice> device)
        : record_(std::move(record)), device_(std::move(device)), line_(record_->begin()) {}

    std::optional<std::size_t> write(std::span<const std::int16_t> samples) override {
        const auto taken = device_->write(samples);
        if (taken.value_or(0) > 0) record_->noteWritten(line_);
        return taken;
    }
    Playback playback() override { return device_->playback(); }
    void drop() override {
        device_->drop();
        record_->noteDropped(line_);
    }

private:
    std::shared_ptr<Record> record_;
    std::unique_ptr<AudioDevice> device_;
    int line_;
};

// Takes everything, and leaves the time to the clock.
class RecordingSink : public AudioSink {
public:
    explicit RecordingSink(std::shared_ptr<Record> record)
        : record_(std::move(record)), line_(record_->begin()) {}

    bool write(std::span<const std::int16_t>) override {
        record_->noteWritten(line_);
        return true;
    }
    std::optional<std::chrono::microseconds> delay() override { return std::nullopt; }
    void drop(std::size_t) override { record_->noteDropped(line_); }

private:
    std::shared_ptr<Record> record_;
    int line_;
};

OpenSink recorded(const std::shared_ptr<Record>& record, const Server& server) {
    return [record, server](int rate) -> std::unique_ptr<AudioSink> {
        if (!server) return std::make_unique<RecordingSink>(record);
        const auto open = [record, server](int sampleRate) -> std::unique_ptr<AudioDevice> {
            auto device = server->open(sampleRate);
            return device ? std::make_unique<RecordingDevice>(record, std::move(device)) : nullptr;
        };
        return std::make_unique<DeviceThread>(open, rate);
    };
}

void firstSample(const std::string& name, const Server& server) {
    std::vector<double> times;
    const auto record = std::make_shared<Record>();
    PostedSteps loop;
    const auto voice = makeVoice({.name = name, .fallback = name}, recorded(record, server), loop.post());
    for (int run = -1; run < runs; ++run) {
        bool begun = false;
        const auto start = Clock::now();
        voice->speak(parseSpeech(line), {.onWord = [&](std::size_t) { begun = true; }});
        runUntil(loop, [&] { return begun; });
        // The first run loads the engine.
        if (run >= 0) times.push_back(milliseconds(record->firstSample().value() - start));
    }
    voice->stop();
    const std::string what = "first sample, " + name + (server ? ", PulseAudio" : ", no device");
    report(what, median(times), "ms", "median of " + std::to_string(runs) + ", until a device is given it");
    report(what + ", slowest", std::ranges::max(times), "ms", "of " + std::to_string(runs));
}

double processorTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// What the engine itself needs, however busy the machine is.
void workToBegin(const std::string& name, const std::string& text, const std::string& what) {
    const VoiceParameters parameters{.name = name, .fallback = name};
    const auto engine = openSynthesizer(parameters);
    const auto words = parseSpeech(text).words;
    const auto count = phraseLength(words, engine->limits().first);
    std::vector<double> times;
    for (int run = -1; run < runs; ++run) {
        bool begun = false;
        const double start = processorTime();
        engine->speak({.words = std::span(words).first(count), .endsSentence = false}, parameters,
                      {.receive =
                           [&](const Utterance&) {
                               if (!std::exchange(begun, true) && run >= 0)
                                   times.push_back(processorTime() - start);
                           },
                       .stopped = [&] { return begun; }});
    }
    report("processor time to the first sample" + what + ", " + name, median(times), "ms",
           "median of " + std::to_string(runs));
}

void stopping(const Server& server) {
    std::vector<double> times;
    const auto record = std::make_shared<Record>();
    PostedSteps loop;
    const auto voice =
        makeVoice({.name = "en-us", .fallback = "en-us"}, recorded(record, server), loop.post());
    for (int run = 0; run < runs; ++run) {
        bool told = false;
        voice->speak(parseSpeech(line), {.onWord = [&](std::size_t word) { told = word == 1; }});
        runUntil(loop, [&] { return told; });
        const int number = record->line();
        const auto start = Clock::now();
        voice->stop();
        bool ended = false;
        voice->speak({}, {.onEnd = [&] { ended = true; }});
        runUntil(loop, [&] { return ended; });
        while (!record->dropped(number)) {
            if (Clock::now() - start > 10s) throw std::runtime_error("the device does not stop");
            std::this_thread::yield();
        }
        times.push_back(milliseconds(record->dropped(number).value() - start));
    }
    report(server ? "stop, PulseAudio" : "stop, no device", std::ranges::max(times), "ms",
           "the slowest of " + std::to_string(runs) + ", until the device has dropped the rest");
}

// Against the moments at which the samples of the events are heard, if the first one came in time.
void alignment(const std::string& name, const Server& server) {
    std::vector<double> expected;
    const auto engine = openSynthesizer({.name = name, .fallback = name});
    const VoiceParameters parameters{.name = name, .fallback = name};
    const auto words = parseSpeech("Four words and more").words;
    std::size_t before = 0;
    engine->speak({.words = words}, parameters,
                  {.receive =
                       [&](const Utterance& piece) {
                           for (const auto& event : piece.events)
                               expected.push_back(1000.0 * static_cast<double>(before + event.sample) /
                                                  engine->sampleRate());
                           before += piece.samples.size();
                       },
                   .stopped = [] { return false; }});
    const auto record = std::make_shared<Record>();
    PostedSteps loop;
    const auto voice = makeVoice(parameters, recorded(record, server), loop.post());
    std::vector<Clock::time_point> told;
    bool ended = false;
    const auto note = [&](auto) { told.push_back(Clock::now()); };
    voice->speak(parseSpeech("Four words and more"),
                 {.onWord = note, .onMouth = note, .onEnd = [&] { ended = true; }});
    runUntil(loop, [&] { return ended; });
    if (told.size() != expected.size()) throw std::runtime_error("events are missing");
    std::vector<double> off;
    for (std::size_t i = 0; i < told.size(); ++i)
        off.push_back(milliseconds(told[i] - told[0]) - (expected[i] - expected[0]));
    const auto [least, most] = std::ranges::minmax(off);
    report("words and mouth against the sound, " + name + (server ? ", PulseAudio" : ", no device"),
           std::max(std::abs(least), std::abs(most)), "ms",
           "the worst of " + std::to_string(off.size()) + " events");
}

}  // namespace

void velmora::bench::benchmark(const std::filesystem::path&) {
    std::vector<std::string> names = installedVoices();
    names.insert(names.begin(), "en-us");
    auto server = std::make_shared<PulseServer>();
    if (!server->connect()) server.reset();
    for (const std::string& name : names) {
        workToBegin(name, line, "");
        workToBegin(name, std::string(40, '7'), " of 40 digits");
        firstSample(name, nullptr);
        if (server) firstSample(name, server);
    }
    for (const std::string& name : names) {
        alignment(name, nullptr);
        if (server) alignment(name, server);
    }
    stopping(nullptr);
    if (server) stopping(server);
}
