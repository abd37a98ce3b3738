#include "platform/posix/sockets/secure_layer.h"

#include <gmock/gmock.h>
#include <openssl/bio.h>

#include <array>
#include <cstdlib>

#include "tests/support/scratch_profile.h"
#include "tests/support/test_certificates.h"

namespace velmora::sockets {
namespace {

using testing::HasSubstr;

/// The other side of a connection.
class Server {
public:
    explicit Server(const blackbox::TestCertificates& certificates) {
        SSL_use_certificate_file(session_.get(), certificates.certificate.c_str(), SSL_FILETYPE_PEM);
        SSL_use_PrivateKey_file(session_.get(), certificates.key.c_str(), SSL_FILETYPE_PEM);
        SSL_set_bio(session_.get(), in_, out_);
        SSL_set_accept_state(session_.get());
    }

    /// What it answers to these bytes; what it reads is added to `read`.
    std::string answer(const std::string& bytes) {
        BIO_write(in_, bytes.data(), static_cast<int>(bytes.size()));
        std::array<char, 1024> part{};
        for (int count = 0; (count = SSL_read(session_.get(), part.data(), part.size())) > 0;)
            read.append(part.data(), static_cast<std::size_t>(count));
        return takeOutgoing();
    }
    std::string say(const std::string& text) {
        SSL_write(session_.get(), text.data(), static_cast<int>(text.size()));
        return takeOutgoing();
    }
    std::string hangUp() {
        SSL_shutdown(session_.get());
        return takeOutgoing();
    }

    std::string read;

private:
    std::string takeOutgoing() {
        std::string bytes(BIO_ctrl_pending(out_), '\0');
        if (!bytes.empty()) BIO_read(out_, bytes.data(), static_cast<int>(bytes.size()));
        return bytes;
    }

    std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> context_{SSL_CTX_new(TLS_server_method()),
                                                               SSL_CTX_free};
    std::unique_ptr<SSL, decltype(&SSL_free)> session_{SSL_new(context_.get()), SSL_free};
    BIO* in_ = BIO_new(BIO_s_mem());
    BIO* out_ = BIO_new(BIO_s_mem());
};

class SecureLayerTest : public testing::Test {
protected:
    SecureLayerTest() { ::setenv("SSL_CERT_FILE", certificates.authority.c_str(), 1); }
    ~SecureLayerTest() override { ::unsetenv("SSL_CERT_FILE"); }
    SecureLayerTest(const SecureLayerTest&) = delete;
    SecureLayerTest& operator=(const SecureLayerTest&) = delete;

    /// Passes bytes to and fro until both are silent, in pieces of that size; what the layer made of it all.
    Passage talk(Layer& layer, Passage step, std::size_t pieces = 7) {
        Passage all;
        for (;;) {
            all.toProgram += step.toProgram;
            all.open |= step.open;
            all.ended |= step.ended;
            if (!step.refusal.empty()) all.refusal = step.refusal;
            if (!step.toPeer.empty()) incoming += server.answer(step.toPeer);
            if (incoming.empty() || !all.refusal.empty()) return all;
            const std::string piece = incoming.substr(0, pieces);
            incoming.erase(0, pieces);
            step = layer.arrived(piece);
        }
    }

    const blackbox::ScratchProfile scratch;
    const blackbox::TestCertificates certificates{scratch.folder(), "DNS:mail.example,IP:127.0.0.9"};
    Server server{certificates};
    std::string incoming;
};

TEST_F(SecureLayerTest, EncryptsFromTheFirstByteInWhateverPieces) {
    for (const char* host : {"mail.example", "127.0.0.9"}) {
        server = Server(certificates);
        SecureLayer layer(host, SecureLayer::Start::atOnce);
        EXPECT_TRUE(talk(layer, layer.begin()).open);
        incoming = server.say("+OK ready\r\n");
        incoming += server.say(std::string(100'000, 'x'));
        EXPECT_TRUE(talk(layer, {}, 5000).toProgram == "+OK ready\r\n" + std::string(100'000, 'x'));
        talk(layer, layer.leaving("USER anna\r\n"));
        talk(layer, layer.leaving(""));
        EXPECT_EQ(server.read, "USER anna\r\n");
        incoming = server.hangUp();
        EXPECT_TRUE(talk(layer, {}).ended);
    }
}

TEST_F(SecureLayerTest, GreetingInClearIsReadOnceAllElseIsEncrypted) {
    SecureLayer layer("mail.example", SecureLayer::Start::afterGreeting);
    EXPECT_EQ(layer.begin().toPeer, "");
    EXPECT_EQ(layer.arrived("+OK rea").toPeer, "");
    const Passage asked = layer.arrived("dy\r\n");
    EXPECT_EQ(asked.toPeer, "STLS\r\n");
    EXPECT_EQ(asked.toProgram, "");
    const Passage open = talk(layer, layer.arrived("+OK begin\r\n"));
    EXPECT_TRUE(open.open);
    EXPECT_EQ(open.toProgram, "+OK ready\r\n");
    talk(layer, layer.leaving("USER anna\r\n"));
    EXPECT_EQ(server.read, "USER anna\r\n");
}

TEST_F(SecureLayerTest, ServerThatIsNotWhatItShouldBeIsRefusedWithAReason) {
    struct Case {
        const char* host;
        bool known;
        const char* reason;
    };
    for (const auto& [host, known, reason] :
         {Case{"other.example", true, "ostname"}, Case{"127.0.0.10", true, "IP address"},
          Case{"mail.example", false, "issuer"}}) {
        if (!known) ::unsetenv("SSL_CERT_FILE");
        server = Server(certificates);
        incoming.clear();
        SecureLayer layer(host, SecureLayer::Start::atOnce);
        const Passage passage = talk(layer, layer.begin(), 100'000);
        EXPECT_FALSE(passage.open);
        EXPECT_THAT(passage.refusal, HasSubstr(reason));
    }
}

TEST_F(SecureLayerTest, WhatIsNoHandshakeIsRefused) {
    using Start = SecureLayer::Start;
    struct Case {
        Start start;
        std::vector<std::string> said;
    };
    const std::vector<Case> cases{
        {Start::atOnce, {"+OK this is no TLS, but a server that speaks in clear\r\n"}},
        {Start::afterGreeting, {"-ERR busy\r\n"}},
        {Start::afterGreeting, {"+OK ready\r\n", "-ERR no such command\r\n"}},
        {Start::afterGreeting, {"+OK ready\r\n+OK early\r\n"}},
        {Start::afterGreeting, {"+OK ready\r\n", "+OK begin\r\n+OK slipped in\r\n"}},
        {Start::afterGreeting, {std::string(5000, '+')}},
    };
    for (const auto& [start, said] : cases) {
        SecureLayer layer("mail.example", start);
        Passage passage = layer.begin();
        for (const auto& text : said) passage = layer.arrived(text);
        EXPECT_NE(passage.refusal, "") << said.back();
        EXPECT_FALSE(passage.open);
    }
}

}  // namespace
}  // namespace velmora::sockets
