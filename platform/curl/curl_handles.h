#pragma once

#include <curl/curl.h>

#include <memory>

namespace velmora::curl {

// The library's handles are all of type void, so each kind needs a deleter of its own.
template <auto release>
struct Releaser {
    template <class Handle>
    void operator()(Handle* handle) const {
        static_cast<void>(release(handle));
    }
};

/// One transfer, and what it may be reused for.
using Easy = std::unique_ptr<CURL, Releaser<curl_easy_cleanup>>;
/// What a thread's transfers have in common.
using Share = std::unique_ptr<CURLSH, Releaser<curl_share_cleanup>>;
/// A set of transfers that run side by side in one thread.
using Multi = std::unique_ptr<CURLM, Releaser<curl_multi_cleanup>>;
using List = std::unique_ptr<curl_slist, Releaser<curl_slist_free_all>>;

}  // namespace velmora::curl
