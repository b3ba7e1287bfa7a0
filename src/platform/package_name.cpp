#include "platform/package_name.h"

#include <algorithm>
#include <array>

#include "platform/ascii.h"

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
    return std::ranges::find(packageExtensions, lowerAscii(name.substr(dot + 1))) != packageExtensions.end();
}

}  // namespace ulvak::platform
