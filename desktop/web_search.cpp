#include "desktop/web_search.h"

#include <algorithm>
#include <array>

#include "base/failure.h"

namespace velmora {
namespace {

/// A prefix and a suffix for each service; the query goes between them. A service without a suffix has an
/// empty piece. The host is put in front of each prefix.
constexpr std::string_view paths =
    "/cgi-bin/query?pg=q&what=web&fmt=.&q=||"
    "/search.gw?c=web&search=||"
    "/?SW=web&SM=MC&MT=||"
    "/Titles?qt=|&col=WW&sv=IS&lk=noframes|"
    "/cgi-bin/pursuit?query=||"
    "/bin/search?p=||"
    "/cgi-bin/search.cgi?keywords=|&seekindex=index&maxresults=025&cb=|"
    "/?audiofindsearch=|&audiofindtype=";

struct Service {
    std::string_view name;
    std::string_view setting;  ///< key of its host
    std::int32_t token;        ///< number of its prefix
};

constexpr std::array services{
    Service{"Alta Vista", "AltaVista", 1}, Service{"Excite", "Excite", 3},
    Service{"Hotbot", "Hotbot", 5},        Service{"Infoseek", "Infoseek", 7},
    Service{"Lycos", "Lycos", 9},          Service{"Yahoo", "Yahoo", 11},
    Service{"SoftSeek", "SoftSeek", 13},   Service{"AudioFind", "AudioFind", 15},
};

}  // namespace

std::string GetToken(std::string_view text, char delimiter, std::int32_t index) {
    std::int32_t count = 1;
    std::string result;
    for (const char character : text) {
        if (character == delimiter) {
            ++count;
        } else if (count == index) {
            result.push_back(character);
        }
    }
    return result;
}

WebSearch::WebSearch(Needs needs) : needs_(std::move(needs)) {
    needs_.comEngine.Click.connect([this] { comEngine_Click(); });
    needs_.comQuery.Change.connect([this] { comQuery_Change(); });
    needs_.comQuery.Click.connect([this] { comQuery_Click(); });
    needs_.cmdSearch.Click.connect([this] { cmdSearch_Click(); });
    needs_.mnuSearch.Click.connect([this] { MnuSearch_Click(); });
}

std::string WebSearch::table() const {
    std::string table;
    for (const Service& service : services) {
        if (!table.empty()) table += '|';
        table += needs_.machine.value("Search", service.setting) + GetToken(paths, '|', service.token) + '|' +
                 GetToken(paths, '|', service.token + 1);
    }
    return table;
}

void WebSearch::openSearch(const std::string& query, std::int32_t engine) {
    const std::string pieces = table();
    const std::string address = GetToken(pieces, '|', engine) + query + GetToken(pieces, '|', engine + 1);
    passOver([&] { needs_.shell.open(address, needs_.applicationFolder); });
}

void WebSearch::comEngine_Click() {
    const std::string name = needs_.comEngine.Text;
    const auto* found = std::find_if(services.begin(), services.end(),
                                     [&name](const Service& service) { return service.name == name; });
    if (found != services.end()) SearchEngine = found->token;
}

void WebSearch::comQuery_Change() {
    SearchQuery = needs_.comQuery.Text;
}

void WebSearch::comQuery_Click() {
    SearchQuery = needs_.comQuery.List(needs_.comQuery.ListIndex());
}

void WebSearch::cmdSearch_Click() {
    passOver([&] { needs_.Character().Play("Search"); }, [&] { openSearch(SearchQuery, SearchEngine); },
             [&] { needs_.comQuery.AddItem(SearchQuery); });
}

void WebSearch::MnuSearch_Click() {
    needs_.show();
}

}  // namespace velmora
