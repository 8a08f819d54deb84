#pragma once

// A double, see CoreFoundation/CoreFoundation.h.

#include <CoreFoundation/CoreFoundation.h>

typedef UInt32 AudioObjectID;
typedef UInt32 AudioObjectPropertySelector;
typedef UInt32 AudioObjectPropertyScope;
typedef UInt32 AudioObjectPropertyElement;
typedef UInt32 AudioFormatID;
typedef UInt32 AudioFormatFlags;
typedef struct dispatch_queue_s* dispatch_queue_t;

struct AudioObjectPropertyAddress {
    AudioObjectPropertySelector mSelector;
    AudioObjectPropertyScope mScope;
    AudioObjectPropertyElement mElement;
};

struct AudioBuffer {
    UInt32 mNumberChannels;
    UInt32 mDataByteSize;
    void* mData;
};

struct AudioBufferList {
    UInt32 mNumberBuffers;
    AudioBuffer mBuffers[1];
};

struct AudioStreamBasicDescription {
    Float64 mSampleRate;
    AudioFormatID mFormatID;
    AudioFormatFlags mFormatFlags;
    UInt32 mBytesPerPacket;
    UInt32 mFramesPerPacket;
    UInt32 mBytesPerFrame;
    UInt32 mChannelsPerFrame;
    UInt32 mBitsPerChannel;
    UInt32 mReserved;
};

struct SMPTETime {
    SInt16 mSubframes;
    SInt16 mSubframeDivisor;
    UInt32 mCounter;
    UInt32 mType;
    UInt32 mFlags;
    SInt16 mHours;
    SInt16 mMinutes;
    SInt16 mSeconds;
    SInt16 mFrames;
};

struct AudioTimeStamp {
    Float64 mSampleTime;
    UInt64 mHostTime;
    Float64 mRateScalar;
    UInt64 mWordClockTime;
    SMPTETime mSMPTETime;
    UInt32 mFlags;
    UInt32 mReserved;
};

struct AudioHardwareIOProcStreamUsage {
    void* mIOProc;
    UInt32 mNumberStreams;
    UInt32 mStreamIsOn[1];
};

enum : AudioObjectID { kAudioObjectSystemObject = 1 };
enum : AudioObjectPropertySelector {
    kAudioHardwarePropertyDevices = 0x64657623,
    kAudioDevicePropertyStreamConfiguration = 0x736C6179,
    kAudioObjectPropertyName = 0x6C6E616D,
    kAudioDevicePropertyNominalSampleRate = 0x6E737274,
    kAudioDevicePropertyStreams = 0x73746D23,
    kAudioStreamPropertyVirtualFormat = 0x73666D74,
    kAudioDevicePropertyIOProcStreamUsage = 0x73757365,
};
enum : AudioObjectPropertyScope {
    kAudioObjectPropertyScopeGlobal = 0x676C6F62,
    kAudioObjectPropertyScopeOutput = 0x6F757470,
    kAudioObjectPropertyScopeInput = 0x696E7074,
};
enum : AudioFormatID { kAudioFormatLinearPCM = 0x6C70636D };
enum : AudioFormatFlags {
    kAudioFormatFlagIsFloat = 1,
    kAudioFormatFlagIsBigEndian = 2,
    kAudioFormatFlagIsNonInterleaved = 32,
};
enum : OSStatus {
    kAudioHardwareNotRunningError = 0x73746F70,
    kAudioHardwareUnspecifiedError = 0x77686174,
    kAudioHardwareUnknownPropertyError = 0x77686F3F,
    kAudioHardwareBadPropertySizeError = 0x2173697A,
    kAudioHardwareBadObjectError = 0x216F626A,
    kAudioHardwareBadDeviceError = 0x21646576,
};

typedef OSStatus (*AudioDeviceIOProc)(AudioObjectID device, const AudioTimeStamp* now,
                                      const AudioBufferList* input, const AudioTimeStamp* inputTime,
                                      AudioBufferList* output, const AudioTimeStamp* outputTime,
                                      void* client);
typedef AudioDeviceIOProc AudioDeviceIOProcID;

extern "C" {
OSStatus AudioObjectGetPropertyDataSize(AudioObjectID object,
                                        const AudioObjectPropertyAddress* address,
                                        UInt32 qualifierSize, const void* qualifier, UInt32* bytes);
OSStatus AudioObjectGetPropertyData(AudioObjectID object, const AudioObjectPropertyAddress* address,
                                    UInt32 qualifierSize, const void* qualifier, UInt32* bytes,
                                    void* data);
OSStatus AudioObjectSetPropertyData(AudioObjectID object, const AudioObjectPropertyAddress* address,
                                    UInt32 qualifierSize, const void* qualifier, UInt32 bytes,
                                    const void* data);
OSStatus AudioDeviceStart(AudioObjectID device, AudioDeviceIOProcID proc);
OSStatus AudioDeviceStop(AudioObjectID device, AudioDeviceIOProcID proc);
OSStatus AudioDeviceDestroyIOProcID(AudioObjectID device, AudioDeviceIOProcID proc);

// The test itself is compiled by a compiler without blocks.
#if defined(__BLOCKS__)
typedef void (^AudioDeviceIOBlock)(const AudioTimeStamp* now, const AudioBufferList* input,
                                   const AudioTimeStamp* inputTime, AudioBufferList* output,
                                   const AudioTimeStamp* outputTime);
OSStatus AudioDeviceCreateIOProcIDWithBlock(AudioDeviceIOProcID* proc, AudioObjectID device,
                                            dispatch_queue_t queue, AudioDeviceIOBlock block);
#endif
}
