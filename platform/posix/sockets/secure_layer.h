#pragma once

#include <openssl/ssl.h>

#include <memory>
#include <string>
#include <string_view>

#include "platform/posix/sockets/layer.h"

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
    std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> context_{nullptr, SSL_CTX_free};
    std::unique_ptr<SSL, decltype(&SSL_free)> session_{nullptr, SSL_free};
    BIO* incoming_ = nullptr;  ///< these two are the session's
    BIO* outgoing_ = nullptr;
};

}  // namespace velmora::sockets
