#include "platform/web_address.h"

#include <algorithm>

#include "base/failure.h"
#include "base/text.h"

namespace velmora {
namespace {

constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

constexpr bool isSchemeCharacter(char c) {
    return (lowered(c) >= 'a' && lowered(c) <= 'z') || isDigit(c) || c == '+' || c == '-' || c == '.';
}

constexpr bool breaksRequestLine(char c) {
    const auto code = static_cast<unsigned char>(c);
    return code <= ' ' || code > '~' || c == '#';
}

/// Whether the colon ends a scheme. In "localhost:8080/" it does not: a port follows.
bool endsScheme(std::string_view address, std::size_t colon) {
    const std::string_view before = address.substr(0, colon);
    if (before.empty() || !std::ranges::all_of(before, isSchemeCharacter)) return false;
    const std::string_view after = address.substr(colon + 1);
    return after.starts_with("//") || after.empty() || !isDigit(after.front());
}

/// A '#' ends the address, but behind a '?' it belongs to a value: those are put together as a person typed
/// them, and what follows must not be lost.
std::string_view withoutFragment(std::string_view address) {
    const auto first = address.find_first_of("#?");
    const bool isFragment = first != std::string_view::npos && address[first] == '#';
    return isFragment ? address.substr(0, first) : address;
}

std::string escaped(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result;
    for (const char c : text) {
        if (breaksRequestLine(c)) {
            const auto code = static_cast<unsigned char>(c);
            result.append({'%', digits[code >> 4U], digits[code & 15U]});
        } else {
            result += c;
        }
    }
    return result;
}

/// The host of user, password, host and port.
std::string_view hostOf(std::string_view authority) {
    const std::string_view place = authority.substr(authority.rfind('@') + 1);  // without one: the whole
    return place.starts_with('[') ? place.substr(0, place.find(']')) : place.substr(0, place.find(':'));
}

bool isUsableHost(std::string_view host) {
    return !host.empty() && std::ranges::none_of(host, [](char c) {
        return static_cast<unsigned char>(c) <= ' ' || c == '\x7F';
    });
}

}  // namespace

std::string webAddress(std::string_view address) {
    std::string scheme = "http";
    std::string_view rest = withoutFragment(trim(address));
    if (const auto colon = rest.find(':'); colon != std::string_view::npos && endsScheme(rest, colon)) {
        scheme = rest.substr(0, colon);
        std::ranges::transform(scheme, scheme.begin(), lowered);
        if (scheme != "http" && scheme != "https") throw Failure(errors::protocolNotSupported);
        rest.remove_prefix(colon + 1);
        if (!rest.starts_with("//")) throw Failure(errors::malformedUrl);
    }
    if (rest.starts_with("//")) rest.remove_prefix(2);
    const std::string_view authority = rest.substr(0, rest.find_first_of("/?"));
    if (!isUsableHost(hostOf(authority))) throw Failure(errors::malformedUrl);
    const std::string_view resource = rest.substr(authority.size());
    scheme.append("://").append(authority);
    if (!resource.starts_with('/')) scheme += '/';
    return scheme.append(escaped(resource));
}

}  // namespace velmora
