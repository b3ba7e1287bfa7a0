#pragma once

#import <Foundation/Foundation.h>

#include <string>

namespace ulvak::platform {

/// As UTF-8; empty for nil.
inline std::string textOf(NSString* text) {
    const char* bytes = text.UTF8String;
    return bytes != nullptr ? bytes : "";
}

/// The bytes of a file URL's path; empty for any other URL.
inline std::string pathOf(NSURL* url) {
    const char* bytes = url.fileSystemRepresentation;
    return bytes != nullptr ? bytes : "";
}

/// The URL of an absolute path with any bytes. Does not follow a link at its end.
inline NSURL* urlOf(const std::string& path) {
    return [NSURL fileURLWithFileSystemRepresentation:path.c_str() isDirectory:NO relativeToURL:nil];
}

}  // namespace ulvak::platform
