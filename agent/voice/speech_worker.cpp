#include "agent/voice/speech_worker.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "agent/voice/player.h"
#include "agent/voice/ssml.h"

namespace agent {

SpeechWorker::SpeechWorker(VoiceParameters parameters, std::string device, Post post)
    : parameters_(std::move(parameters)), device_(std::move(device)), post_(std::move(post)) {}

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
        const Synthesizer synthesizer;
        Turn turn = 0;
        while (const auto job = nextJob(turn)) {
            say(synthesizer, *job, turn);
            deliver(turn, job->events.onEnd);
        }
    }
    const std::lock_guard lock(mutex_);
    ended_ = true;
    changed_.notify_all();
}

std::optional<SpeechJob> SpeechWorker::nextJob(Turn& turn) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return quitting_ || waiting_; });
    turn = turn_;
    return quitting_ ? std::nullopt : std::exchange(waiting_, std::nullopt);
}

std::unique_ptr<AudioSink> SpeechWorker::openSink(int rate, Turn turn) {
    constexpr std::string_view filePrefix = "file:";
    const auto wait = [this, turn](auto time) { waitUntil(time, turn); };
    std::unique_ptr<AudioSink> sink;
    if (device_.starts_with(filePrefix)) {
        sink = openWav(device_.substr(filePrefix.size()), fileBegun_, rate, wait);
        fileBegun_ = fileBegun_ || sink;
    } else if (device_ != "none") {
        sink = openPulse(rate);
        if (!sink) sink = openAlsa(rate);
    }
    return sink ? std::move(sink) : openSilence(rate, wait);
}

void SpeechWorker::say(const Synthesizer& synthesizer, const SpeechJob& job, Turn turn) {
    const auto cut = [this, turn] { return stopped(turn); };
    const auto wait = [this, turn](auto time) { waitUntil(time, turn); };
    const auto tell = [this, turn, &job](const SpeechEvent& event) {
        if (const auto* word = std::get_if<std::size_t>(&event.what)) {
            if (job.events.onWord) deliver(turn, [told = job.events.onWord, index = *word] { told(index); });
        } else if (job.events.onMouth) {
            deliver(turn, [told = job.events.onMouth, mouth = std::get<Mouth>(event.what)] { told(mouth); });
        }
    };
    const int rate = synthesizer.sampleRate();
    Player player(openSink(rate, turn), {.sampleRate = rate, .stopped = cut, .wait = wait, .tell = tell});
    const std::span<const SpokenWord> words = job.line.words;
    for (std::size_t first = 0; first < words.size() && !cut();) {
        const auto piece = words.subspan(first, sentenceLength(words.subspan(first)));
        player.play(synthesizer.synthesize({piece.begin(), piece.end()}, first, parameters_, cut));
        first += piece.size();
    }
    player.finish();
}

bool SpeechWorker::stopped(Turn turn) {
    const std::lock_guard lock(mutex_);
    return turn != turn_;
}

void SpeechWorker::waitUntil(std::chrono::steady_clock::time_point time, Turn turn) {
    std::unique_lock lock(mutex_);
    changed_.wait_until(lock, time, [this, turn] { return turn != turn_; });
}

void SpeechWorker::deliver(Turn turn, std::function<void()> event) {
    const std::lock_guard lock(mutex_);
    if (turn != turn_ || !post_ || !event) return;
    post_([self = shared_from_this(), turn, event = std::move(event)] {
        if (!self->stopped(turn)) event();
    });
}

}  // namespace agent
