#include "platform/curl/curl_inets.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <zlib.h>

#include <chrono>
#include <ctime>
#include <filesystem>

#include "platform/posix/posix_files.h"
#include "tests/curl/waiting_host.h"
#include "tests/support/http_server.h"
#include "tests/support/scratch_folder.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;
using namespace std::chrono_literals;
using namespace std::string_literals;

constexpr std::size_t longestBody = 8'000'000;

std::string gzip(const std::string& text) {
    z_stream stream{};
    constexpr int gzipFormat = 15 + 16;
    deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, gzipFormat, 9, Z_DEFAULT_STRATEGY);
    std::string packed(deflateBound(&stream, text.size()), '\0');
    std::string source = text;
    stream.next_in = reinterpret_cast<Bytef*>(source.data());
    stream.avail_in = static_cast<uInt>(source.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

class CurlInetsTest : public testing::Test {
protected:
    void start() {
        inets = std::make_unique<curl::CurlInets>(curl::CurlInets::Needs{
            .loop = host.loop,
            .postFromThread = [this](auto call) { host.postFromThread(std::move(call)); },
            .files = files,
            .folder = folder.path(),
            .limits = {.body = longestBody, .silence = 5s}});
    }

    /// The body, or the failure's number, of a transfer by a new control.
    std::string open(const std::string& url) {
        if (!inets) start();
        try {
            return inets->create()->OpenURL(url);
        } catch (const Failure& failure) {
            return std::to_string(failure.number);
        }
    }

    std::string requestLine() {
        return server.requests().back().substr(0, server.requests().back().find('\r'));
    }

    ScratchFolder folder;
    std::string jar() const { return folder.file("Cookies.txt"); }
    PosixFiles files;
    HttpServer server;
    WaitingHost host;
    std::unique_ptr<curl::CurlInets> inets;
};

TEST_F(CurlInetsTest, AddressGoesOutAsItIs) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"/a/../b?Nick=100% \"<x>\\^`{|}&'[]", "/a/../b?Nick=100%%20\"<x>\\^`{|}&'[]"},
        {"/%7Eann?x=%zz", "/%7Eann?x=%zz"},
        {"/\xC3\xA4\xE4\x7F\t\r\nx", "/%C3%A4%E4%7F%09%0D%0Ax"},
        {"?UID=7", "/?UID=7"},
        {"", "/"},
        {"/page#part?x", "/page"},
        {"/page?Nick=C#&x=#1", "/page?Nick=C%23&x=%231"},
    };
    for (const auto& [given, sent] : cases) {
        open(server.url(given).substr(given.size() % 2 == 0 ? 0 : std::string_view("http://").size()));
        EXPECT_EQ(requestLine(), "GET " + sent + " HTTP/1.1");
    }
}

TEST_F(CurlInetsTest, FollowsRedirectionsButNotForEverAndNotToFiles) {
    const auto redirect = [this](const std::string& from, const std::string& to) {
        server.page(from, [to](const HttpConnection& client) {
            client.answer("moved", "Location: " + to + "\r\n", "302 Found");
        });
    };
    redirect("/there", "/here now");
    redirect("/loop", "/loop");
    redirect("/file", "file:///etc/passwd");
    redirect("/ftp", "ftp://127.0.0.1/");
    server.page("/here%20now", [](const HttpConnection& client) { client.answer("arrived"); });
    EXPECT_EQ(open(server.url("/there")), "arrived");
    EXPECT_EQ(open(server.url("/loop")), "35756");
    EXPECT_LE(server.requests().size(), 25U);
    EXPECT_EQ(open(server.url("/file")), "35756");
    EXPECT_EQ(open(server.url("/ftp")), "35756");
}

TEST_F(CurlInetsTest, BrokenAnswersFailAndHoldNothingUp) {
    const std::string head = "HTTP/1.1 200 OK\r\n";
    const std::vector<std::pair<std::string, std::string>> cases{
        {"/empty", ""},
        {"/noise", "\0\1\2\3\r\n\r\n"s},
        {"/short", head + "Content-Length: 99\r\n\r\nx"},
        {"/chunk", head + "Transfer-Encoding: chunked\r\n\r\nzz\r\n"},
        {"/chunkcut", head + "Transfer-Encoding: chunked\r\n\r\n5\r\nab"},
        {"/gzip", head + "Content-Encoding: gzip\r\nContent-Length: 4\r\n\r\nabcd"},
        {"/status", "HTTP/1.1 9999 x\r\n\r\n"},
        {"/headers", head + "A: " + std::string(2'000'000, 'a') + "\r\n\r\n"},
    };
    for (const auto& [path, bytes] : cases) {
        server.page(path, [bytes = bytes](const HttpConnection& client) { client.send(bytes); });
        EXPECT_EQ(open(server.url(path)), "35756") << path;
    }
    server.page("/reset", [head](const HttpConnection& client) {
        client.send(head + "Content-Length: 99\r\n\r\nx");
        client.reset();
    });
    EXPECT_EQ(open(server.url("/reset")), "35756");
    EXPECT_EQ(open("http://name.invalid/"), "35754");
}

