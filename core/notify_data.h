#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace velmora {

class Form;

/// What the icon in the tray tells its window by: the message number that a mouse move carries.
namespace tray_messages {
inline constexpr long leftButtonUp = 514;
inline constexpr long rightButtonDown = 516;
}  // namespace tray_messages

/// The record that the icon in the tray is added and deleted with.
struct NotifyData {
    static constexpr int message = 1;
    static constexpr int icon = 2;
    static constexpr int tip = 4;

    NotifyData(const Form& window, std::string_view text) : hwnd(&window) {
        text.copy(szTip.data(), szTip.size() - 1);  // the rest stays NUL
    }

    int cbSize = 88;
    const Form* hwnd;  ///< the window that is told, whose icon is shown
    int uID = 1;
    int uFlags = message | icon | tip;
    int uCallbackMessage = 512;
    std::array<char, 64> szTip{};  ///< ended by a NUL

    /// The tip up to its NUL.
    std::string tipText() const { return szTip.data(); }
};

}  // namespace velmora
