#include "platform/running_applications.h"

#import <AppKit/AppKit.h>

#include <utility>

#include "platform/macos/text.h"

namespace ulvak::platform {

std::vector<std::string> runningApplications() {
    @autoreleasepool {
        std::vector<std::string> names;
        for (NSRunningApplication* application in NSWorkspace.sharedWorkspace.runningApplications) {
            std::string name = textOf(application.localizedName);
            if (!name.empty())
                names.push_back(std::move(name));
        }
        return names;
    }
}

}  // namespace ulvak::platform
