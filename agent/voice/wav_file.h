#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace agent {

/// A WAV file of one channel that grows. Several threads may use it; the first to begin has it until it ends.
class WavFile {
public:
    /// `report` gets a sentence about the first failure.
    WavFile(std::string path, std::function<void(const std::string& reason)> report);

    enum class Begun { yes, taken, failed };

    /// Takes the file, to write at its end: an older one is replaced, one that this has begun is gone on
    /// with. A new file gets the rate of whoever begins it.
    Begun begin(int sampleRate);

    /// Samples a second, once somebody has begun.
    int sampleRate();

    /// Writes samples at the end. False: there is no room for them; what stood there before is whole.
    bool write(std::span<const std::int16_t> samples);

    /// Forgets the last of the samples that were written since `begin`.
    void drop(std::size_t samples);

    /// Gives the file back, after what was to stand behind.
    void end();

    /// Has samples written as soon as the file is not taken, after somebody has begun. What can't be written
    /// is lost.
    void putBehind(std::span<const std::int16_t> samples);

private:
    struct Close {
        void operator()(std::FILE* file) const;
    };

    Begun open(int sampleRate);
    bool openFile(int sampleRate);
    bool append(std::span<const std::int16_t> samples);
    bool writeHeader();
    bool putAt(std::size_t position, std::string_view bytes);
    void cut();
    void fail();

    const std::string path_;
    const std::function<void(const std::string&)> report_;

    std::mutex mutex_;
    std::unique_ptr<std::FILE, Close> file_;  ///< while it is taken; unbuffered
    bool begun_ = false;
    int sampleRate_ = 0;
    std::size_t size_ = 0;        ///< of the samples, in bytes
    std::size_t sizeBefore_ = 0;  ///< at `begin`
    std::vector<std::int16_t> behind_;
    bool reported_ = false;
};

}  // namespace agent
