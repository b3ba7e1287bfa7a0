#pragma once

#include <curl/curl.h>

namespace ulvak {

/// The libcurl functions we use, loaded on first use. Linked in, libcurl and its thirty dependencies would
/// slow down every start by several milliseconds, and hardly any start needs them.
struct CurlLibrary {
    decltype(&::curl_easy_init) easyInit = nullptr;
    decltype(&::curl_easy_cleanup) easyCleanup = nullptr;
    decltype(&::curl_easy_setopt) easySetopt = nullptr;
    decltype(&::curl_easy_getinfo) easyGetinfo = nullptr;
    decltype(&::curl_multi_init) multiInit = nullptr;
    decltype(&::curl_multi_cleanup) multiCleanup = nullptr;
    decltype(&::curl_multi_add_handle) multiAddHandle = nullptr;
    decltype(&::curl_multi_remove_handle) multiRemoveHandle = nullptr;
    decltype(&::curl_multi_perform) multiPerform = nullptr;
    decltype(&::curl_multi_poll) multiPoll = nullptr;
    decltype(&::curl_multi_wakeup) multiWakeup = nullptr;
    decltype(&::curl_multi_info_read) multiInfoRead = nullptr;
    decltype(&::curl_slist_append) slistAppend = nullptr;
    decltype(&::curl_slist_free_all) slistFreeAll = nullptr;
    decltype(&::curl_url) url = nullptr;
    decltype(&::curl_url_cleanup) urlCleanup = nullptr;
    decltype(&::curl_url_get) urlGet = nullptr;
    decltype(&::curl_url_set) urlSet = nullptr;
    decltype(&::curl_free) free = nullptr;

    /// Loads the library once, from any thread; it stays loaded. Null if the system does not have it, or only
    /// a version too old to be restricted to this machine.
    [[nodiscard]] static const CurlLibrary* instance();
};

}  // namespace ulvak
