#pragma once

// A double of the few declarations that the macOS layer uses, in the system's names, so that it
// compiles and runs where that system is not.

#include <stddef.h>
#include <stdint.h>

typedef unsigned char Boolean;
typedef uint8_t UInt8;
typedef uint32_t UInt32;
typedef uint64_t UInt64;
typedef int32_t SInt32;
typedef int16_t SInt16;
typedef double Float64;
typedef SInt32 OSStatus;
typedef long CFIndex;
typedef UInt32 CFStringEncoding;
typedef const void* CFTypeRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFURL* CFURLRef;
typedef struct __CFBundle* CFBundleRef;

struct CFRange {
    CFIndex location;
    CFIndex length;
};

enum : CFStringEncoding { kCFStringEncodingUTF8 = 0x08000100 };

inline CFRange CFRangeMake(CFIndex location, CFIndex length) { return {location, length}; }

extern "C" {
void CFRelease(CFTypeRef object);
CFIndex CFStringGetLength(CFStringRef text);
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);
CFIndex CFStringGetBytes(CFStringRef text, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean external, UInt8* buffer, CFIndex most, CFIndex* used);
CFBundleRef CFBundleGetMainBundle(void);
CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef bundle);
Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolve, UInt8* buffer,
                                         CFIndex most);
}
