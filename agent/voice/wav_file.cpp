#include "agent/voice/wav_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <limits>
#include <utility>

namespace agent {
namespace {

constexpr std::size_t sampleSize = sizeof(std::int16_t);
constexpr std::size_t headerSize = 44;
constexpr std::size_t largest = std::numeric_limits<std::uint32_t>::max() - headerSize;
using Header = std::array<char, headerSize>;

void put(Header& header, std::size_t at, std::string_view text) {
    for (const char c : text) header.at(at++) = c;
}

void put(Header& header, std::size_t at, std::size_t value, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i) header.at(at + i) = static_cast<char>((value >> (8 * i)) & 0xff);
}

Header makeHeader(int sampleRate, std::size_t dataSize) {
    const auto rate = static_cast<std::size_t>(sampleRate);
    Header header{};
    put(header, 0, "RIFF");
    put(header, 4, dataSize + headerSize - 8, 4);
    put(header, 8, "WAVEfmt ");
    put(header, 16, 16, 4);  // size of the format
    put(header, 20, 1, 2);   // plain samples
    put(header, 22, 1, 2);   // one channel
    put(header, 24, rate, 4);
    put(header, 28, rate * sampleSize, 4);
    put(header, 32, sampleSize, 2);
    put(header, 34, sampleSize * 8, 2);
    put(header, 36, "data");
    put(header, 40, dataSize, 4);
    return header;
}

std::string bytesOf(std::span<const std::int16_t> samples) {
    std::string bytes;
    bytes.reserve(samples.size() * sampleSize);
    for (const std::int16_t sample : samples) {
        bytes += static_cast<char>(sample & 0xff);
        bytes += static_cast<char>((sample >> 8) & 0xff);
    }
    return bytes;
}

}  // namespace

void WavFile::Close::operator()(std::FILE* file) const {
    if (std::fclose(file) != 0) return;  // each write has been checked
}

WavFile::WavFile(std::string path, std::function<void(const std::string&)> report)
    : path_(std::move(path)), report_(std::move(report)) {}

WavFile::Begun WavFile::begin(int sampleRate) {
    const std::lock_guard lock(mutex_);
    return file_ ? Begun::taken : open(sampleRate);
}

WavFile::Begun WavFile::open(int sampleRate) {
    if (openFile(sampleRate) && writeHeader()) {
        begun_ = true;
        sizeBefore_ = size_;
        return Begun::yes;
    }
    fail();
    file_.reset();
    return Begun::failed;
}

bool WavFile::openFile(int sampleRate) {
    if (begun_) file_.reset(std::fopen(path_.c_str(), "r+b"));
    // Whoever takes the file away gets a new one.
    if (!begun_ || (!file_ && errno == ENOENT)) {
        file_.reset(std::fopen(path_.c_str(), "w+b"));
        sampleRate_ = sampleRate;
        size_ = 0;
    }
    struct stat found {};
    if (!file_ || fstat(fileno(file_.get()), &found) != 0) return false;
    errno = EINVAL;
    if (!S_ISREG(found.st_mode)) return false;
    const auto length = static_cast<std::size_t>(found.st_size);
    size_ = std::min(size_, (length - std::min(length, headerSize)) / sampleSize * sampleSize);
    return std::setvbuf(file_.get(), nullptr, _IONBF, 0) == 0;
}

int WavFile::sampleRate() {
    const std::lock_guard lock(mutex_);
    return sampleRate_;
}

bool WavFile::write(std::span<const std::int16_t> samples) {
    const std::lock_guard lock(mutex_);
    return append(samples);
}

// Samples first, then the header that counts them: the file can be played at any moment.
bool WavFile::append(std::span<const std::int16_t> samples) {
    const std::string bytes = bytesOf(samples);
    errno = EFBIG;
    if (bytes.size() <= largest - size_ && putAt(headerSize + size_, bytes)) {
        size_ += bytes.size();
        if (writeHeader()) return true;
    }
    fail();
    cut();
    return false;
}

void WavFile::drop(std::size_t samples) {
    const std::lock_guard lock(mutex_);
    size_ -= std::min(size_ - sizeBefore_, samples * sampleSize);
    if (writeHeader()) cut();
}

void WavFile::end() {
    const std::lock_guard lock(mutex_);
    const auto behind = std::exchange(behind_, {});
    if (!behind.empty()) append(behind);
    file_.reset();
}

void WavFile::putBehind(std::span<const std::int16_t> samples) {
    const std::lock_guard lock(mutex_);
    if (file_) {
        behind_.insert(behind_.end(), samples.begin(), samples.end());
    } else if (open(sampleRate_) == Begun::yes) {
        append(samples);
        file_.reset();
    }
}

bool WavFile::writeHeader() {
    const Header header = makeHeader(sampleRate_, size_);
    return putAt(0, {header.data(), header.size()});
}

bool WavFile::putAt(std::size_t position, std::string_view bytes) {
    return std::fseek(file_.get(), static_cast<long>(position), SEEK_SET) == 0 &&
           std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) == bytes.size();
}

// What lies behind the samples that the header counts.
void WavFile::cut() {
    if (ftruncate(fileno(file_.get()), static_cast<off_t>(headerSize + size_)) != 0) return;
}

void WavFile::fail() {
    const int reason = errno;
    if (std::exchange(reported_, true) || !report_) return;
    report_("the sound can't be written: " + path_ + ": " + std::strerror(reason));
}

}  // namespace agent
