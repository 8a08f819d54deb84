#pragma once

// The platform's own records and codes where it has them; elsewhere the same names and values.
#if __has_include(<CoreAudio/CoreAudio.h>)
#include <CoreAudio/CoreAudio.h>
#else

#include <cstdint>

struct AudioObjectPropertyAddress {
    std::uint32_t mSelector;
    std::uint32_t mScope;
    std::uint32_t mElement;
};

struct AudioStreamBasicDescription {
    double mSampleRate;
    std::uint32_t mFormatID;
    std::uint32_t mFormatFlags;
    std::uint32_t mBytesPerPacket;
    std::uint32_t mFramesPerPacket;
    std::uint32_t mBytesPerFrame;
    std::uint32_t mChannelsPerFrame;
    std::uint32_t mBitsPerChannel;
    std::uint32_t mReserved;
};

static_assert(sizeof(AudioObjectPropertyAddress) == 12);
static_assert(sizeof(AudioStreamBasicDescription) == 40);

inline constexpr std::uint32_t kAudioObjectSystemObject = 1;
inline constexpr std::uint32_t kAudioHardwarePropertyDevices = 0x64657623;           // 'dev#'
inline constexpr std::uint32_t kAudioDevicePropertyStreamConfiguration = 0x736C6179; // 'slay'
inline constexpr std::uint32_t kAudioObjectPropertyName = 0x6C6E616D;                // 'lnam'
inline constexpr std::uint32_t kAudioDevicePropertyNominalSampleRate = 0x6E737274;   // 'nsrt'
inline constexpr std::uint32_t kAudioObjectPropertyScopeGlobal = 0x676C6F62;         // 'glob'
inline constexpr std::uint32_t kAudioObjectPropertyScopeOutput = 0x6F757470;         // 'outp'
inline constexpr std::uint32_t kAudioDevicePropertyStreams = 0x73746D23;             // 'stm#'
inline constexpr std::uint32_t kAudioStreamPropertyVirtualFormat = 0x73666D74;       // 'sfmt'
inline constexpr std::uint32_t kAudioFormatLinearPCM = 0x6C70636D;                   // 'lpcm'
inline constexpr std::uint32_t kAudioFormatFlagIsFloat = 1;
inline constexpr std::uint32_t kAudioFormatFlagIsBigEndian = 2;
inline constexpr std::uint32_t kAudioFormatFlagIsNonInterleaved = 32;

inline constexpr std::int32_t kAudioHardwareNotRunningError = 0x73746F70;      // 'stop'
inline constexpr std::int32_t kAudioHardwareUnspecifiedError = 0x77686174;     // 'what'
inline constexpr std::int32_t kAudioHardwareUnknownPropertyError = 0x77686F3F; // 'who?'
inline constexpr std::int32_t kAudioHardwareBadPropertySizeError = 0x2173697A; // '!siz'
inline constexpr std::int32_t kAudioHardwareBadObjectError = 0x216F626A;       // '!obj'
inline constexpr std::int32_t kAudioHardwareBadDeviceError = 0x21646576;       // '!dev'

#endif

/// The main element of every object. A literal, because the name differs between systems' versions.
inline constexpr unsigned int kMainElement = 0;
