#include "platform/curl/curl_library.h"

#include <dlfcn.h>

#include <stdexcept>
#include <string>

namespace velmora::curl {
namespace {

template <class Function>
void find(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(library, name));
    if (function == nullptr) throw std::runtime_error(std::string("libcurl has no ") + name);
}

CurlLibrary load() {
    void* library = dlopen("libcurl.so.4", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) throw std::runtime_error("there is no libcurl.so.4");
    CurlLibrary loaded{};
    find(library, "curl_global_init", loaded.globalInit);
    find(library, "curl_global_cleanup", loaded.globalCleanup);
    find(library, "curl_slist_free_all", loaded.slistFreeAll);
    find(library, "curl_easy_init", loaded.easyInit);
    find(library, "curl_easy_cleanup", loaded.easyCleanup);
    find(library, "curl_easy_setopt", loaded.easySetopt);
    find(library, "curl_easy_getinfo", loaded.easyGetinfo);
    find(library, "curl_easy_nextheader", loaded.easyNextheader);
    find(library, "curl_share_init", loaded.shareInit);
    find(library, "curl_share_cleanup", loaded.shareCleanup);
    find(library, "curl_share_setopt", loaded.shareSetopt);
    find(library, "curl_multi_init", loaded.multiInit);
    find(library, "curl_multi_cleanup", loaded.multiCleanup);
    find(library, "curl_multi_add_handle", loaded.multiAddHandle);
    find(library, "curl_multi_remove_handle", loaded.multiRemoveHandle);
    find(library, "curl_multi_info_read", loaded.multiInfoRead);
    find(library, "curl_multi_perform", loaded.multiPerform);
    find(library, "curl_multi_poll", loaded.multiPoll);
    find(library, "curl_multi_wakeup", loaded.multiWakeup);
    return loaded;
}

}  // namespace

const CurlLibrary& curlLibrary() {
    static const CurlLibrary library = load();
    return library;
}

}  // namespace velmora::curl
