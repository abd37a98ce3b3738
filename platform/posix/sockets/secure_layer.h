#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/posix/sockets/layer.h"
#include "platform/posix/sockets/tls_library.h"

namespace velmora::sockets {

/// Encrypts a connection to a mail server, and refuses one whose certificate the system's store (or
/// `SSL_CERT_FILE`, `SSL_CERT_DIR`) or the server's name does not bear out.
class SecureLayer : public Layer {
public:
    enum class Start {
        atOnce,
        afterGreeting,  ///< `STLS` behind the server's greeting, which the program reads once all is
                        ///< encrypted
    };

    SecureLayer(std::string host, Start start);

    Passage begin() override;
    Passage arrived(std::string_view bytes) override;
    Passage leaving(std::string_view bytes) override;

private:
    enum class State { greeting, answer, handshake, open, over };

    Passage line(std::string_view bytes);
    Passage startHandshake();
    Passage shakeHands();
    void readInto(Passage& passage);
    std::string refusal() const;
    std::string takeOutgoing();
    bool prepare();
    bool expectHost();

    const std::string host_;
    State state_;
    std::string line_;
    std::string greeting_;
    struct Free {
        void operator()(SSL_CTX* context) const { tlsLibrary().sslCtxFree(context); }
        void operator()(SSL* session) const { tlsLibrary().sslFree(session); }
    };

    std::unique_ptr<SSL_CTX, Free> context_;
    std::unique_ptr<SSL, Free> session_;
    BIO* incoming_ = nullptr;  ///< these two are the session's
    BIO* outgoing_ = nullptr;
};

}  // namespace velmora::sockets
