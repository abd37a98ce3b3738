#include <gmock/gmock.h>

#include "platform/curl/curl_inets.h"
#include "platform/posix/posix_files.h"
#include "tests/curl/waiting_host.h"
#include "tests/support/contract.h"
#include "tests/support/failure_of.h"
#include "tests/support/http_server.h"
#include "tests/support/in_memory_files.h"
#include "tests/support/simulated_inets.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;

const std::string anyBytes("\0\xFF\xFE\x80 text\r\n\x1A", 13);

/// Transfer controls and the pages that they find: /bytes holds `anyBytes` and a Last-Modified header,
/// /missing is the page of a 404, /refused is behind a closed port, /cut breaks off, /silent never answers.
class Ground {
public:
    virtual ~Ground() = default;
    virtual Loop& loop() = 0;
    virtual Inets& inets() = 0;
    virtual std::string url(const std::string& page) = 0;
};

class SimulatedGround final : public Ground, private LoopHost {
public:
    SimulatedGround() {
        web_.serve(url("/bytes"), {.body = anyBytes, .headers = {{"Last-Modified", "Thu, 05 Mar 2026"}}});
        web_.serve(url("/missing"), "nothing here");
        web_.serve(url("/refused"), WebAnswer{.failure = errors::transferNotConnected});
        web_.serve(url("/cut"), WebAnswer{.failure = errors::transferIncomplete});
        web_.serve(url("/silent"), WebAnswer{.hangs = true});
    }
    Loop& loop() override { return loop_; }
    Inets& inets() override { return inets_; }
    std::string url(const std::string& page) override { return "http://server" + page; }

private:
    std::chrono::milliseconds elapsed() const override { return now_; }
    void serve(std::optional<std::chrono::milliseconds> atMost) override { now_ += atMost.value_or(0ms); }

    std::chrono::milliseconds now_{0};
    SimulatedWeb web_;
    Loop loop_{*this};
    SimulatedInets inets_{loop_, web_};
};

class CurlGround final : public Ground {
public:
    CurlGround() {
        server_.page("/bytes", [](const HttpConnection& client) {
            client.answer(anyBytes, "Last-Modified: Thu, 05 Mar 2026\r\n");
        });
        server_.page("/cut", [](const HttpConnection& client) {
            client.send("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhalf");
        });
        server_.page("/silent", [](const HttpConnection& client) { client.hold(); });
    }
    Loop& loop() override { return host_.loop; }
    Inets& inets() override { return inets_; }
    std::string url(const std::string& page) override {
        return page == "/refused" ? "http://127.0.0.1:1/" : server_.url(page);
    }

private:
    HttpServer server_;
    WaitingHost host_;
    InMemoryFiles files_;
    curl::CurlInets inets_{{.loop = host_.loop,
                            .postFromThread = [this](auto call) { host_.postFromThread(std::move(call)); },
                            .files = files_,
                            .folder = "/",
                            .limits = {.silence = 300ms}}};
};

class InetContract : public testing::TestWithParam<Kind<Ground>> {
protected:
    InetContract() {
        inet->StateChanged = [this](TransferState state) { states.push_back(static_cast<int>(state)); };
    }

    long failureOpening(const std::string& url) {
        return failureOf([&] { inet->OpenURL(url); });
    }

    std::unique_ptr<Ground> ground = GetParam().make();
    std::unique_ptr<Inet> inet = ground->inets().create();
    std::vector<int> states;
};

TEST_P(InetContract, GivesEveryByteAndTheHeadersOfTheLatestAnswer) {
    EXPECT_EQ(inet->GetHeader("Last-Modified"), "");
    inet->URL = ground->url("/bytes");
    EXPECT_EQ(inet->OpenURL(), anyBytes);
    EXPECT_EQ(inet->GetHeader("Last-modified"), "Thu, 05 Mar 2026");
    EXPECT_EQ(inet->GetHeader("None"), "");
    EXPECT_FALSE(inet->StillExecuting());
    EXPECT_EQ(inet->OpenURL(ground->url("/missing")), "nothing here");
    EXPECT_EQ(inet->GetHeader("Last-modified"), "");
    inet->OpenURL();
    for (const auto& [page, number] : {std::pair{"/cut", 35756}, {"/refused", 35754}}) {
        EXPECT_EQ(failureOpening(ground->url(page)), number) << page;
        EXPECT_EQ(inet->GetHeader("Last-modified"), "");
        EXPECT_FALSE(inet->StillExecuting());
    }
}

