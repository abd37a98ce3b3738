#include "platform/posix/sockets/secure_layer.h"

#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/x509v3.h>

#include <array>
#include <limits>
#include <new>
#include <utility>

#include "platform/posix/sockets/address.h"

namespace velmora::sockets {
namespace {

constexpr std::size_t longestLine = 4096;
constexpr std::string_view positive = "+OK";

std::string lastLibraryError() {
    const unsigned long code = ERR_get_error();
    const char* reason = code != 0 ? ERR_reason_error_string(code) : nullptr;
    return reason != nullptr ? reason : "no reason given";
}

Passage refused(std::string reason) {
    Passage passage;
    passage.refusal = std::move(reason);
    return passage;
}

void give(BIO* bio, std::string_view bytes) {
    constexpr std::size_t most = std::numeric_limits<int>::max();
    while (!bytes.empty()) {
        const auto count = BIO_write(bio, bytes.data(), static_cast<int>(std::min(bytes.size(), most)));
        if (count <= 0) throw std::bad_alloc();
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

}  // namespace

SecureLayer::SecureLayer(std::string host, Start start)
    : host_(std::move(host)), state_(start == Start::atOnce ? State::handshake : State::greeting) {}

Passage SecureLayer::begin() {
    return state_ == State::handshake ? startHandshake() : Passage{};
}

Passage SecureLayer::arrived(std::string_view bytes) {
    if (state_ == State::over) return {};
    if (state_ == State::greeting || state_ == State::answer) return line(bytes);
    give(incoming_, bytes);
    if (state_ == State::handshake) return shakeHands();
    Passage passage;
    readInto(passage);
    passage.toPeer = takeOutgoing();
    return passage;
}

Passage SecureLayer::leaving(std::string_view bytes) {
    ERR_clear_error();
    Passage passage;
    if (!bytes.empty()) {
        std::size_t written = 0;
        if (SSL_write_ex(session_.get(), bytes.data(), bytes.size(), &written) != 1)
            return refused(lastLibraryError());
    }
    passage.toPeer = takeOutgoing();
    return passage;
}

/// The two lines that go in clear: what follows the second before the handshake was put there by somebody
/// else.
Passage SecureLayer::line(std::string_view bytes) {
    line_.append(bytes);
    const auto end = line_.find('\n');
    if (end == std::string::npos) return line_.size() > longestLine ? refused("no greeting") : Passage{};
    if (end + 1 != line_.size()) return refused("the server sends more than it was asked for");
    if (!line_.starts_with(positive)) {
        return refused(state_ == State::greeting ? "the server does not serve"
                                                 : "the server does not encrypt");
    }
    if (state_ == State::answer) return startHandshake();
    greeting_ = std::exchange(line_, {});
    state_ = State::answer;
    Passage passage;
    passage.toPeer = "STLS\r\n";
    return passage;
}

/// False if the library refuses, whatever its reason.
bool SecureLayer::prepare() {
    context_.reset(SSL_CTX_new(TLS_client_method()));
    if (!context_) return false;
    SSL_CTX_set_min_proto_version(context_.get(), TLS1_2_VERSION);
    SSL_CTX_set_verify(context_.get(), SSL_VERIFY_PEER, nullptr);
    if (SSL_CTX_set_default_verify_paths(context_.get()) != 1) return false;
    session_.reset(SSL_new(context_.get()));
    if (!session_) return false;
    incoming_ = BIO_new(BIO_s_mem());
    outgoing_ = BIO_new(BIO_s_mem());
    SSL_set_bio(session_.get(), incoming_, outgoing_);
    if (incoming_ == nullptr || outgoing_ == nullptr || !expectHost()) return false;
    SSL_set_connect_state(session_.get());
    return true;
}

/// What the certificate has to be made out to.
bool SecureLayer::expectHost() {
    if (Address::parse(host_, 0))
        return X509_VERIFY_PARAM_set1_ip_asc(SSL_get0_param(session_.get()), host_.c_str()) == 1;
    return SSL_set1_host(session_.get(), host_.c_str()) == 1 &&
           SSL_set_tlsext_host_name(session_.get(), host_.c_str()) == 1;
}

Passage SecureLayer::startHandshake() {
    state_ = State::handshake;
    ERR_clear_error();
    if (!prepare()) return refused(lastLibraryError());
    return shakeHands();
}

Passage SecureLayer::shakeHands() {
    ERR_clear_error();
    Passage passage;
    const int result = SSL_do_handshake(session_.get());
    if (result != 1 && SSL_get_error(session_.get(), result) != SSL_ERROR_WANT_READ) {
        state_ = State::over;
        return refused(refusal());
    }
    if (result == 1) {
        state_ = State::open;
        passage.open = true;
        passage.toProgram = std::move(greeting_);
        readInto(passage);
    }
    passage.toPeer = takeOutgoing();
    return passage;
}

std::string SecureLayer::refusal() const {
    const long verified = SSL_get_verify_result(session_.get());
    if (verified == X509_V_OK) return lastLibraryError();
    return std::string("the certificate does not hold: ").append(X509_verify_cert_error_string(verified));
}

void SecureLayer::readInto(Passage& passage) {
    constexpr std::size_t record = 16384;
    std::array<char, record> part;
    for (;;) {
        ERR_clear_error();
        std::size_t count = 0;
        const int result = SSL_read_ex(session_.get(), part.data(), part.size(), &count);
        if (result != 1) {
            // A record that is broken off, or no record at all, ends the connection like its regular end.
            passage.ended = SSL_get_error(session_.get(), result) != SSL_ERROR_WANT_READ;
            if (passage.ended) state_ = State::over;
            return;
        }
        passage.toProgram.append(part.data(), count);
    }
}

std::string SecureLayer::takeOutgoing() {
    std::string bytes(BIO_ctrl_pending(outgoing_), '\0');
    if (!bytes.empty()) BIO_read(outgoing_, bytes.data(), static_cast<int>(bytes.size()));
    return bytes;
}

}  // namespace velmora::sockets
