#include "agent/voice/recordings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "agent/voice/resampler.h"

namespace {

using namespace agent;
using testing::ElementsAre;
using testing::HasSubstr;
namespace fs = std::filesystem;

class RecordingsTest : public testing::Test {
protected:
    RecordingsTest() { fs::create_directory(folder); }
    ~RecordingsTest() override { fs::remove_all(folder); }

    static std::vector<std::int16_t> samples(std::size_t count, std::int16_t value) {
        return std::vector<std::int16_t>(count, value);
    }
    // How often each value stands in the file, one run after the other; its header has to count them all.
    std::vector<std::pair<int, int>> runs() const {
        std::ifstream file(path, std::ios::binary);
        const std::string bytes((std::istreambuf_iterator<char>(file)), {});
        const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(bytes.at(at)); };
        EXPECT_EQ(bytes.substr(0, 4) + bytes.substr(8, 4) + bytes.substr(36, 4), "RIFFWAVEdata");
        EXPECT_EQ(bytes.size(), 8U + byte(4) + 256U * byte(5));
        EXPECT_EQ(bytes.size(), 44U + byte(40) + 256U * byte(41));
        std::vector<std::pair<int, int>> found;
        for (std::size_t at = 44; at + 1 < bytes.size(); at += 2) {
            const int value = byte(at) + 256 * byte(at + 1);
            if (found.empty() || found.back().first != value) found.emplace_back(value, 0);
            ++found.back().second;
        }
        return found;
    }

    const fs::path folder = fs::path(testing::TempDir()) / ("recordings" + std::to_string(getpid()));
    const std::string path = folder / "said.wav";
    std::vector<std::string> complaints;
    Recordings recordings{[this](const std::string& reason) { complaints.push_back(reason); }};
};

using Runs = std::vector<std::pair<int, int>>;

TEST_F(RecordingsTest, VoicesGoOnWithOneAnothersFileAndReplaceAnOlderOne) {
    std::ofstream(path) << std::string(5000, 'x');
    recordings.file(path)(8000)->write(samples(10, 1));
    recordings.file(folder / "other.wav")(8000)->write(samples(10, 7));
    recordings.file(folder / "." / "said.wav")(8000)->write(samples(5, 2));
    EXPECT_EQ(runs(), (Runs{{1, 10}, {2, 5}}));
    Recordings().file(path)(8000)->write(samples(3, 3));
    EXPECT_EQ(runs(), (Runs{{3, 3}}));
    EXPECT_THAT(complaints, ElementsAre());
}

TEST_F(RecordingsTest, WhatIsSaidAtOneTimeStandsOneBehindTheOtherWithoutWhatWasNotHeard) {
    auto first = recordings.file(path)(8000);
    auto second = recordings.file(path)(8000);
    first->write(samples(10, 1));
    second->write(samples(20, 2));
    second->drop(5);
    second.reset();
    first->drop(3);
    first->write(samples(1, 1));
    first.reset();
    EXPECT_EQ(runs(), (Runs{{1, 8}, {2, 15}}));
    const auto third = recordings.file(path)(8000);
    third->write(samples(4, 3));
    third->drop(1000);
    EXPECT_EQ(runs(), (Runs{{1, 8}, {2, 15}}));
}

TEST_F(RecordingsTest, AnotherRateIsBroughtToThatOfTheFile) {
    recordings.file(path)(16000)->write(samples(100, 5));
    recordings.file(path)(8000)->write(samples(100, 5));
    EXPECT_EQ(runs().front().first, 5);
    EXPECT_EQ(fs::file_size(path), 44U + 2 * 300);
}

TEST_F(RecordingsTest, AFileThatWasTakenAwayIsBegunAnew) {
    recordings.file(path)(16000)->write(samples(100, 5));
    fs::remove(path);
    recordings.file(path)(8000)->write(samples(10, 6));
    EXPECT_EQ(runs(), (Runs{{6, 10}}));
}

TEST_F(RecordingsTest, AFileThatCannotBeWrittenIsComplainedAboutOnce) {
    const std::string nowhere = folder / "no" / "where.wav";
    const std::string pipe = folder / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(recordings.file(nowhere)(8000), nullptr);
        EXPECT_EQ(recordings.file(pipe)(8000), nullptr);
    }
    EXPECT_THAT(complaints, ElementsAre(HasSubstr(nowhere + ": No such file"), HasSubstr(pipe)));
}

TEST_F(RecordingsTest, AFullDiskKeepsWhatWasSaidBefore) {
    const auto sink = recordings.file(path)(8000);
    EXPECT_TRUE(sink->write(samples(100, 1)));
    const auto before = signal(SIGXFSZ, SIG_IGN);
    rlimit own{};
    getrlimit(RLIMIT_FSIZE, &own);
    const rlimit full{.rlim_cur = 300, .rlim_max = own.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
    const bool written = sink->write(samples(100, 2));
    setrlimit(RLIMIT_FSIZE, &own);
    signal(SIGXFSZ, before);
    EXPECT_FALSE(written);
    EXPECT_EQ(runs(), (Runs{{1, 100}}));
    EXPECT_THAT(complaints, ElementsAre(HasSubstr(path)));
}

TEST(Resampler, KeepsTheShapeWhateverPiecesItComesIn) {
    std::vector<std::int16_t> ramp(1600);
    for (std::size_t i = 0; i < ramp.size(); ++i) ramp[i] = static_cast<std::int16_t>(10 * i);
    Resampler whole(16000, 22050);
    Resampler pieces(16000, 22050);
    const auto expected = whole.resample(ramp);
    std::vector<std::int16_t> joined;
    for (std::size_t at = 0; at < ramp.size(); at += 7) {
        const auto piece =
            pieces.resample(std::span(ramp).subspan(at, std::min<std::size_t>(7, ramp.size() - at)));
        joined.insert(joined.end(), piece.begin(), piece.end());
    }
    EXPECT_EQ(joined, expected);
    EXPECT_EQ(expected.size(), whole.scaled(ramp.size()));
    for (std::size_t i = 3; i < expected.size(); ++i) EXPECT_NEAR(expected[i] - expected[i - 1], 7.26, 1.3);
}

}  // namespace
