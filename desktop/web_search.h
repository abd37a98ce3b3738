#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/agent_control.h"
#include "platform/controls.h"
#include "platform/list_controls.h"
#include "platform/machine_settings.h"
#include "platform/menu.h"
#include "platform/shell.h"

namespace velmora {

/// Piece number `index` of the text, counted from 1; empty for a number that there is no piece of.
std::string GetToken(std::string_view text, char delimiter, std::int32_t index);

/// The search panel: it sends a query to one of the search services by opening an address.
class WebSearch {
public:
    struct Needs {
        ComboBox& comEngine;
        ComboBox& comQuery;
        Button& cmdSearch;
        Menu& mnuSearch;
        Shell& shell;
        std::string applicationFolder;
        const MachineSettings& machine;
        std::function<AgentCharacter&()> Character;  ///< fails with 91 while there is none
        std::function<void()> show;                  ///< the window, with this panel
    };
    explicit WebSearch(Needs needs);

    /// Number of the chosen service's first piece in the table. While it is 0 the browser receives the query
    /// and behind it the first service's address: that is kept.
    std::int32_t SearchEngine = 0;
    std::string SearchQuery;

    /// Opens the address of that service for the query, which goes into it as it is.
    void openSearch(const std::string& query, std::int32_t engine);

    void comEngine_Click();
    void comQuery_Change();
    void comQuery_Click();
    void cmdSearch_Click();
    void MnuSearch_Click();

private:
    std::string table() const;

    Needs needs_;
};

}  // namespace velmora
