#include "agent/voice/recordings.h"

#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

#include "agent/voice/resampler.h"
#include "agent/voice/wav_file.h"

namespace agent {
namespace {

class WavSink : public AudioSink {
public:
    WavSink(std::shared_ptr<WavFile> file, int sampleRate)
        : file_(std::move(file)), resampler_(sampleRate, file_->sampleRate()) {}
    ~WavSink() override { file_->end(); }
    WavSink(const WavSink&) = delete;
    WavSink& operator=(const WavSink&) = delete;

    bool write(std::span<const std::int16_t> samples) override {
        return file_->write(resampler_.resample(samples));
    }
    std::optional<std::chrono::microseconds> delay() override { return std::nullopt; }
    void drop(std::size_t unheard) override { file_->drop(resampler_.scaled(unheard)); }

private:
    std::shared_ptr<WavFile> file_;
    Resampler resampler_;
};

// Keeps what is said until another voice is done with the file.
class WaitingSink : public AudioSink {
public:
    WaitingSink(std::shared_ptr<WavFile> file, int sampleRate)
        : file_(std::move(file)), resampler_(sampleRate, file_->sampleRate()) {}
    ~WaitingSink() override { file_->putBehind(samples_); }
    WaitingSink(const WaitingSink&) = delete;
    WaitingSink& operator=(const WaitingSink&) = delete;

    bool write(std::span<const std::int16_t> samples) override {
        const auto more = resampler_.resample(samples);
        samples_.insert(samples_.end(), more.begin(), more.end());
        return true;
    }
    std::optional<std::chrono::microseconds> delay() override { return std::nullopt; }
    void drop(std::size_t unheard) override {
        samples_.resize(samples_.size() - std::min(samples_.size(), resampler_.scaled(unheard)));
    }

private:
    std::shared_ptr<WavFile> file_;
    Resampler resampler_;
    std::vector<std::int16_t> samples_;
};

std::unique_ptr<AudioSink> open(const std::shared_ptr<WavFile>& file, int sampleRate) {
    switch (file->begin(sampleRate)) {
        case WavFile::Begun::yes:
            return std::make_unique<WavSink>(file, sampleRate);
        case WavFile::Begun::taken:
            return std::make_unique<WaitingSink>(file, sampleRate);
        case WavFile::Begun::failed:
            break;
    }
    return nullptr;
}

}  // namespace

Recordings::Recordings(std::function<void(const std::string&)> report) : report_(std::move(report)) {}

OpenSink Recordings::file(const std::string& path) {
    std::error_code error;
    const auto absolute = std::filesystem::absolute(path, error);
    auto& file = files_[error ? path : absolute.lexically_normal().string()];
    if (!file) file = std::make_shared<WavFile>(path, report_);
    return [file](int sampleRate) { return open(file, sampleRate); };
}

}  // namespace agent
