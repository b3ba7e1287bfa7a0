#include "platform/file_browser.h"

#import <AppKit/AppKit.h>

#include "platform/macos/text.h"

namespace ulvak::platform {

void revealInFileBrowser(std::span<const std::string> paths) {
    @autoreleasepool {
        NSMutableArray<NSURL*>* urls = [NSMutableArray array];
        for (const std::string& path : paths) {
            if (NSURL* url = urlOf(path))
                [urls addObject:url];
        }
        if (urls.count > 0)
            [NSWorkspace.sharedWorkspace activateFileViewerSelectingURLs:urls];
    }
}

void openUrl(std::string_view url) {
    @autoreleasepool {
        NSString* text = [NSString stringWithUTF8String:std::string(url).c_str()];
        NSURL* address = text != nil ? [NSURL URLWithString:text] : nil;
        // Dropped by design: where nothing can open it, nothing opens.
        if (address != nil)
            (void)[NSWorkspace.sharedWorkspace openURL:address];
    }
}

bool hasPrivacySettings() {
    return true;
}

}  // namespace ulvak::platform
