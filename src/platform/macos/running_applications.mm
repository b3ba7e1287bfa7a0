#include "platform/running_applications.h"

#import <AppKit/AppKit.h>
#include <unistd.h>

#include "platform/macos/text.h"

namespace ulvak::platform {

std::vector<std::string> runningApplications() {
    @autoreleasepool {
        std::vector<std::string> names;
        for (NSRunningApplication* application in NSWorkspace.sharedWorkspace.runningApplications) {
            if (application.processIdentifier == ::getpid())
                continue;
            const std::string shown = textOf(application.localizedName);
            // The bundle is called as the application itself, whatever the user's language.
            const std::string own =
                textOf(application.bundleURL.lastPathComponent.stringByDeletingPathExtension);
            if (!shown.empty())
                names.push_back(shown);
            if (!own.empty() && own != shown)
                names.push_back(own);
        }
        return names;
    }
}

}  // namespace ulvak::platform
