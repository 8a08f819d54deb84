#include "platform/linux/alsa/AlsaPcm.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace tallyvox {
namespace {

constexpr int kWaitMilliseconds = 100;

/// Periods that the hardware's buffer holds.
constexpr snd_pcm_uframes_t kPeriods = 4;

/// The usual rates, the likeliest first: many devices have fewer channels at the higher ones.
constexpr std::array<unsigned, 8> kRates{48000, 44100, 96000, 88200, 192000, 176400, 32000, 384000};

constexpr std::array<std::pair<snd_pcm_format_t, SampleFormat>, 5> kFormats{{
    {SND_PCM_FORMAT_FLOAT, SampleFormat::float32},
    {SND_PCM_FORMAT_S32, SampleFormat::int32},
    {SND_PCM_FORMAT_S24, SampleFormat::int24},
    {SND_PCM_FORMAT_S24_3LE, SampleFormat::packed24},
    {SND_PCM_FORMAT_S16, SampleFormat::int16},
}};

struct Free {
    void operator()(snd_pcm_hw_params_t* params) const noexcept { snd_pcm_hw_params_free(params); }
    void operator()(snd_pcm_sw_params_t* params) const noexcept { snd_pcm_sw_params_free(params); }
};
using HardwareParameters = std::unique_ptr<snd_pcm_hw_params_t, Free>;
using SoftwareParameters = std::unique_ptr<snd_pcm_sw_params_t, Free>;

/// The settings that the hardware has without any conversion, cut down to an access and a format
/// of ours; null where that leaves none.
HardwareParameters settings(snd_pcm_t* pcm, bool& interleaved, SampleFormat& format) {
    snd_pcm_hw_params_t* memory = nullptr;
    if (snd_pcm_hw_params_malloc(&memory) < 0)
        return nullptr;
    HardwareParameters params(memory);
    if (snd_pcm_hw_params_any(pcm, memory) < 0 ||
        snd_pcm_hw_params_set_rate_resample(pcm, memory, 0) < 0)
        return nullptr;

    interleaved = snd_pcm_hw_params_set_access(pcm, memory, SND_PCM_ACCESS_RW_INTERLEAVED) >= 0;
    if (!interleaved &&
        snd_pcm_hw_params_set_access(pcm, memory, SND_PCM_ACCESS_RW_NONINTERLEAVED) < 0)
        return nullptr;
    for (const auto& [alsa, ours] : kFormats) {
        if (snd_pcm_hw_params_set_format(pcm, memory, alsa) < 0)
            continue;
        format = ours;
        return params;
    }
    return nullptr;
}

/// The buffer starts to play when it is full, and stops when it is empty.
std::int32_t setThresholds(snd_pcm_t* pcm, snd_pcm_uframes_t period, snd_pcm_uframes_t buffer) {
    snd_pcm_sw_params_t* memory = nullptr;
    int status = snd_pcm_sw_params_malloc(&memory);
    if (status < 0)
        return status;
    const SoftwareParameters params(memory);
    if ((status = snd_pcm_sw_params_current(pcm, memory)) < 0 ||
        (status = snd_pcm_sw_params_set_start_threshold(pcm, memory, buffer / period * period)) <
            0 ||
        (status = snd_pcm_sw_params_set_avail_min(pcm, memory, period)) < 0 ||
        (status = snd_pcm_sw_params(pcm, memory)) < 0)
        return status;
    return 0;
}

}

std::int32_t AlsaPcm::open(const std::string& name, std::unique_ptr<AlsaPcm>& pcm) {
    snd_pcm_t* opened = nullptr;
    const int status =
        snd_pcm_open(&opened, name.c_str(), SND_PCM_STREAM_PLAYBACK, SND_PCM_NONBLOCK);
    if (status < 0)
        return status;
    if (opened == nullptr)
        return -ENODEV;
    pcm.reset(new AlsaPcm(opened));
    return 0;
}

AlsaPcm::~AlsaPcm() { snd_pcm_close(pcm_); }

std::optional<AlsaShape> AlsaPcm::shape() const {
    bool interleaved = false;
    SampleFormat format{};
    const auto params = settings(pcm_, interleaved, format);
    if (!params)
        return std::nullopt;
    const auto usual = std::find_if(kRates.begin(), kRates.end(), [&](unsigned rate) {
        return snd_pcm_hw_params_test_rate(pcm_, params.get(), rate, 0) == 0;
    });
    AlsaShape shape{};
    if (usual != kRates.end())
        shape.rate = *usual;
    else if (snd_pcm_hw_params_get_rate_max(params.get(), &shape.rate, nullptr) < 0)
        return std::nullopt;
    if (shape.rate == 0 || snd_pcm_hw_params_set_rate(pcm_, params.get(), shape.rate, 0) < 0 ||
        snd_pcm_hw_params_get_channels_max(params.get(), &shape.channels) < 0 ||
        shape.channels == 0 || shape.channels > kMostChannels)
        return std::nullopt;
    return shape;
}

std::int32_t AlsaPcm::configure(AlsaShape shape) {
    const auto params = settings(pcm_, interleaved_, format_);
    if (!params)
        return -EINVAL;
    snd_pcm_uframes_t period = shape.rate / 50;
    snd_pcm_uframes_t buffer = kPeriods * period;
    int status = 0;
    if ((status = snd_pcm_hw_params_set_rate(pcm_, params.get(), shape.rate, 0)) < 0 ||
        (status = snd_pcm_hw_params_set_channels(pcm_, params.get(), shape.channels)) < 0 ||
        (status = snd_pcm_hw_params_set_buffer_size_near(pcm_, params.get(), &buffer)) < 0 ||
        (status = snd_pcm_hw_params_set_period_size_near(pcm_, params.get(), &period, nullptr)) <
            0 ||
        (status = snd_pcm_hw_params(pcm_, params.get())) < 0 ||
        (status = snd_pcm_hw_params_get_period_size(params.get(), &period, nullptr)) < 0 ||
        (status = snd_pcm_hw_params_get_buffer_size(params.get(), &buffer)) < 0)
        return status;
    if (period == 0 || period > kMostFrames || buffer < period)
        return -EINVAL;
    period_ = period;
    return setThresholds(pcm_, period, buffer);
}

std::int64_t AlsaPcm::write(std::vector<void*>& buffers, std::size_t frames) {
    return interleaved_ ? snd_pcm_writei(pcm_, buffers.front(), frames)
                        : snd_pcm_writen(pcm_, buffers.data(), frames);
}

std::int32_t AlsaPcm::wait() { return snd_pcm_wait(pcm_, kWaitMilliseconds); }

std::int32_t AlsaPcm::prepare() { return snd_pcm_prepare(pcm_); }

std::int32_t AlsaPcm::resume() { return snd_pcm_resume(pcm_); }

void AlsaPcm::drop() { snd_pcm_drop(pcm_); }

}
