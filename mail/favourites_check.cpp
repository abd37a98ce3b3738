#include "mail/favourites_check.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <string_view>
#include <utility>

#include "base/conversions.h"
#include "base/failure.h"

namespace velmora {
namespace {

constexpr int rows = 10;
constexpr int recentDays = 6;

/// The date in a header such as "Sun, 06 Nov 1994 08:49:37 GMT": of its first 16 characters the last 11.
/// Fails with 13.
std::chrono::sys_days dateIn(std::string_view header) {
    constexpr std::size_t head = 16;
    constexpr std::size_t date = 11;
    const std::string_view front = header.substr(0, head);
    return toDateTime(front.substr(front.size() - std::min(front.size(), date))).date;
}

}  // namespace

FavouritesCheck::FavouritesCheck(Needs needs) : needs_(std::move(needs)), Inet_(needs_.inets.create()) {}

void FavouritesCheck::run() {
    int& row = needs_.MailLoopIndex;
    for (row = 0; row < rows; ++row) {
        passOver([&] { check(row); });
    }
}

// The row is looked at again after the page is there: what ran meanwhile may have moved it.
void FavouritesCheck::check(int row) {
    Inet_->OpenURL(needs_.comFavouriteURL.List(row));
    const std::chrono::sys_days changed = dateIn(Inet_->GetHeader("Last-modified"));
    const std::chrono::sys_days today = needs_.clock.now().date;
    if (needs_.MailLoopIndex < 0 || needs_.MailLoopIndex >= rows) throw Failure(errors::invalidCall);
    if ((today - changed).count() < recentDays) needs_.mnuCustom(needs_.MailLoopIndex).Checked = true;
}

}  // namespace velmora
