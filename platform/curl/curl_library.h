#pragma once

#include <curl/curl.h>

namespace velmora::curl {

/// The functions of libcurl that transfers use. The library is loaded when it is first needed: loading it and
/// the thirty libraries that it needs would take a third of the program's start.
struct CurlLibrary {
    decltype(&::curl_global_init) globalInit;
    decltype(&::curl_global_cleanup) globalCleanup;
    decltype(&::curl_slist_free_all) slistFreeAll;
    decltype(&::curl_easy_init) easyInit;
    decltype(&::curl_easy_cleanup) easyCleanup;
    decltype(&::curl_easy_setopt) easySetopt;
    decltype(&::curl_easy_getinfo) easyGetinfo;
    decltype(&::curl_easy_nextheader) easyNextheader;
    decltype(&::curl_share_init) shareInit;
    decltype(&::curl_share_cleanup) shareCleanup;
    decltype(&::curl_share_setopt) shareSetopt;
    decltype(&::curl_multi_init) multiInit;
    decltype(&::curl_multi_cleanup) multiCleanup;
    decltype(&::curl_multi_add_handle) multiAddHandle;
    decltype(&::curl_multi_remove_handle) multiRemoveHandle;
    decltype(&::curl_multi_info_read) multiInfoRead;
    decltype(&::curl_multi_perform) multiPerform;
    decltype(&::curl_multi_poll) multiPoll;
    decltype(&::curl_multi_wakeup) multiWakeup;
};

/// The library, which stays loaded from the first call on. Throws std::runtime_error if the machine has none,
/// or one that is too old. May be called in any thread.
const CurlLibrary& curlLibrary();

}  // namespace velmora::curl
