#include "agent/voice/voice.h"

#include <thread>
#include <utility>

#include "agent/voice/recordings.h"
#include "agent/voice/speech_worker.h"

namespace agent {
namespace {

class ThreadedVoice : public Voice {
public:
    explicit ThreadedVoice(std::shared_ptr<SpeechWorker> worker)
        : worker_(std::move(worker)), thread_([shared = worker_] { shared->run(); }) {}

    ~ThreadedVoice() override {
        // Whatever hangs must not keep the program from ending.
        constexpr std::chrono::milliseconds patience{500};
        if (worker_->quit(patience)) {
            thread_.join();
        } else {
            thread_.detach();
        }
    }

    ThreadedVoice(const ThreadedVoice&) = delete;
    ThreadedVoice& operator=(const ThreadedVoice&) = delete;

    void speak(SpokenLine line, VoiceEvents events) override {
        worker_->speak({std::make_shared<const SpokenLine>(std::move(line)), std::move(events)});
    }

    void stop() override { worker_->stop(); }

private:
    std::shared_ptr<SpeechWorker> worker_;
    std::thread thread_;
};

}  // namespace

std::unique_ptr<Voice> makeVoice(const VoiceSettings& settings, const CharacterVoice& character, Post post) {
    VoiceParameters parameters{.name = settings.name.value_or(character.name),
                               .fallback = character.name,
                               .rate = settings.rate.value_or(character.rate),
                               .pitch = settings.pitch.value_or(character.pitch),
                               .range = character.range};
    Recordings own;
    return makeVoice(std::move(parameters),
                     outputDevice(settings.device, settings.recordings ? *settings.recordings : own),
                     std::move(post));
}

std::vector<std::string> installedVoices() {
    return installedFliteVoices();
}

std::unique_ptr<Voice> makeVoice(VoiceParameters parameters, OpenSink open, Post post) {
    return std::make_unique<ThreadedVoice>(
        std::make_shared<SpeechWorker>(std::move(parameters), std::move(open), std::move(post)));
}

}  // namespace agent
