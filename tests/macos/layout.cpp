// What the program takes for granted of the platform's records and codes, checked by the compiler
// for each of its processors.

#include <CoreAudio/CoreAudio.h>

#define EXPECT_AT(record, field, offset)                                                           \
    static_assert(__builtin_offsetof(record, field) == (offset))

static_assert(sizeof(void*) == 8 && sizeof(Float64) == 8);

static_assert(sizeof(AudioObjectPropertyAddress) == 12);
EXPECT_AT(AudioObjectPropertyAddress, mSelector, 0);
EXPECT_AT(AudioObjectPropertyAddress, mScope, 4);
EXPECT_AT(AudioObjectPropertyAddress, mElement, 8);

static_assert(sizeof(AudioBuffer) == 16);
EXPECT_AT(AudioBuffer, mNumberChannels, 0);
EXPECT_AT(AudioBuffer, mDataByteSize, 4);
EXPECT_AT(AudioBuffer, mData, 8);
static_assert(sizeof(AudioBufferList) == 24);
EXPECT_AT(AudioBufferList, mNumberBuffers, 0);
EXPECT_AT(AudioBufferList, mBuffers, 8);

static_assert(sizeof(AudioStreamBasicDescription) == 40);
EXPECT_AT(AudioStreamBasicDescription, mSampleRate, 0);
EXPECT_AT(AudioStreamBasicDescription, mFormatID, 8);
EXPECT_AT(AudioStreamBasicDescription, mFormatFlags, 12);
EXPECT_AT(AudioStreamBasicDescription, mBytesPerFrame, 24);
EXPECT_AT(AudioStreamBasicDescription, mChannelsPerFrame, 28);
EXPECT_AT(AudioStreamBasicDescription, mBitsPerChannel, 32);

static_assert(sizeof(SMPTETime) == 24 && sizeof(AudioTimeStamp) == 64);
EXPECT_AT(AudioTimeStamp, mSMPTETime, 32);
EXPECT_AT(AudioTimeStamp, mFlags, 56);

EXPECT_AT(AudioHardwareIOProcStreamUsage, mNumberStreams, 8);
EXPECT_AT(AudioHardwareIOProcStreamUsage, mStreamIsOn, 12);

constexpr UInt32 code(const char (&text)[5]) {
    UInt32 value = 0;
    for (int i = 0; i < 4; ++i)
        value = value << 8 | static_cast<unsigned char>(text[i]);
    return value;
}
static_assert(kAudioObjectSystemObject == 1);
static_assert(kAudioHardwarePropertyDevices == code("dev#"));
static_assert(kAudioDevicePropertyStreamConfiguration == code("slay"));
static_assert(kAudioObjectPropertyName == code("lnam"));
static_assert(kAudioDevicePropertyNominalSampleRate == code("nsrt"));
static_assert(kAudioDevicePropertyStreams == code("stm#"));
static_assert(kAudioStreamPropertyVirtualFormat == code("sfmt"));
static_assert(kAudioDevicePropertyIOProcStreamUsage == code("suse"));
static_assert(kAudioObjectPropertyScopeGlobal == code("glob"));
static_assert(kAudioObjectPropertyScopeOutput == code("outp"));
static_assert(kAudioObjectPropertyScopeInput == code("inpt"));
static_assert(kAudioFormatLinearPCM == code("lpcm"));
static_assert(kAudioFormatFlagIsFloat == 1);
static_assert(kAudioFormatFlagIsBigEndian == 2);
static_assert(kAudioFormatFlagIsNonInterleaved == 32);
static_assert(kAudioHardwareNotRunningError == code("stop"));
static_assert(kAudioHardwareUnspecifiedError == code("what"));
static_assert(kAudioHardwareUnknownPropertyError == code("who?"));
static_assert(kAudioHardwareBadPropertySizeError == code("!siz"));
static_assert(kAudioHardwareBadObjectError == code("!obj"));
static_assert(kAudioHardwareBadDeviceError == code("!dev"));
