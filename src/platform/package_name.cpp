#include "platform/package_name.h"

#include <algorithm>
#include <array>
#include <string>

namespace ulvak::platform {
namespace {

/// Lower case.
constexpr std::array<std::string_view, 24> packageExtensions = {
    "app",          "aplibrary",     "appex",    "band",      "bundle",       "fcpbundle",
    "framework",    "imovielibrary", "kext",     "logicx",    "lrlibrary",    "musiclibrary",
    "photolibrary", "photoslibrary", "plugin",   "pvm",       "sparsebundle", "trace",
    "tvlibrary",    "utm",           "vmwarevm", "xcarchive", "xcodeproj",    "xcworkspace"};

}  // namespace

bool isPackageName(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0)
        return false;
    std::string extension(name.substr(dot + 1));
    std::ranges::transform(extension, extension.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
    });
    return std::ranges::find(packageExtensions, extension) != packageExtensions.end();
}

}  // namespace ulvak::platform
