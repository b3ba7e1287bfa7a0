#pragma once

#include <curl/curl.h>

namespace ulvak {

/// The functions of libcurl that are used here, from a library that is loaded when the first of them is
/// needed. Linked in, it and the thirty libraries it brings along would make every start of the program
/// several milliseconds longer, and hardly any start asks for it.
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

    /// Loads it once, from any thread; stays loaded. Null when the system does not have it, or has one that
    /// is too old to be told to stay on this machine.
    [[nodiscard]] static const CurlLibrary* instance();
};

}  // namespace ulvak
