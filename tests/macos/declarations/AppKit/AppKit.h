#ifndef ULVAK_DECLARATIONS_APPKIT_H
#define ULVAK_DECLARATIONS_APPKIT_H

// The AppKit calls this program makes; see Foundation/Foundation.h.

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

// appkit/nsrunningapplication
@interface NSRunningApplication : NSObject
// appkit/nsrunningapplication/localizedname
@property(readonly, copy, nullable) NSString* localizedName;
@end

// appkit/nsworkspace
@interface NSWorkspace : NSObject
// appkit/nsworkspace/shared
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
// appkit/nsworkspace/runningapplications
@property(readonly, copy) NSArray<NSRunningApplication*>* runningApplications;
// appkit/nsworkspace/activatefileviewerselecting(_:)
- (void)activateFileViewerSelectingURLs:(NSArray<NSURL*>*)fileURLs;
// appkit/nsworkspace/open(_:)-objc
- (BOOL)openURL:(NSURL*)url;
@end

#pragma clang assume_nonnull end

#endif
