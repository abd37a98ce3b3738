#include "agent/hearing/wav_reader.h"

#include <samplerate.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

namespace agent {
namespace {

constexpr std::uint64_t longestSeconds = 600;

struct Format {
    unsigned kind = 0;  ///< 1: whole numbers, 3: floating point
    unsigned channels = 0;
    unsigned rate = 0;
    unsigned bits = 0;

    bool known() const {
        const bool whole = kind == 1 && (bits == 8 || bits == 16 || bits == 24 || bits == 32);
        return (whole || (kind == 3 && bits == 32)) && channels >= 1 && channels <= 8 && rate >= 1000 &&
               rate <= 384000;
    }
    std::size_t frameSize() const { return std::size_t{channels} * bits / 8; }
};

std::uint32_t little(std::string_view bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = bytes.size(); i-- > 0;) value = (value << 8) | static_cast<unsigned char>(bytes[i]);
    return value;
}

float sampleOf(std::string_view bytes, const Format& format) {
    const std::uint32_t value = little(bytes);
    if (format.kind == 3) {
        float sample = 0;
        std::memcpy(&sample, &value, sizeof sample);
        return std::isfinite(sample) ? std::clamp(sample, -1.0F, 1.0F) : 0;
    }
    if (format.bits == 8) return (static_cast<float>(value) - 128) / 128;
    const auto widened = static_cast<std::int32_t>(value << (32 - format.bits));
    return static_cast<float>(widened) / 2147483648.0F;
}

/// Turns pieces of sound of any rate into the recogniser's.
class Resampler {
public:
    explicit Resampler(unsigned rate)
        : ratio_(static_cast<double>(hearingRate) / rate), state_(src_new(SRC_SINC_FASTEST, 1, nullptr)) {}

    bool feed(std::span<const float> piece, bool last, Samples& into) {
        std::array<float, 4096> out{};
        SRC_DATA data{};
        data.src_ratio = ratio_;
        data.end_of_input = last ? 1 : 0;
        do {
            data.data_in = piece.data();
            data.input_frames = static_cast<long>(piece.size());
            data.data_out = out.data();
            data.output_frames = static_cast<long>(out.size());
            if (!state_ || src_process(state_.get(), &data) != 0) return false;
            piece = piece.subspan(static_cast<std::size_t>(data.input_frames_used));
            for (long i = 0; i < data.output_frames_gen; ++i) {
                const float sample = std::clamp(out.at(static_cast<std::size_t>(i)), -1.0F, 1.0F);
                into.push_back(static_cast<std::int16_t>(std::lround(sample * 32767)));
            }
        } while (!piece.empty() || data.output_frames_gen > 0);
        return true;
    }

private:
    struct Delete {
        void operator()(SRC_STATE* state) const { src_delete(state); }
    };
    double ratio_;
    std::unique_ptr<SRC_STATE, Delete> state_;
};

std::optional<std::string> readBytes(std::ifstream& file, std::size_t count) {
    std::string bytes(count, '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(count));
    if (static_cast<std::size_t>(file.gcount()) != count) return {};
    return bytes;
}

/// Reads up to the sound itself. Returns how many bytes of it the header promises.
std::optional<std::uint64_t> findSound(std::ifstream& file, Format& format) {
    constexpr std::size_t formatSize = 16;
    constexpr std::size_t kindAt = 24;  // in the longer format chunk
    constexpr unsigned extensible = 0xfffe;
    const auto riff = readBytes(file, 12);
    if (!riff || !riff->starts_with("RIFF") || riff->substr(8) != "WAVE") return {};
    while (const auto chunk = readBytes(file, 8)) {
        const std::uint64_t size = little(std::string_view(*chunk).substr(4));
        if (chunk->starts_with("data")) return size;
        std::uint64_t skip = size + size % 2;
        if (chunk->starts_with("fmt ")) {
            const auto fields = readBytes(file, std::min<std::size_t>(size, 40));
            if (!fields || fields->size() < formatSize) return {};
            const std::string_view text = *fields;
            format = {little(text.substr(0, 2)), little(text.substr(2, 2)), little(text.substr(4, 4)),
                      little(text.substr(14, 2))};
            if (format.kind == extensible && text.size() >= kindAt + 2)
                format.kind = little(text.substr(kindAt, 2));
            skip -= fields->size();
        }
        file.seekg(static_cast<std::streamoff>(skip), std::ios::cur);
    }
    return {};
}

std::variant<Samples, std::string> readSound(std::ifstream& file, std::uint64_t bytes, const Format& format) {
    constexpr std::size_t framesAtOnce = 4096;
    Samples samples;
    Resampler resampler(format.rate);
    std::string block(framesAtOnce * format.frameSize(), '\0');
    std::vector<float> mixed;
    for (bool last = false; !last;) {
        const auto wanted = std::min<std::uint64_t>(block.size(), bytes);
        file.read(block.data(), static_cast<std::streamsize>(wanted));
        const auto got = static_cast<std::size_t>(file.gcount());
        bytes -= got;
        last = got < block.size();
        mixed.clear();
        const std::size_t width = format.bits / 8;
        for (std::size_t frame = 0; frame + format.frameSize() <= got; frame += format.frameSize()) {
            float sum = 0;
            for (std::size_t channel = 0; channel < format.channels; ++channel)
                sum += sampleOf(std::string_view(block).substr(frame + channel * width, width), format);
            mixed.push_back(sum / static_cast<float>(format.channels));
        }
        if (!resampler.feed(mixed, last, samples)) return "the sound can't be resampled";
    }
    return samples;
}

}  // namespace

std::variant<Samples, std::string> readWav(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return "no such file: " + path;
    const std::uint64_t size = std::filesystem::file_size(path, error);
    std::ifstream file(path, std::ios::binary);
    if (error || !file) return "can't be read: " + path;
    Format format;
    const auto promised = findSound(file, format);
    if (!promised || !format.known()) return "not a WAV file of plain samples: " + path;
    const auto begin = static_cast<std::uint64_t>(std::max<std::streamoff>(file.tellg(), 0));
    const std::uint64_t held = size > begin ? std::min(*promised, size - begin) : 0;
    if (held / format.frameSize() / format.rate >= longestSeconds) return "longer than ten minutes: " + path;
    return readSound(file, held, format);
}

}  // namespace agent
