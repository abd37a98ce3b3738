#include <gmock/gmock.h>

#include "tests/sockets/real_network.h"
#include "tests/support/contract.h"
#include "tests/support/failure_of.h"
#include "tests/support/simulated_sockets.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint16_t chatPort = 21001;
constexpr std::uint16_t clientPort = 21002;

/// Two programs' sockets that reach each other.
struct Ground {
    virtual ~Ground() = default;
    std::unique_ptr<Winsocks> here;
    std::unique_ptr<Winsocks> there;
    std::string hereAddress;
    std::string thereAddress;
};

struct RealGround : Ground {
    explicit RealGround(WaitingLoop& loop) : network(loop) {
        hereAddress = loopbackAddress(2);
        thereAddress = loopbackAddress(3);
        here = network.sockets(hereAddress);
        there = network.sockets(thereAddress);
    }
    RealNetwork network;
};

struct SimulatedGround : Ground {
    explicit SimulatedGround(WaitingLoop& loop) {
        const auto add = [&](std::unique_ptr<Winsocks>& sockets, std::string& address) {
            auto made = std::make_unique<SimulatedWinsocks>(
                network, [&loop](std::function<void()> call) { loop.post(std::move(call)); });
            address = made->address();
            sockets = std::move(made);
        };
        add(here, hereAddress);
        add(there, thereAddress);
    }
    ~SimulatedGround() override {
        here.reset();
        there.reset();
    }
    SimulatedNetwork network;
};

using SocketKind = Kind<Ground, WaitingLoop&>;

/// A socket that keeps what it is told.
struct Recorded {
    explicit Recorded(Winsocks& sockets) : socket(sockets.createTcp(StreamUse::chat)) {
        socket->events.ConnectionRequest = [this](long request) {
            log.push_back("call from " + socket->RemoteHostIP());
            if (!answers) return;
            if (socket->State() != SocketState::closed) socket->Close();
            socket->Accept(request);
        };
        socket->events.Connect = [this] { log.emplace_back("connected"); };
        socket->events.DataArrival = [this](std::size_t) { data += socket->GetData(); };
        socket->events.SendComplete = [this] { ++sent; };
        socket->events.Close = [this] { log.emplace_back("closed"); };
        socket->events.Error = [this](const Failure& failure) {
            log.push_back("error " + std::to_string(failure.number));
        };
    }
    TcpWinsock* operator->() const { return socket.get(); }

    std::unique_ptr<TcpWinsock> socket;
    bool answers = true;
    std::vector<std::string> log;
    std::string data;
    int sent = 0;
};

class SocketContract : public testing::TestWithParam<SocketKind> {
protected:
    void connect() {
        server->LocalPort = chatPort;
        server->Listen();
        client->Connect(ground->hereAddress, chatPort);
        loop.until([this] { return client.log.size() == 1 && server.log.size() == 1; });
    }

    WaitingLoop loop;
    std::unique_ptr<Ground> ground = GetParam().make(loop);
    Recorded server{*ground->here};
    Recorded client{*ground->there};
};

