#pragma once

#include <deque>
#include <optional>
#include <string_view>

#include "platform/menu.h"

namespace velmora {

/// The menus of the main window: `MnuMain`, which the character and the tray icon pop up, and
/// `mnuOptionsMenu` of the options button. Who owns an entry connects its `Click`; one that nobody owns does
/// nothing.
class MainMenu {
public:
    explicit MainMenu(Form& form);

    /// The entry of that name; `index` for a member of an array. A name that the tree lacks is a bug, and
    /// throws `std::logic_error`.
    Menu& operator()(std::string_view name, std::optional<int> index = {});

private:
    std::deque<Menu> entries_;
};

}  // namespace velmora
