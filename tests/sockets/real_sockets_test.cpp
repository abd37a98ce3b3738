#include <gmock/gmock.h>
#include <sys/socket.h>

#include <array>
#include <new>

#include "platform/posix/sockets/mail_route.h"
#include "tests/sockets/real_network.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::uint16_t port = 22001;

class RealSockets : public testing::Test {
protected:
    /// A caller who is answered by a socket of ours.
    void connect() {
        server->LocalPort = port;
        server->events.ConnectionRequest = [this](long request) {
            server->Close();
            server->Accept(request);
        };
        server->Listen();
        client->Connect(loopbackAddress(2), port);
        loop.until([this] {
            return client->State() == SocketState::connected && server->State() == SocketState::connected;
        });
    }

    WaitingLoop loop;
    RealNetwork network{loop};
    std::unique_ptr<PosixWinsocks> sockets = network.sockets(loopbackAddress(2));
    std::unique_ptr<TcpWinsock> server = sockets->createTcp(StreamUse::file);
    std::unique_ptr<TcpWinsock> client = sockets->createTcp(StreamUse::file);
};

TEST_F(RealSockets, PeerWaitsWhileTheProgramDoesNotRead) {
    connect();
    std::string content(150'000'000, '\0');
    for (std::size_t at = 0; at < content.size(); ++at)
        content[at] = static_cast<char>(at * 2654435761U >> 13);
    bool sent = false;
    std::size_t unread = 0;
    client->events.SendComplete = [&] { sent = true; };
    server->events.DataArrival = [&](std::size_t total) { unread = total; };
    client->SendData(content);
    loop.until([&] { return unread > 64'000'000; });
    // Whatever could still come is given the time that it takes a datagram to make its way.
    const auto probe = sockets->createUdp();
    bool probed = false;
    probe->events.DataArrival = [&](std::size_t) { probed = true; };
    probe->Bind(port);
    probe->RemoteHost = loopbackAddress(2);
    probe->RemotePort = port;
    probe->SendData("x");
    loop.until([&] { return probed; });
    EXPECT_FALSE(sent);
    EXPECT_LT(unread, 68'000'000U);

    std::string received;
    received.reserve(content.size());
    server->events.DataArrival = [](std::size_t) {};
    loop.until([&] {
        for (std::string part = server->GetData(); !part.empty(); part = server->GetData()) received += part;
        return received.size() == content.size();
    });
    EXPECT_TRUE(received == content);
    loop.until([&] { return sent; });
}

TEST_F(RealSockets, FloodOfDataLeavesTimersTheirTurn) {
    connect();
    std::size_t received = 0;
    server->events.DataArrival = [&](std::size_t) { received += server->GetData().size(); };
    auto last = std::chrono::steady_clock::now();
    auto longest = 0ms;
    LoopTimer timer(loop.loop, [&] {
        const auto now = std::chrono::steady_clock::now();
        longest = std::max(longest, std::chrono::duration_cast<std::chrono::milliseconds>(now - last));
        last = now;
    });
    timer.start(5ms);
    constexpr std::size_t all = 200'000'000;
    client->SendData(std::string(all, 'x'));
    last = std::chrono::steady_clock::now();
    loop.until([&] { return received == all; });
    EXPECT_LT(longest, 200ms);
}

TEST_F(RealSockets, DataThatComesBeforeTheAnswerIsToldBehindIt) {
    std::string heard;
    server->LocalPort = port;
    server->events.DataArrival = [&](std::size_t) { heard += server->GetData(); };
    server->events.Close = [&] { heard += "."; };
    server->events.ConnectionRequest = [&](long number) {
        server->Close();
        loop.loop.wait([&] { return client->State() == SocketState::closed; });
        server->Accept(number);
    };
    server->Listen();
    client->events.Connect = [&] {
        client->SendData("early");
        client->Close();
    };
    client->Connect(loopbackAddress(2), port);
    loop.until([&] { return heard == "early."; });
    EXPECT_EQ(server->State(), SocketState::closing);
}

