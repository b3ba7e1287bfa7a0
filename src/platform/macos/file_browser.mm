#include "platform/file_browser.h"

#import <AppKit/AppKit.h>

#include "platform/macos/text.h"

namespace ulvak::platform {

bool revealInFileBrowser(std::span<const std::string> paths) {
    @autoreleasepool {
        NSMutableArray<NSURL*>* urls = [NSMutableArray array];
        for (const std::string& path : paths) {
            if (NSURL* url = urlOf(path))
                [urls addObject:url];
        }
        if (urls.count > 0)
            [NSWorkspace.sharedWorkspace activateFileViewerSelectingURLs:urls];  // the Finder is always there
        return paths.empty() || urls.count > 0;
    }
}

bool openUrl(std::string_view url) {
    @autoreleasepool {
        NSString* text = [NSString stringWithUTF8String:std::string(url).c_str()];
        NSURL* address = text != nil ? [NSURL URLWithString:text] : nil;
        return address != nil && [NSWorkspace.sharedWorkspace openURL:address];
    }
}

bool hasPrivacySettings() {
    return true;
}

}  // namespace ulvak::platform
