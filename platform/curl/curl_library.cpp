#include "platform/curl/curl_library.h"

#include "platform/posix/shared_library.h"

namespace velmora::curl {
namespace {

CurlLibrary load() {
    const SharedLibrary library("libcurl.so.4");
    CurlLibrary loaded{};
    library.find("curl_global_init", loaded.globalInit);
    library.find("curl_global_cleanup", loaded.globalCleanup);
    library.find("curl_slist_free_all", loaded.slistFreeAll);
    library.find("curl_easy_init", loaded.easyInit);
    library.find("curl_easy_cleanup", loaded.easyCleanup);
    library.find("curl_easy_setopt", loaded.easySetopt);
    library.find("curl_easy_getinfo", loaded.easyGetinfo);
    library.find("curl_easy_nextheader", loaded.easyNextheader);
    library.find("curl_share_init", loaded.shareInit);
    library.find("curl_share_cleanup", loaded.shareCleanup);
    library.find("curl_share_setopt", loaded.shareSetopt);
    library.find("curl_multi_init", loaded.multiInit);
    library.find("curl_multi_cleanup", loaded.multiCleanup);
    library.find("curl_multi_add_handle", loaded.multiAddHandle);
    library.find("curl_multi_remove_handle", loaded.multiRemoveHandle);
    library.find("curl_multi_info_read", loaded.multiInfoRead);
    library.find("curl_multi_perform", loaded.multiPerform);
    library.find("curl_multi_poll", loaded.multiPoll);
    library.find("curl_multi_wakeup", loaded.multiWakeup);
    return loaded;
}

}  // namespace

const CurlLibrary& curlLibrary() {
    static const CurlLibrary library = load();
    return library;
}

}  // namespace velmora::curl
