#include "platform/curl/cookie_jar.h"

#include <algorithm>
#include <array>

#include "base/failure.h"
#include "base/text.h"

namespace velmora::curl {
namespace {

constexpr std::size_t largestFile = 1'000'000;
constexpr std::size_t mostCookies = 1'000;
constexpr std::size_t longestCookie = 8'192;

// Host, whole domain or not, path, secure or not, moment of expiry, name, value.
constexpr std::ptrdiff_t tabsInCookie = 6;
constexpr int expiryField = 4;

/// Whether the library may see the line: it takes some words for orders.
bool isCookie(std::string_view line) {
    return line.size() <= longestCookie && std::ranges::count(line, '\t') == tabsInCookie &&
           line.find('\0') == std::string_view::npos;
}

/// Whether the cookie ends with the program that got it.
bool endsWithProgram(std::string_view line) {
    for (int field = 0; field < expiryField; ++field) line.remove_prefix(line.find('\t') + 1);
    return line.starts_with("0\t");
}

}  // namespace

CookieJar::CookieJar(Files& files, std::string path)
    : files_(files),
      path_(std::move(path)),
      share_(curlLibrary().shareInit()),
      keeper_(curlLibrary().easyInit()) {
    curlLibrary().shareSetopt(share_.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_COOKIE);
    curlLibrary().easySetopt(keeper_.get(), CURLOPT_SHARE, share_.get());
    curlLibrary().easySetopt(keeper_.get(), CURLOPT_COOKIEFILE, "");
    passOver([this] {
        const std::string text = files_.read(path_);
        if (text.size() > largestFile) return;
        for (const std::string_view line : splitLines(text)) {
            if (isCookie(line))
                curlLibrary().easySetopt(keeper_.get(), CURLOPT_COOKIELIST, std::string(line).c_str());
        }
    });
    saved_ = lasting();
}

std::string CookieJar::lasting() const {
    curl_slist* first = nullptr;
    curlLibrary().easyGetinfo(keeper_.get(), CURLINFO_COOKIELIST, &first);
    const List cookies(first);
    std::string text;
    std::size_t count = 0;
    for (const curl_slist* cookie = first; cookie && count < mostCookies; cookie = cookie->next) {
        const std::string_view line = cookie->data;
        if (!isCookie(line) || endsWithProgram(line)) continue;
        text.append(line).append("\n");
        ++count;
    }
    return text;
}

void CookieJar::save() {
    std::string now = lasting();
    if (now == saved_) return;
    passOver([&] {
        files_.replace(path_, now, Privacy::ownersOnly);
        saved_ = std::move(now);
    });
}

}  // namespace velmora::curl
