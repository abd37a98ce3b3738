#include "platform/posix/sockets/mail_route.h"

#include <charconv>

#include "base/text.h"

namespace velmora::sockets {

MailRoute readMailRoute(std::string_view setting) {
    constexpr std::string_view tls = "tls:";
    if (setting.empty()) return {};
    if (equalsIgnoringCase(setting, "starttls")) return {MailRoute::Kind::startTls, 0};
    if (setting.size() > tls.size() && equalsIgnoringCase(setting.substr(0, tls.size()), tls)) {
        const std::string_view digits = setting.substr(tls.size());
        std::uint16_t port = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), port);
        if (error == std::errc() && end == digits.data() + digits.size() && port != 0)
            return {MailRoute::Kind::tls, port};
    }
    return {MailRoute::Kind::unknown, 0};
}

}  // namespace velmora::sockets