TEST_F(CurlInetsTest, AnswerMayBePackedAndHasALongestLengthUnpacked) {
    const std::string fits(longestBody, 'x');
    server.page("/packed", [=](const HttpConnection& client) {
        client.answer(gzip("packed text"), "Content-Encoding: gzip\r\n");
    });
    server.page("/bomb", [=](const HttpConnection& client) {
        client.answer(gzip(fits + "x"), "Content-Encoding: gzip\r\n");
    });
    server.page("/fits", [=](const HttpConnection& client) { client.answer(fits); });
    server.page("/announced", [=](const HttpConnection& client) { client.answer(fits + "x"); });
    server.page("/endless", [=](const HttpConnection& client) {
        client.send("HTTP/1.1 200 OK\r\n\r\n");
        while (client.send(std::string_view(fits).substr(0, 65'536))) {
        }
    });
    EXPECT_EQ(open(server.url("/packed")), "packed text");
    EXPECT_EQ(open(server.url("/fits")), fits);
    for (const char* path : {"/bomb", "/announced", "/endless"})
        EXPECT_EQ(open(server.url(path)), "35756") << path;
}

TEST_F(CurlInetsTest, CookiesThatLastOutliveTheProgramForTheirOwnerOnly) {
    server.page("/set", [](const HttpConnection& client) {
        client.answer("", "Set-Cookie: keep=1; Max-Age=9999\r\nSet-Cookie: lose=2\r\n");
    });
    open(server.url("/set"));
    open(server.url("/any"));
    EXPECT_THAT(server.requests().back(), testing::AllOf(HasSubstr("keep=1"), HasSubstr("lose=2")));
    struct stat status {};
    ASSERT_EQ(::stat(jar().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    start();
    open(server.url("/any"));
    EXPECT_THAT(server.requests().back(), testing::AllOf(HasSubstr("keep=1"), Not(HasSubstr("lose"))));
}

TEST_F(CurlInetsTest, RuinedJarHoldsNothingUp) {
    const std::string good = "127.0.0.1\tFALSE\t/\tFALSE\t4000000000\tgood\t1\n";
    std::string noise = "ALL\nRELOAD\nSet-Cookie: x=y\n\0\t\t\t\t\t\t\n\xFF\xFE"s;
    noise.append(100'000, '\t').append("\n").append(good);
    folder.write("Cookies.txt", noise);
    open(server.url("/any"));
    EXPECT_THAT(server.requests().back(),
                testing::AllOf(HasSubstr("Cookie: good=1\r\n"), Not(HasSubstr("x=y"))));
    fs::remove(jar());
    fs::create_directory(jar());
    start();
    EXPECT_EQ(open(server.url("/any")), "nothing here");
}

TEST_F(CurlInetsTest, WithoutACookieThereIsNoJar) {
    open(server.url("/any"));
    inets.reset();
    EXPECT_FALSE(fs::exists(jar()));
}

TEST_F(CurlInetsTest, LargeAnswerTakesNoneOfTheProgramsOwnTime) {
    const std::string packed = gzip(std::string(longestBody, 'x'));
    server.page("/large", [packed](const HttpConnection& client) {
        client.answer(packed, "Content-Encoding: gzip\r\n");
    });
    const auto processorTime = [](clockid_t clock) {
        timespec time{};
        clock_gettime(clock, &time);
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    };
    start();
    auto inet = inets->create();
    const auto own = processorTime(CLOCK_THREAD_CPUTIME_ID);
    const auto all = processorTime(CLOCK_PROCESS_CPUTIME_ID);
    for (int round = 0; round < 5; ++round) {
        EXPECT_EQ(inet->OpenURL(server.url("/large")).size(), longestBody);
    }
    EXPECT_LT((processorTime(CLOCK_THREAD_CPUTIME_ID) - own) * 4,
              processorTime(CLOCK_PROCESS_CPUTIME_ID) - all);
}

TEST_F(CurlInetsTest, EndOfTheControlsDoesNotWaitForAServer) {
    server.page("/hang", [](const HttpConnection& client) { client.hold(); });
    start();
    auto inet = inets->create();
    inet->StateChanged = [this](TransferState state) {
        if (state == TransferState::requestSent) host.loop.end();
    };
    const auto began = std::chrono::steady_clock::now();
    host.loop.turn([&] { inet->OpenURL(server.url("/hang")); });
    inet.reset();
    inets.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - began, 3s);
}

}  // namespace
}  // namespace velmora
