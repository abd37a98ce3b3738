#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <limits>
#include <string_view>
#include <utility>

#include "agent/voice/audio_sink.h"

namespace agent {
namespace {

struct Close {
    void operator()(std::FILE* file) const {
        if (std::fclose(file) != 0) return;  // nothing is left to tell it to
    }
};
using File = std::unique_ptr<std::FILE, Close>;

constexpr std::size_t headerSize = 44;
using Header = std::array<char, headerSize>;

void put(Header& header, std::size_t at, std::string_view text) {
    for (const char c : text) header.at(at++) = c;
}

void put(Header& header, std::size_t at, std::uint32_t value, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i) header.at(at + i) = static_cast<char>((value >> (8 * i)) & 0xff);
}

Header makeHeader(std::uint32_t sampleRate, std::uint32_t dataSize) {
    constexpr std::uint32_t sampleSize = 2;
    Header header{};
    put(header, 0, "RIFF");
    put(header, 4, dataSize + headerSize - 8, 4);
    put(header, 8, "WAVEfmt ");
    put(header, 16, 16, 4);  // size of the format
    put(header, 20, 1, 2);   // plain samples
    put(header, 22, 1, 2);   // one channel
    put(header, 24, sampleRate, 4);
    put(header, 28, sampleRate * sampleSize, 4);
    put(header, 32, sampleSize, 2);
    put(header, 34, sampleSize * 8, 2);
    put(header, 36, "data");
    put(header, 40, dataSize, 4);
    return header;
}

class WavSink : public AudioSink {
public:
    WavSink(File file, std::uint32_t dataSize, int sampleRate)
        : file_(std::move(file)), dataSize_(dataSize), sampleRate_(static_cast<std::uint32_t>(sampleRate)) {}

    bool write(std::span<const std::int16_t> samples) override {
        std::string bytes;
        for (const std::int16_t sample : samples) {
            bytes += static_cast<char>(sample & 0xff);
            bytes += static_cast<char>((sample >> 8) & 0xff);
        }
        if (dataSize_ > std::numeric_limits<std::uint32_t>::max() - headerSize - bytes.size()) return false;
        if (!putAt(static_cast<long>(headerSize + dataSize_), bytes)) return false;
        dataSize_ += static_cast<std::uint32_t>(bytes.size());
        return writeHeader();
    }

    // Samples first, then the header that counts them: the file can be played at any moment.
    bool writeHeader() {
        const Header header = makeHeader(sampleRate_, dataSize_);
        return putAt(0, {header.data(), header.size()});
    }

    std::optional<std::chrono::microseconds> delay() override { return std::nullopt; }

    void drop(std::size_t unheard) override {
        dataSize_ -= std::min(dataSize_, static_cast<std::uint32_t>(unheard * sizeof(std::int16_t)));
        if (writeHeader() &&
            ftruncate(fileno(file_.get()), static_cast<off_t>(headerSize + dataSize_)) != 0) {
            return;  // the header alone tells where the sound ends
        }
    }

private:
    bool putAt(long position, std::string_view bytes) {
        return std::fseek(file_.get(), position, SEEK_SET) == 0 &&
               std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) == bytes.size() &&
               std::fflush(file_.get()) == 0;
    }

    File file_;
    std::uint32_t dataSize_;
    std::uint32_t sampleRate_;
};

}  // namespace

std::unique_ptr<AudioSink> openWav(const std::string& path, bool append, int sampleRate) {
    File file(std::fopen(path.c_str(), append ? "r+b" : "w+b"));
    if (!file) return nullptr;
    long size = 0;
    if (append && std::fseek(file.get(), 0, SEEK_END) == 0) size = std::ftell(file.get());
    const auto header = static_cast<long>(headerSize);
    const auto dataSize = static_cast<std::uint32_t>(size > header ? size - header : 0);
    auto sink = std::make_unique<WavSink>(std::move(file), dataSize, sampleRate);
    if (!sink->writeHeader()) return nullptr;
    return sink;
}

}  // namespace agent
