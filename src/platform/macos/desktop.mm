#include "platform/desktop.h"

#import <AppKit/AppKit.h>

#include <utility>

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
            [NSWorkspace.sharedWorkspace
                activateFileViewerSelectingURLs:urls];  // the Finder is always running
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

std::map<std::string, std::string, std::less<>> applicationNames() {
    return {};
}

std::optional<InstalledApplications> installedApplications() {
    return std::nullopt;
}

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

// The toolkit's palette already follows the system's appearance.
class ColorSchemeWatch::Desktop {};

// NOLINTNEXTLINE(performance-unnecessary-value-param): another system keeps it
ColorSchemeWatch::ColorSchemeWatch(Changed /*changed*/) {}

ColorSchemeWatch::~ColorSchemeWatch() = default;

// The bundle allows only one instance (LSMultipleInstancesProhibited): the system then brings the existing
// window to the front. Starting the executable inside it by hand opens another window.
class SingleInstance::Desktop {};

std::string activationToken() {
    return {};
}

SingleInstance::SingleInstance(const std::string& /*place*/, const LaunchRequest& /*request*/) {}
SingleInstance::~SingleInstance() = default;

SingleInstance::Role SingleInstance::role() const {
    return Role::first;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): another system keeps it
void SingleInstance::listen(Received /*received*/) {}

}  // namespace ulvak::platform
