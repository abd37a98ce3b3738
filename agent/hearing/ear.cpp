#include "agent/hearing/ear.h"

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <variant>

#include "agent/hearing/phrase_finder.h"
#include "agent/hearing/phrase_reader.h"
#include "agent/hearing/sound_out.h"
#include "agent/hearing/wav_reader.h"

namespace agent {
namespace {

struct Job {
    std::string path;  ///< empty: the microphone
    std::vector<EarCommand> commands;
    EarEvents events;
};

}  // namespace

/// What the ear's thread and its caller share.
class Ear::Worker : public std::enable_shared_from_this<Worker> {
public:
    explicit Worker(Needs needs) : needs_(std::move(needs)) {}

    // The caller's side.

    void begin(Job job) {
        const std::lock_guard lock(mutex_);
        ++turn_;
        finished_.reset();
        waiting_ = std::move(job);
        if (!std::exchange(running_, true))
            std::thread([self = shared_from_this()] { self->run(); }).detach();
        changed_.notify_all();
    }

    void finishPhrase() {
        const std::lock_guard lock(mutex_);
        finished_ = Clock::now();
    }

    void stop() {
        const std::lock_guard lock(mutex_);
        ++turn_;
        waiting_.reset();
    }

    /// Waits for the thread only so long: a device may hold it for ever.
    void quit() {
        constexpr std::chrono::seconds patience{3};
        std::unique_lock lock(mutex_);
        ++turn_;
        quitting_ = true;
        waiting_.reset();
        needs_.post = nullptr;
        changed_.notify_all();
        changed_.wait_for(lock, patience, [this] { return !running_; });
    }

private:
    using Turn = std::uint64_t;
    using Clock = std::chrono::steady_clock;

    void run() {
        Turn turn = 0;
        while (const auto job = nextJob(turn)) {
            const std::string failure = perform(*job, turn);
            if (job->events.onEnd) deliver(turn, [ended = job->events.onEnd, failure] { ended(failure); });
        }
        recogniser_.reset();
        const std::lock_guard lock(mutex_);
        running_ = false;
        changed_.notify_all();
    }

    std::optional<Job> nextJob(Turn& turn) {
        std::unique_lock lock(mutex_);
        const auto called = [this] { return quitting_ || waiting_; };
        if (recogniser_ && !changed_.wait_for(lock, needs_.patience, called)) {
            lock.unlock();
            recogniser_.reset();
            lock.lock();
        }
        changed_.wait(lock, called);
        turn = turn_;
        return quitting_ ? std::nullopt : std::exchange(waiting_, std::nullopt);
    }

    std::string perform(const Job& job, Turn turn) {
        if (job.path.empty()) return listen(job, turn);
        auto read = readWav(job.path);
        if (auto* reason = std::get_if<std::string>(&read)) return std::move(*reason);
        for (const Samples& phrase : findPhrases(std::get<Samples>(read))) {
            if (stopped(turn)) break;
            if (!learn(job.commands)) return cannotHear;
            deliver(turn, job.events.onSpeech);
            tell(recogniser_->recognise(phrase), job, turn);
        }
        return {};
    }

    std::string listen(const Job& job, Turn turn) {
        constexpr std::chrono::milliseconds pieceLength{20};
        constexpr int patience = 10'000 / pieceLength.count();
        const auto source = needs_.microphone ? needs_.microphone() : nullptr;
        if (!source) return "There is no microphone.";
        // A device may open long before it gives any sound. From then on, what we don't read waits in it.
        std::array<std::int16_t, hearingRate * pieceLength.count() / 1000> piece{};
        bool lost = !source->read(piece);
        auto heardUpTo = Clock::now();
        if (!lost) deliver(turn, job.events.onBegin);
        if (!learn(job.commands)) return cannotHear;
        PhraseReader reader(
            [this](const Samples& phrase, const std::stop_token& stop) {
                return recogniser_->recognise(phrase, stop);
            },
            [this](const Samples& beginning, const std::stop_token& stop) {
                recogniser_->readAhead(beginning, stop);
            });
        bool ended = false;
        bool spoken = false;
        for (int waited = 0; waited < patience; waited += reader.speaking() ? 0 : 1) {
            if (lost) return "The microphone is gone.";
            if (stopped(turn)) return {};
            ended = reader.feed(piece);
            if (reader.speaking() && !std::exchange(spoken, true)) deliver(turn, job.events.onSpeech);
            if (!ended && finishedBefore(heardUpTo)) {
                ended = reader.finish();
                break;
            }
            if (ended) break;
            lost = !source->read(piece);
            heardUpTo += pieceLength;
        }
        if (ended) tell(reader.result(), job, turn);
        return {};
    }

    bool learn(const std::vector<EarCommand>& commands) {
        if (recogniser_ && commands == learned_) return true;
        std::vector<std::string> grammars;
        grammars.reserve(commands.size());
        for (const EarCommand& command : commands) grammars.push_back(command.grammar);
        recogniser_ = Recogniser::load(needs_.model, grammars, soundOutByVoice());
        learned_ = commands;
        return recogniser_ != nullptr;
    }

    void tell(const std::optional<HeardPhrase>& heard, const Job& job, Turn turn) {
        if (!heard || !job.events.onPhrase) return;
        EarPhrase phrase{.words = heard->words, .name = {}, .score = heard->score, .runnersUp = {}};
        if (heard->command) phrase.name = job.commands.at(*heard->command).name;
        for (const std::size_t command : heard->runnersUp)
            phrase.runnersUp.push_back(job.commands.at(command).name);
        deliver(turn, [told = job.events.onPhrase, phrase] { told(phrase); });
    }

    bool stopped(Turn turn) {
        const std::lock_guard lock(mutex_);
        return turn != turn_;
    }

    bool finishedBefore(Clock::time_point time) {
        const std::lock_guard lock(mutex_);
        return finished_ && *finished_ <= time;
    }

    void deliver(Turn turn, std::function<void()> event) {
        const std::lock_guard lock(mutex_);
        if (!event || turn != turn_ || !needs_.post) return;
        needs_.post([self = shared_from_this(), turn, event = std::move(event)] {
            if (!self->stopped(turn)) event();
        });
    }

    static constexpr const char* cannotHear = "Speech can't be recognised on this machine.";

    Needs needs_;
    std::unique_ptr<Recogniser> recogniser_;  ///< the thread's, as is what follows
    std::vector<EarCommand> learned_;

    std::mutex mutex_;
    std::condition_variable changed_;
    std::optional<Job> waiting_;
    Turn turn_ = 0;  ///< counts what was begun or stopped: what belongs to an earlier turn is void
    std::optional<Clock::time_point> finished_;  ///< when whoever speaks has said it all
    bool running_ = false;
    bool quitting_ = false;
};

Ear::Ear(Needs needs) : worker_(std::make_shared<Worker>(std::move(needs))) {}

Ear::~Ear() {
    worker_->quit();
}

void Ear::listen(std::vector<EarCommand> commands, EarEvents events) {
    worker_->begin({{}, std::move(commands), std::move(events)});
}

void Ear::hear(const std::string& path, std::vector<EarCommand> commands, EarEvents events) {
    worker_->begin({path, std::move(commands), std::move(events)});
}

void Ear::finishPhrase() {
    worker_->finishPhrase();
}

void Ear::stop() {
    worker_->stop();
}

}  // namespace agent
