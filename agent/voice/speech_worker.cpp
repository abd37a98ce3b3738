#include "agent/voice/speech_worker.h"

#include <cstddef>
#include <deque>
#include <utility>
#include <vector>

#include "agent/voice/player.h"
#include "agent/voice/synthesis_ahead.h"

namespace agent {
namespace {

// What an engine fetches for the first of all words is there before a line is waited for.
void warmUp(Synthesizer& synthesizer, const VoiceParameters& parameters) {
    const std::vector<SpokenWord> word{{"a", 0}};
    synthesizer.speak({.words = word}, parameters,
                      {.receive = [](const Utterance&) {}, .stopped = [] { return true; }});
}

}  // namespace

SpeechWorker::SpeechWorker(VoiceParameters parameters, OpenSink open, Post post)
    : parameters_(std::move(parameters)), open_(std::move(open)), post_(std::move(post)) {}

void SpeechWorker::speak(SpeechJob job) {
    {
        const std::lock_guard lock(mutex_);
        ++turn_;
        waiting_ = std::move(job);
    }
    changed_.notify_all();
}

void SpeechWorker::stop() {
    {
        const std::lock_guard lock(mutex_);
        ++turn_;
        waiting_.reset();
    }
    changed_.notify_all();
}

bool SpeechWorker::quit(std::chrono::milliseconds patience) {
    std::unique_lock lock(mutex_);
    ++turn_;
    quitting_ = true;
    waiting_.reset();
    post_ = nullptr;
    changed_.notify_all();
    return changed_.wait_for(lock, patience, [this] { return ended_; });
}

void SpeechWorker::run() {
    {
        const auto synthesizer = openSynthesizer(parameters_);
        if (!isAwaited()) warmUp(*synthesizer, parameters_);
        // The next line does not wait until the engine lets go of the one before.
        constexpr std::size_t mostGivenUp = 2;
        std::deque<std::unique_ptr<SynthesisAhead>> givenUp;
        Turn turn = 0;
        while (const auto job = nextJob(turn)) {
            auto speech =
                std::make_unique<SynthesisAhead>(*synthesizer, job->line, parameters_, [this] { nudge(); });
            say(*speech, synthesizer->sampleRate(), *job, turn);
            deliver(turn, job->events.onEnd);
            speech->giveUp();
            givenUp.push_back(std::move(speech));
            std::erase_if(givenUp, [](const auto& line) { return line->ended(); });
            if (givenUp.size() > mostGivenUp) givenUp.pop_front();
        }
    }
    const std::lock_guard lock(mutex_);
    ended_ = true;
    changed_.notify_all();
}

bool SpeechWorker::isAwaited() {
    const std::lock_guard lock(mutex_);
    return quitting_ || waiting_;
}

std::optional<SpeechJob> SpeechWorker::nextJob(Turn& turn) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return quitting_ || waiting_; });
    turn = turn_;
    return quitting_ ? std::nullopt : std::exchange(waiting_, std::nullopt);
}

void SpeechWorker::say(SynthesisAhead& speech, int sampleRate, const SpeechJob& job, Turn turn) {
    constexpr std::chrono::milliseconds enough{1000};  // for the next phrase to be begun
    Player player(open_(sampleRate), {.sampleRate = sampleRate,
                                      .now = &std::chrono::steady_clock::now,
                                      .tell = [&](const SpeechEvent& event) { tell(job, event, turn); }});
    while (!stopped(turn)) {
        while (player.left() < enough) {
            auto piece = speech.take();
            if (!piece) break;
            player.add(std::move(*piece));
        }
        if (speech.finished()) player.close();
        const auto next = player.pump();
        if (player.done()) return;
        waitUntil(next, turn);
    }
    player.stop();
}

void SpeechWorker::tell(const SpeechJob& job, const SpeechEvent& event, Turn turn) {
    const VoiceEvents& events = job.events;
    if (const auto* mouth = std::get_if<Mouth>(&event.what)) {
        if (events.onMouth) deliver(turn, [told = events.onMouth, shape = *mouth] { told(shape); });
        return;
    }
    const std::size_t word = std::get<std::size_t>(event.what);
    if (word >= job.line->words.size()) return;
    const std::uint32_t bookmark = job.line->words[word].bookmark;
    if (bookmark != 0 && events.onBookmark)
        deliver(turn, [told = events.onBookmark, bookmark] { told(bookmark); });
    if (events.onWord) deliver(turn, [told = events.onWord, word] { told(word); });
}

bool SpeechWorker::stopped(Turn turn) {
    const std::lock_guard lock(mutex_);
    return turn != turn_;
}

void SpeechWorker::nudge() {
    {
        const std::lock_guard lock(mutex_);
        nudged_ = true;
    }
    changed_.notify_all();
}

void SpeechWorker::waitUntil(std::chrono::steady_clock::time_point time, Turn turn) {
    std::unique_lock lock(mutex_);
    changed_.wait_until(lock, time, [this, turn] { return nudged_ || turn != turn_; });
    nudged_ = false;
}

void SpeechWorker::deliver(Turn turn, std::function<void()> event) {
    const std::lock_guard lock(mutex_);
    if (turn != turn_ || !post_ || !event) return;
    post_([self = shared_from_this(), turn, event = std::move(event)] {
        if (!self->stopped(turn)) event();
    });
}

}  // namespace agent
