#include "platform/posix/sockets/secure_layer.h"

#include <array>
#include <limits>
#include <new>
#include <stdexcept>
#include <utility>

#include "platform/posix/sockets/address.h"

namespace velmora::sockets {
namespace {

constexpr std::size_t longestLine = 4096;
constexpr std::string_view positive = "+OK";

std::string lastLibraryError() {
    const unsigned long code = tlsLibrary().errGetError();
    const char* reason = code != 0 ? tlsLibrary().errReasonErrorString(code) : nullptr;
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
        const auto count =
            tlsLibrary().bioWrite(bio, bytes.data(), static_cast<int>(std::min(bytes.size(), most)));
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
    tlsLibrary().errClearError();
    Passage passage;
    if (!bytes.empty()) {
        std::size_t written = 0;
        if (tlsLibrary().sslWriteEx(session_.get(), bytes.data(), bytes.size(), &written) != 1)
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
    context_.reset(tlsLibrary().sslCtxNew(tlsLibrary().tlsClientMethod()));
    if (!context_) return false;
    tlsLibrary().sslCtxCtrl(context_.get(), SSL_CTRL_SET_MIN_PROTO_VERSION, TLS1_2_VERSION, nullptr);
    tlsLibrary().sslCtxSetVerify(context_.get(), SSL_VERIFY_PEER, nullptr);
    if (tlsLibrary().sslCtxSetDefaultVerifyPaths(context_.get()) != 1) return false;
    session_.reset(tlsLibrary().sslNew(context_.get()));
    if (!session_) return false;
    incoming_ = tlsLibrary().bioNew(tlsLibrary().bioSMem());
    outgoing_ = tlsLibrary().bioNew(tlsLibrary().bioSMem());
    tlsLibrary().sslSetBio(session_.get(), incoming_, outgoing_);
    if (incoming_ == nullptr || outgoing_ == nullptr || !expectHost()) return false;
    tlsLibrary().sslSetConnectState(session_.get());
    return true;
}

/// What the certificate has to be made out to.
bool SecureLayer::expectHost() {
    if (Address::parse(host_, 0))
        return tlsLibrary().x509VerifyParamSet1IpAsc(tlsLibrary().sslGet0Param(session_.get()),
                                                     host_.c_str()) == 1;
    return tlsLibrary().sslSet1Host(session_.get(), host_.c_str()) == 1 &&
           tlsLibrary().sslCtrl(session_.get(), SSL_CTRL_SET_TLSEXT_HOSTNAME, TLSEXT_NAMETYPE_host_name,
                                const_cast<char*>(host_.c_str())) == 1;
}

Passage SecureLayer::startHandshake() {
    state_ = State::handshake;
    try {
        tlsLibrary().errClearError();
    } catch (const std::runtime_error& failure) {
        return refused(failure.what());
    }
    if (!prepare()) return refused(lastLibraryError());
    return shakeHands();
}

Passage SecureLayer::shakeHands() {
    tlsLibrary().errClearError();
    Passage passage;
    const int result = tlsLibrary().sslDoHandshake(session_.get());
    if (result != 1 && tlsLibrary().sslGetError(session_.get(), result) != SSL_ERROR_WANT_READ) {
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
    const long verified = tlsLibrary().sslGetVerifyResult(session_.get());
    if (verified == X509_V_OK) return lastLibraryError();
    return std::string("the certificate does not hold: ")
        .append(tlsLibrary().x509VerifyCertErrorString(verified));
}

void SecureLayer::readInto(Passage& passage) {
    constexpr std::size_t record = 16384;
    std::array<char, record> part;
    for (;;) {
        tlsLibrary().errClearError();
        std::size_t count = 0;
        const int result = tlsLibrary().sslReadEx(session_.get(), part.data(), part.size(), &count);
        if (result != 1) {
            // A record that is broken off, or no record at all, ends the connection like its regular end.
            passage.ended = tlsLibrary().sslGetError(session_.get(), result) != SSL_ERROR_WANT_READ;
            if (passage.ended) state_ = State::over;
            return;
        }
        passage.toProgram.append(part.data(), count);
    }
}

std::string SecureLayer::takeOutgoing() {
    std::string bytes(tlsLibrary().bioCtrlPending(outgoing_), '\0');
    if (!bytes.empty()) tlsLibrary().bioRead(outgoing_, bytes.data(), static_cast<int>(bytes.size()));
    return bytes;
}

}  // namespace velmora::sockets
