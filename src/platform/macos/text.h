#pragma once

#import <Foundation/Foundation.h>

#include <string>

namespace ulvak::platform {

/// As UTF-8; empty for nil.
inline std::string textOf(NSString* text) {
    const char* bytes = text.UTF8String;
    return bytes != nullptr ? bytes : "";
}

/// The bytes of the path that a file URL names; empty for what names none.
inline std::string pathOf(NSURL* url) {
    const char* bytes = url.fileSystemRepresentation;
    return bytes != nullptr ? bytes : "";
}

/// For an absolute path, whatever its bytes. A link at its end is meant itself.
inline NSURL* urlOf(const std::string& path) {
    return [NSURL fileURLWithFileSystemRepresentation:path.c_str() isDirectory:NO relativeToURL:nil];
}

}  // namespace ulvak::platform
