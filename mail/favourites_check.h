#pragma once

#include <functional>
#include <memory>

#include "platform/clock.h"
#include "platform/inet.h"
#include "platform/list_controls.h"
#include "platform/menu.h"

namespace velmora {

/// Marks the favourite sites whose pages have changed within the last days.
class FavouritesCheck {
public:
    struct Needs {
        Inets& inets;
        Clock& clock;
        ComboBox& comFavouriteURL;
        std::function<Menu&(int)> mnuCustom;
        int& MailLoopIndex;  ///< the row that is asked for
    };
    explicit FavouritesCheck(Needs needs);

    /// Asks for each page in turn, which may take long; other events run meanwhile. A page that can't be
    /// had, or does not say when it has changed, is passed over.
    void run();

private:
    void check(int row);

    Needs needs_;
    const std::unique_ptr<Inet> Inet_;
};

}  // namespace velmora
