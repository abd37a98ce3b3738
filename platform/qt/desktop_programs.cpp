#include "platform/qt/desktop_programs.h"

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include <algorithm>
#include <array>
#include <memory>
#include <stdexcept>

#include "platform/posix/shared_library.h"

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

// The functions of GIO that are used. The library is loaded when a desktop's program is first looked for.
struct Gio {
    decltype(&::g_object_unref) objectUnref;
    decltype(&::g_list_free_full) listFreeFull;
    decltype(&::g_app_info_get_all) getAll;
    decltype(&::g_app_info_get_default_for_type) getDefaultForType;
    decltype(&::g_app_info_get_id) getId;
    decltype(&::g_app_info_should_show) shouldShow;
    decltype(&::g_app_info_launch) launch;
    decltype(&::g_desktop_app_info_get_categories) getCategories;
    decltype(&::g_desktop_app_info_new) newFromId;
};

Gio load() {
    const SharedLibrary library("libgio-2.0.so.0");
    Gio loaded{};
    library.find("g_object_unref", loaded.objectUnref);
    library.find("g_list_free_full", loaded.listFreeFull);
    library.find("g_app_info_get_all", loaded.getAll);
    library.find("g_app_info_get_default_for_type", loaded.getDefaultForType);
    library.find("g_app_info_get_id", loaded.getId);
    library.find("g_app_info_should_show", loaded.shouldShow);
    library.find("g_app_info_launch", loaded.launch);
    library.find("g_desktop_app_info_get_categories", loaded.getCategories);
    library.find("g_desktop_app_info_new", loaded.newFromId);
    return loaded;
}

const Gio& gio() {
    static const Gio library = load();
    return library;
}

struct Unref {
    void operator()(GAppInfo* info) const { gio().objectUnref(info); }
};
using AppInfo = std::unique_ptr<GAppInfo, Unref>;

std::string idOf(GAppInfo& info) {
    const char* id = gio().getId(&info);
    return id ? id : "";
}

bool isOf(GAppInfo& info, std::string_view category) {
    const char* listed = gio().getCategories(reinterpret_cast<GDesktopAppInfo*>(&info));
    const auto closed = [](std::string_view text) { return std::string(";").append(text).append(";"); };
    return gio().shouldShow(&info) != FALSE &&
           closed(listed ? listed : "").find(closed(category)) != std::string::npos;
}

// Of several the first in the order of their names, so that it is the same one each time.
std::string firstOf(std::string_view category) {
    std::string first;
    GList* all = gio().getAll();
    for (const GList* each = all; each; each = each->next) {
        auto& info = *static_cast<GAppInfo*>(each->data);
        const std::string id = idOf(info);
        if (isOf(info, category) && (first.empty() || id < first)) first = id;
    }
    gio().listFreeFull(all, gio().objectUnref);
    return first;
}

std::string defaultFor(const Role& role) {
    for (const char* type : role.contentTypes) {
        if (!type) continue;
        if (const AppInfo info{gio().getDefaultForType(type, FALSE)}) return idOf(*info);
    }
    return {};
}

}  // namespace

std::optional<DesktopProgram> desktopProgram(std::string_view role) {
    const auto* found =
        std::find_if(roles.begin(), roles.end(), [role](const Role& each) { return each.name == role; });
    if (found == roles.end()) return {};
    std::string id;
    try {
        id = defaultFor(*found);
        if (id.empty()) id = firstOf(found->category);
    } catch (const std::runtime_error&) {
        id.clear();  // a machine without the library has no programs by role
    }
    return DesktopProgram{std::move(id), QString::fromLatin1(found->document)};
}

void startDesktopProgram(const std::string& id) {
    const AppInfo info{reinterpret_cast<GAppInfo*>(gio().newFromId(id.c_str()))};
    if (info) gio().launch(info.get(), nullptr, nullptr, nullptr);
}

}  // namespace velmora::qt
