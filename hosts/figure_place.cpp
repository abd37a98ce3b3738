#include "hosts/figure_place.h"

#include <charconv>
#include <filesystem>
#include <system_error>

#include "base/failure.h"
#include "platform/files.h"

namespace velmora {
namespace {

std::optional<int> coordinate(const std::string& text) {
    constexpr int farthest = 100'000;
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool sensible =
        error == std::errc() && end == text.data() + text.size() && value >= -farthest && value <= farthest;
    return sensible ? std::optional(value) : std::nullopt;
}

}  // namespace

FigurePlace::FigurePlace(SettingsFile& settings, const std::string& folder)
    : settings_(settings), folder_(folder), file_(folder.empty() ? "" : path(folder, "state.ini")) {}

std::optional<QPoint> FigurePlace::kept() const {
    if (file_.empty()) return std::nullopt;
    const auto x = coordinate(settings_.read("Character", "X", "", file_));
    const auto y = coordinate(settings_.read("Character", "Y", "", file_));
    if (!x || !y) return std::nullopt;
    return QPoint(*x, *y);
}

void FigurePlace::keep(QPoint corner) {
    if (file_.empty()) return;
    std::error_code error;
    std::filesystem::create_directories(folder_, error);
    if (error) return;
    passOver([&] { settings_.write("Character", "X", std::to_string(corner.x()), file_); },
             [&] { settings_.write("Character", "Y", std::to_string(corner.y()), file_); });
}

}  // namespace velmora