TEST_P(SocketContract, TakesACallOnTheListeningSocketAndTalksBothWays) {
    connect();
    EXPECT_THAT(server.log, ElementsAre("call from " + ground->thereAddress));
    EXPECT_THAT(client.log, ElementsAre("connected"));
    EXPECT_EQ(client->RemoteHostIP(), ground->hereAddress);
    EXPECT_EQ(server->State(), SocketState::connected);

    std::string every;
    for (int code = 0; code < 100'000; ++code) every += static_cast<char>(code % 251);
    for (const auto& text : {std::string("hello"), std::string(), every}) {
        client->SendData(text);
        server->SendData(text);
    }
    loop.until([&] { return client.sent == 3 && server.sent == 3; });
    loop.until([&] { return client.data.size() == every.size() + 5 && server.data == client.data; });
    EXPECT_EQ(client.data, "hello" + every);
    EXPECT_EQ(client->GetData(), "");

    server->Close();
    loop.until([&] { return client.log.size() == 2; });
    EXPECT_EQ(client.log.back(), "closed");
    EXPECT_EQ(client->State(), SocketState::closing);
    EXPECT_EQ(failureOf([&] { client->SendData("x"); }), 40006);
    server->Listen();
    client->Close();
    client->Connect();
    loop.until([&] { return server.log.size() == 2 && client.log.size() == 3; });
    EXPECT_EQ(client.log.back(), "connected");
}

TEST_P(SocketContract, RefusesWhatItsStateDoesNotAllow) {
    EXPECT_EQ(failureOf([&] { client->SendData("x"); }), 40006);
    EXPECT_EQ(failureOf([&] { client->GetData(); }), 40006);
    EXPECT_EQ(failureOf([&] { client->Accept(17); }), 40006);
    EXPECT_EQ(failureOf([&] { client->Connect("", chatPort); }), 10049);
    EXPECT_EQ(client->State(), SocketState::closed);
    connect();
    EXPECT_EQ(failureOf([&] { client->Connect(); }), 40006);
    EXPECT_EQ(failureOf([&] { client->Listen(); }), 40006);
    EXPECT_EQ(failureOf([&] { client->Accept(17); }), 40006);

    const auto second = ground->here->createTcp(StreamUse::chat);
    second->LocalPort = chatPort;
    server->Close();
    server->Listen();
    EXPECT_EQ(failureOf([&] { second->Listen(); }), 10048);
    EXPECT_EQ(failureOf([&] { server->GetData(); }), 40006);
    EXPECT_EQ(failureOf([&] { server->Listen(); }), 40006);
}

TEST_P(SocketContract, ASecondConnectionOnTheSamePairIsRefused) {
    client->LocalPort = clientPort;
    connect();
    const auto second = ground->there->createTcp(StreamUse::chat);
    second->LocalPort = clientPort;
    EXPECT_EQ(failureOf([&] { second->Connect(ground->hereAddress, chatPort); }), 10048);
    EXPECT_EQ(second->State(), SocketState::closed);
}

TEST_P(SocketContract, TellsWhyACallFails) {
    client->Connect(ground->hereAddress, chatPort);
    loop.until([&] { return client.log.size() == 1; });
    EXPECT_EQ(client->State(), SocketState::error);
    client->Close();
    client->Connect("nobody.invalid", chatPort);
    loop.until([&] { return client.log.size() == 2; });
    EXPECT_THAT(client.log, ElementsAre("error 10061", "error 11001"));
}

TEST_P(SocketContract, CallerWhomNobodyTakesSeesTheConnectionClosed) {
    server.answers = false;
    server->LocalPort = chatPort;
    server->Listen();
    client->Connect(ground->hereAddress, chatPort);
    loop.until([&] { return client.log.size() == 2; });
    EXPECT_THAT(client.log, ElementsAre("connected", "closed"));
    EXPECT_EQ(server->State(), SocketState::listening);
}

TEST_P(SocketContract, NothingIsToldAfterClose) {
    connect();
    server->SendData("late");
    server->Close();
    client->Close();
    Recorded another(*ground->here);
    another->LocalPort = chatPort;
    another->Listen();
    client->Connect();
    loop.until([&] { return client.log.size() == 2; });
    EXPECT_THAT(client.log, ElementsAre("connected", "connected"));
    EXPECT_THAT(client.data, IsEmpty());
}

TEST_P(SocketContract, HandlersThatWaitReadInTheOrderOfArrival) {
    std::vector<std::string> read;
    int waiting = 0;
    client.socket->events.DataArrival = [&](std::size_t) {
        if (++waiting == 1) {
            server->SendData("second");
            loop.loop.wait([&] { return waiting == 2; });
        }
        read.push_back(client->GetData());
    };
    connect();
    server->SendData("first");
    loop.until([&] { return read.size() == 2; });
    EXPECT_THAT(read, ElementsAre("first", "second"));
}

TEST_P(SocketContract, DatagramsArriveWholeWithTheirSender) {
    const auto sender = ground->here->createUdp();
    const auto receiver = ground->there->createUdp();
    EXPECT_EQ(failureOf([&] { sender->SendData("x"); }), 40006);
    EXPECT_EQ(failureOf([&] { sender->GetData(); }), 40006);
    sender->Bind(chatPort);
    receiver->Bind(chatPort);
    EXPECT_EQ(failureOf([&] { sender->Bind(clientPort); }), 40006);
    EXPECT_EQ(failureOf([&] { ground->here->createUdp()->Bind(chatPort); }), 10048);
    EXPECT_EQ(failureOf([&] { sender->SendData("x"); }), 10049);

    sender->RemoteHost = ground->thereAddress;
    sender->RemotePort = clientPort;
    sender->SendData("nobody is there");
    sender->RemotePort = chatPort;
    EXPECT_EQ(failureOf([&] { sender->SendData(std::string(65508, 'x')); }), 10040);
    const std::vector<std::string> texts{"one", "", std::string(65507, 'y'), std::string("\0\xFF", 2)};
    for (const auto& text : texts) sender->SendData(text);
    std::vector<std::string> read;
    receiver->events.DataArrival = [&](std::size_t size) {
        read.push_back(receiver->GetData());
        EXPECT_EQ(size, read.back().size());
    };
    loop.until([&] { return read.size() == texts.size(); });
    EXPECT_EQ(read, texts);
    EXPECT_EQ(receiver->RemoteHostIP(), ground->hereAddress);
    receiver->Close();
    EXPECT_EQ(failureOf([&] { receiver->GetData(); }), 40006);
    receiver->Bind(chatPort);
}

INSTANTIATE_TEST_SUITE_P(Every, SocketContract,
                         testing::Values(SocketKind::of<RealGround>("Real"),
                                         SocketKind::of<SimulatedGround>("Simulated")));

}  // namespace
}  // namespace velmora
