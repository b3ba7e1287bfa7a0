#include "ai/server/curl_library.h"

#include <dlfcn.h>

#include <array>
#include <optional>

namespace ulvak {
namespace {

/// One ABI under the names of its builds.
constexpr std::array sonames = {"libcurl.so.4", "libcurl-gnutls.so.4"};
/// 7.85, the first version that takes protocols by name.
constexpr unsigned oldestVersion = 0x075500;

void* openedLibrary() {
    for (const char* soname : sonames) {
        if (void* library = ::dlopen(soname, RTLD_NOW | RTLD_LOCAL))
            return library;
    }
    return nullptr;
}

template <typename Function>
bool find(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(::dlsym(library, name));
    return function != nullptr;
}

std::optional<CurlLibrary> loaded() {
    void* library = openedLibrary();
    if (library == nullptr)
        return std::nullopt;
    CurlLibrary curl;
    decltype(&::curl_global_init) globalInit = nullptr;
    decltype(&::curl_version_info) versionInfo = nullptr;
    const bool isComplete =
        find(library, "curl_global_init", globalInit) && find(library, "curl_version_info", versionInfo) &&
        find(library, "curl_easy_init", curl.easyInit) &&
        find(library, "curl_easy_cleanup", curl.easyCleanup) &&
        find(library, "curl_easy_setopt", curl.easySetopt) &&
        find(library, "curl_easy_getinfo", curl.easyGetinfo) &&
        find(library, "curl_multi_init", curl.multiInit) &&
        find(library, "curl_multi_cleanup", curl.multiCleanup) &&
        find(library, "curl_multi_add_handle", curl.multiAddHandle) &&
        find(library, "curl_multi_remove_handle", curl.multiRemoveHandle) &&
        find(library, "curl_multi_perform", curl.multiPerform) &&
        find(library, "curl_multi_poll", curl.multiPoll) &&
        find(library, "curl_multi_wakeup", curl.multiWakeup) &&
        find(library, "curl_multi_info_read", curl.multiInfoRead) &&
        find(library, "curl_slist_append", curl.slistAppend) &&
        find(library, "curl_slist_free_all", curl.slistFreeAll) && find(library, "curl_url", curl.url) &&
        find(library, "curl_url_cleanup", curl.urlCleanup) && find(library, "curl_url_get", curl.urlGet) &&
        find(library, "curl_url_set", curl.urlSet) && find(library, "curl_free", curl.free);
    if (!isComplete || versionInfo(CURLVERSION_NOW)->version_num < oldestVersion ||
        globalInit(CURL_GLOBAL_DEFAULT) != CURLE_OK)
        return std::nullopt;
    return curl;
}

}  // namespace

const CurlLibrary* CurlLibrary::instance() {
    static const std::optional<CurlLibrary> library = loaded();
    return library ? &*library : nullptr;
}

}  // namespace ulvak
