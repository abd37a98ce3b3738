#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velmora::sockets {

/// How a mail server is reached.
struct MailRoute {
    enum class Kind {
        clear,
        tls,       ///< encrypted from the first byte, at `port`
        startTls,  ///< encrypted after the server's greeting
        unknown,   ///< the setting says something else; then nothing may go out in clear
    };
    Kind kind = Kind::clear;
    std::uint16_t port = 0;
};

/// Reads the setting of a server: empty, `tls:PORT` or `starttls`, in any case of letters.
MailRoute readMailRoute(std::string_view setting);

}  // namespace velmora::sockets
