#include "platform/qt/desktop_programs.h"

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include <algorithm>
#include <array>
#include <memory>

namespace velmora::qt {
namespace {

struct Role {
    std::string_view name;
    std::array<const char*, 2> contentTypes;  ///< whose default program it is; nullptr: none
    std::string_view category;                ///< a program of which will do otherwise
    const char* document;                     ///< what is opened if there is no program
};

constexpr std::array roles{
    Role{"calculator", {}, "Calculator", ""},
    Role{"audio-player", {"x-content/audio-cdda", "audio/mpeg"}, "Player", ""},
    Role{"word-processor",
         {"application/vnd.oasis.opendocument.text", "application/rtf"},
         "WordProcessor",
         ""},
    Role{"text-editor", {"text/plain", nullptr}, "TextEditor", ""},
    Role{"system-information", {}, "Monitor", "/etc/os-release"},
};

struct Unref {
    void operator()(GAppInfo* info) const { g_object_unref(info); }
};
using AppInfo = std::unique_ptr<GAppInfo, Unref>;

std::string idOf(GAppInfo& info) {
    const char* id = g_app_info_get_id(&info);
    return id ? id : "";
}

bool isOf(GAppInfo& info, std::string_view category) {
    const char* listed = g_desktop_app_info_get_categories(G_DESKTOP_APP_INFO(&info));
    const auto closed = [](std::string_view text) { return std::string(";").append(text).append(";"); };
    return g_app_info_should_show(&info) != FALSE &&
           closed(listed ? listed : "").find(closed(category)) != std::string::npos;
}

// Of several the first in the order of their names, so that it is the same one each time.
std::string firstOf(std::string_view category) {
    std::string first;
    GList* all = g_app_info_get_all();
    for (const GList* each = all; each; each = each->next) {
        auto& info = *static_cast<GAppInfo*>(each->data);
        const std::string id = idOf(info);
        if (isOf(info, category) && (first.empty() || id < first)) first = id;
    }
    g_list_free_full(all, g_object_unref);
    return first;
}

std::string defaultFor(const Role& role) {
    for (const char* type : role.contentTypes) {
        if (!type) continue;
        if (const AppInfo info{g_app_info_get_default_for_type(type, FALSE)}) return idOf(*info);
    }
    return {};
}

}  // namespace

std::optional<DesktopProgram> desktopProgram(std::string_view role) {
    const auto* found =
        std::find_if(roles.begin(), roles.end(), [role](const Role& each) { return each.name == role; });
    if (found == roles.end()) return {};
    std::string id = defaultFor(*found);
    if (id.empty()) id = firstOf(found->category);
    return DesktopProgram{std::move(id), QString::fromLatin1(found->document)};
}

void startDesktopProgram(const std::string& id) {
    const AppInfo info{G_APP_INFO(g_desktop_app_info_new(id.c_str()))};
    if (info) g_app_info_launch(info.get(), nullptr, nullptr, nullptr);
}

}  // namespace velmora::qt
