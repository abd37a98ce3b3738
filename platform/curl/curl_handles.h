#pragma once

#include <memory>

#include "platform/curl/curl_library.h"

namespace velmora::curl {

// The library's handles are all of type void, so each kind needs a deleter of its own.
template <auto release>
struct Releaser {
    template <class Handle>
    void operator()(Handle* handle) const {
        static_cast<void>((curlLibrary().*release)(handle));
    }
};

/// One transfer, and what it may be reused for.
using Easy = std::unique_ptr<CURL, Releaser<&CurlLibrary::easyCleanup>>;
/// What a thread's transfers have in common.
using Share = std::unique_ptr<CURLSH, Releaser<&CurlLibrary::shareCleanup>>;
/// A set of transfers that run side by side in one thread.
using Multi = std::unique_ptr<CURLM, Releaser<&CurlLibrary::multiCleanup>>;
using List = std::unique_ptr<curl_slist, Releaser<&CurlLibrary::slistFreeAll>>;

}  // namespace velmora::curl
