#ifndef ULVAK_DECLARATIONS_FOUNDATION_H
#define ULVAK_DECLARATIONS_FOUNDATION_H

// The Foundation calls this program makes, declared by hand from the vendor's documentation, so that they can
// be checked without a Mac. A call missing here does not compile: read its documentation page before adding
// it. On a Mac the system's own headers are used, never these.
//
// Each declaration is preceded by its page, relative to
// developer.apple.com/documentation/

#include <objc/objc.h>
#include <stdint.h>

#define ULVAK_NULLABLE _Nullable

#pragma clang assume_nonnull begin

// objectivec/nsinteger
typedef long NSInteger;
// objectivec/nsuinteger
typedef unsigned long NSUInteger;

@class NSString, NSURL, NSError, NSNumber;

// foundation/nsfastenumeration
typedef struct {
    unsigned long state;
    id __unsafe_unretained ULVAK_NULLABLE* ULVAK_NULLABLE itemsPtr;
    unsigned long* ULVAK_NULLABLE mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained ULVAK_NULLABLE[_Nonnull])buffer
                                    count:(NSUInteger)len;
@end

// objectivec/nsobject-swift.protocol
@protocol NSObject
@end

// foundation/nscopying
@protocol NSCopying
@end

// objectivec/nsobject-swift.class
__attribute__((objc_root_class))
@interface NSObject<NSObject>
@end

// foundation/nsstring
@interface NSString : NSObject <NSCopying>
// foundation/nsstring/stringwithutf8string:
+ (instancetype ULVAK_NULLABLE)stringWithUTF8String:(const char*)nullTerminatedCString;
// foundation/nsstring/utf8string
@property(readonly, nullable) const char* UTF8String;
// foundation/nsstring/filesystemrepresentation
@property(readonly) const char* fileSystemRepresentation;
// foundation/nsstring/isequaltostring:
- (BOOL)isEqualToString:(NSString*)aString;
@end

// foundation/nsnumber
@interface NSNumber : NSObject
// foundation/nsnumber/longlongvalue
@property(readonly) long long longLongValue;
@end

// foundation/nsarray
@interface NSArray<__covariant ObjectType> : NSObject <NSFastEnumeration>
// foundation/nsarray/count
@property(readonly) NSUInteger count;
// foundation/nsarray/arraywithobjects:count: (what @[…] calls)
+ (instancetype)arrayWithObjects:(const ObjectType _Nonnull[_Nonnull])objects count:(NSUInteger)cnt;
@end

// foundation/nsmutablearray
@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
// foundation/nsarray/array
+ (instancetype)array;
// foundation/nsmutablearray/addobject:
- (void)addObject:(ObjectType)anObject;
@end

// foundation/nsdictionary
@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject
// foundation/nsdictionary/objectforkeyedsubscript: (what dictionary[key] calls)
- (ObjectType ULVAK_NULLABLE)objectForKeyedSubscript:(KeyType)key;
@end

// foundation/nserrordomain
typedef NSString* NSErrorDomain;
// foundation/nserroruserinfokey
typedef NSString* NSErrorUserInfoKey;
// foundation/nscocoaerrordomain
extern NSErrorDomain const NSCocoaErrorDomain;
// foundation/nsposixerrordomain
extern NSErrorDomain const NSPOSIXErrorDomain;
// foundation/nsunderlyingerrorkey
extern NSErrorUserInfoKey const NSUnderlyingErrorKey;

// foundation/nserror
@interface NSError : NSObject
// foundation/nserror/domain
@property(readonly, copy) NSErrorDomain domain;
// foundation/nserror/code
@property(readonly) NSInteger code;
// foundation/nserror/userinfo
@property(readonly, copy) NSDictionary<NSErrorUserInfoKey, id>* userInfo;
// foundation/nserror/localizeddescription
@property(readonly, copy) NSString* localizedDescription;
@end

// foundation/nsexception
@interface NSException : NSObject <NSCopying>
// foundation/nsexception/reason
@property(readonly, copy, nullable) NSString* reason;
@end

// foundation/nserror-codes, with the values that foundation/cocoaerror/code documents
enum : NSInteger {
    NSFileNoSuchFileError = 4,
    NSFileReadNoPermissionError = 257,
    NSFileReadNoSuchFileError = 260,
    NSFileWriteNoPermissionError = 513,
    NSFileWriteFileExistsError = 516,
    NSFileWriteOutOfSpaceError = 640,
    NSFileWriteVolumeReadOnlyError = 642,
    NSFeatureUnsupportedError = 3328,
};

// foundation/nsurlresourcekey
typedef NSString* NSURLResourceKey;
// foundation/nsurlvolumetotalcapacitykey
extern NSURLResourceKey const NSURLVolumeTotalCapacityKey;
// foundation/nsurlvolumeavailablecapacityforimportantusagekey
extern NSURLResourceKey const NSURLVolumeAvailableCapacityForImportantUsageKey;

// foundation/nsurl
@interface NSURL : NSObject <NSCopying>
// foundation/nsurl/fileurlwithfilesystemrepresentation:isdirectory:relativetourl:
+ (NSURL*)fileURLWithFileSystemRepresentation:(const char*)path
                                  isDirectory:(BOOL)isDir
                                relativeToURL:(NSURL* ULVAK_NULLABLE)baseURL;
// foundation/nsurl/urlwithstring:
+ (instancetype ULVAK_NULLABLE)URLWithString:(NSString*)URLString;
// foundation/nsurl/filereferenceurl()
- (NSURL* ULVAK_NULLABLE)fileReferenceURL;
// foundation/nsurl/filesystemrepresentation
@property(readonly) const char* fileSystemRepresentation;
// foundation/nsurl/resourcevaluesforkeys:error:
- (NSDictionary<NSURLResourceKey, id>* ULVAK_NULLABLE)
    resourceValuesForKeys:(NSArray<NSURLResourceKey>*)keys
                    error:(NSError* ULVAK_NULLABLE __autoreleasing* ULVAK_NULLABLE)error;
@end

// foundation/nsfilemanager
@interface NSFileManager : NSObject
// foundation/nsfilemanager/defaultmanager
@property(class, readonly, strong) NSFileManager* defaultManager;
// foundation/nsfilemanager/homedirectoryforcurrentuser
@property(readonly, copy) NSURL* homeDirectoryForCurrentUser;
// foundation/nsfilemanager/trashitematurl:resultingitemurl:error:
- (BOOL)trashItemAtURL:(NSURL*)url
      resultingItemURL:(NSURL* ULVAK_NULLABLE __autoreleasing* ULVAK_NULLABLE)outResultingURL
                 error:(NSError* ULVAK_NULLABLE __autoreleasing* ULVAK_NULLABLE)error;
@end

#ifdef __cplusplus
extern "C" {
#endif
// foundation/nstemporarydirectory()
NSString* NSTemporaryDirectory(void);
#ifdef __cplusplus
}
#endif

#pragma clang assume_nonnull end

#endif