TEST_P(InetContract, RaisesEachStateOnceInOrderAndTheLastOneBeforeItReturns) {
    inet->OpenURL(ground->url("/bytes"));
    EXPECT_THAT(states, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 12));
    states.clear();
    EXPECT_EQ(failureOpening(ground->url("/silent")), 35761);
    ASSERT_FALSE(states.empty());
    EXPECT_TRUE(std::ranges::is_sorted(states));
    EXPECT_EQ(states.back(), 11);
    EXPECT_EQ(std::ranges::count(states, 12), 0);
}

TEST_P(InetContract, RefusesAtOnceWhatIsNoAddressOfTheWeb) {
    const std::vector<std::pair<std::string, long>> cases{{"", 35752},
                                                          {"http://", 35752},
                                                          {"http:///x", 35752},
                                                          {"Item 1", 35752},
                                                          {"http:x", 35752},
                                                          {"http://a b/", 35752},
                                                          {"?x", 35752},
                                                          {"file:///etc/passwd", 35753},
                                                          {"FILE:/etc/passwd", 35753},
                                                          {"ftp://x/", 35753},
                                                          {"mailto:ann@x", 35753},
                                                          {"C:\\x", 35753},
                                                          {"http://u@/", 35752}};
    for (const auto& [url, number] : cases) EXPECT_EQ(failureOpening(url), number) << url;
    EXPECT_THAT(states, IsEmpty());
    EXPECT_FALSE(inet->StillExecuting());
}

TEST_P(InetContract, DoesOneTransferAtATimeWhileOthersGoOn) {
    auto other = ground->inets().create();
    bool seen = false;
    inet->StateChanged = [&](TransferState state) {
        if (state != TransferState::requestSent) return;
        seen = true;
        EXPECT_TRUE(inet->StillExecuting());
        EXPECT_EQ(failureOpening(ground->url("/bytes")), 35764);
        EXPECT_EQ(other->OpenURL(ground->url("/bytes")), anyBytes);
        EXPECT_FALSE(other->StillExecuting());
    };
    EXPECT_EQ(failureOpening(ground->url("/silent")), 35761);
    EXPECT_TRUE(seen);
}

TEST_P(InetContract, IsFreeAgainAsSoonAsTheAnswerIsThere) {
    inet->StateChanged = [&](TransferState state) {
        if (state != TransferState::complete) return;
        inet->StateChanged = {};
        EXPECT_FALSE(inet->StillExecuting());
        EXPECT_EQ(inet->OpenURL(ground->url("/missing")), "nothing here");
    };
    EXPECT_EQ(inet->OpenURL(ground->url("/bytes")), anyBytes);
    EXPECT_EQ(inet->GetHeader("Last-Modified"), "");  // the latest that began is the other one
}

TEST_P(InetContract, EndOfTheProgramEndsATransferThatHangs) {
    bool ended = false;
    inet->StateChanged = [&](TransferState state) {
        if (state == TransferState::requestSent) ground->loop().end();
    };
    ground->loop().turn([&] {
        try {
            inet->OpenURL(ground->url("/silent"));
        } catch (const Ended&) {
            ended = true;
            throw;
        }
    });
    EXPECT_TRUE(ended);
    EXPECT_FALSE(std::ranges::count(states, 11));
    inet.reset();
}

INSTANTIATE_TEST_SUITE_P(Every, InetContract,
                         testing::Values(Kind<Ground>::of<SimulatedGround>("Simulated"),
                                         Kind<Ground>::of<CurlGround>("Curl")));

}  // namespace
}  // namespace velmora