TEST_F(RealSockets, NamesAreLookedUpWhileTheProgramGoesOn) {
    const auto everywhere = network.sockets("");
    const auto listening = everywhere->createTcp(StreamUse::chat);
    listening->LocalPort = static_cast<std::uint16_t>(port + getpid() % 1000);
    listening->Listen();
    const auto calling = everywhere->createTcp(StreamUse::mail);
    calling->Connect("localhost", listening->LocalPort);
    EXPECT_EQ(calling->State(), SocketState::resolvingHost);
    std::string reached;
    calling->events.Connect = [&] { reached = calling->RemoteHostIP(); };
    loop.until([&] { return !reached.empty(); });
    EXPECT_EQ(reached, "127.0.0.1");
    calling->Close();
    calling->Connect("localhost", listening->LocalPort);
    calling->Close();  // the answer to the question that is out finds nobody
    EXPECT_EQ(calling->State(), SocketState::closed);
}

TEST_F(RealSockets, SocketThatCanNotBeHadSaysWhy) {
    const auto elsewhere = network.sockets("192.0.2.1");
    const auto nowhere = elsewhere->createTcp(StreamUse::chat);
    EXPECT_THROW(nowhere->Listen(), Failure);
    EXPECT_EQ(nowhere->State(), SocketState::closed);
}

TEST_F(RealSockets, MailServerWithASettingThatSaysNothingIsNotReachedInClear) {
    network.files.put("/app/platform.conf", "[Mail]\n" + loopbackAddress(2) + "=ssl\n");
    server->LocalPort = port;
    server->Listen();
    const auto mail = sockets->createTcp(StreamUse::mail);
    long number = 0;
    mail->events.Error = [&](const Failure& failure) { number = failure.number; };
    mail->Connect(loopbackAddress(2), port);
    loop.until([&] { return number != 0; });
    EXPECT_EQ(number, 10061);
    EXPECT_THAT(network.reported, ElementsAre(HasSubstr("tls:PORT")));
    EXPECT_EQ(mail->State(), SocketState::error);
}

TEST_F(RealSockets, AMailSettingIsReadOrRefused) {
    using Kind = sockets::MailRoute::Kind;
    const auto kind = [](std::string_view text) { return sockets::readMailRoute(text).kind; };
    EXPECT_EQ(kind(""), Kind::clear);
    EXPECT_EQ(kind("STARTTLS"), Kind::startTls);
    EXPECT_EQ(kind("Tls:995"), Kind::tls);
    EXPECT_EQ(sockets::readMailRoute("tls:995").port, 995);
    for (const char* text : {"tls", "tls:", "tls:0", "tls:65536", "tls:9 95", "tls:-1", "starttls:110", "no"})
        EXPECT_EQ(kind(text), Kind::unknown) << text;
}

/// Has no memory for what arrives.
class Full : public sockets::Cutting {
public:
    void arrived(std::string, const Deliver&) override { throw std::bad_alloc(); }
    void ended(const Deliver&) override {}
};

TEST_F(RealSockets, WithoutMemoryForTheDataTheConnectionFailsAndTheProgramGoesOn) {
    struct Heard : sockets::Sink {
        void happened(sockets::Event& event) override { numbers.push_back(event.number); }
        std::vector<long> numbers;
    } heard;
    sockets::Reactor reactor;
    const auto queue = std::make_shared<sockets::EventQueue>(
        loop.loop, [this](std::function<void()> call) { loop.post(std::move(call)); });
    std::array<int, 2> ends{};
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends.data()), 0);
    const FileDescriptor other(ends[1]);
    const auto stream = std::make_shared<sockets::Stream>(sockets::Machinery{reactor, *queue},
                                                          queue->newChannel(), std::make_unique<Full>());
    queue->hold(stream->channel(), heard);
    stream->adopt(FileDescriptor(ends[0]));
    stream->start();
    ASSERT_EQ(::send(other.number(), "x", 1, 0), 1);
    loop.until([&] { return heard.numbers.size() == 2; });
    EXPECT_THAT(heard.numbers, ElementsAre(28, 28));
    reactor.stop();
}

}  // namespace
}  // namespace velmora
