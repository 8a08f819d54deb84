#include "tests/alsa/FakeAlsa.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <memory>
#include <thread>

using tallyvox::FakeAlsa;

// NOLINTBEGIN: the names are the library's own.

struct _snd_pcm {
    FakeAlsa::Device* device;
    bool full = false;
};
struct _snd_ctl {
    FakeAlsa::Card* card;
};
struct _snd_ctl_card_info {
    FakeAlsa::Card* card;
};
struct _snd_pcm_info {
    unsigned device;
    FakeAlsa::Device* found;
};
struct _snd_pcm_hw_params {
    unsigned channels;
    unsigned rate;
    snd_pcm_uframes_t period;
    snd_pcm_uframes_t buffer;
    snd_pcm_format_t format;
};
struct _snd_pcm_sw_params {};

namespace tallyvox {

namespace {

std::unique_ptr<FakeAlsa> current = std::make_unique<FakeAlsa>();

std::size_t width(const FakeAlsa::Device& device) {
    return static_cast<std::size_t>(snd_pcm_format_physical_width(*device.formats.rbegin())) / 8;
}

template<typename T>
T* make() {
    const std::lock_guard lock(fakeAlsa().mutex);
    ++fakeAlsa().opened;
    return new T{};
}

template<typename T>
int allocate(std::string_view call, T** place) {
    if (const auto answer = fakeAlsa().scripted(call); answer && *answer < 0)
        return static_cast<int>(*answer);
    *place = make<T>();
    return 0;
}

template<typename T>
void release(T* object) {
    delete object;
    const std::lock_guard lock(fakeAlsa().mutex);
    --fakeAlsa().opened;
}

/// The script's answer, else `own`.
int answer(std::string_view call, bool own, int failure = -EINVAL) {
    const auto scripted = fakeAlsa().scripted(call);
    return scripted ? static_cast<int>(*scripted) : own ? 0 : failure;
}

}

FakeAlsa& fakeAlsa() { return *current; }
void renewFakeAlsa() { current = std::make_unique<FakeAlsa>(); }

std::optional<long> FakeAlsa::scripted(std::string_view call) {
    int number = 0;
    {
        const std::lock_guard lock(mutex);
        number = ++calls;
    }
    return script ? script(call, number) : std::nullopt;
}

}

using namespace tallyvox;

int snd_lib_error_set_handler(snd_lib_error_handler_t) { return 0; }

int snd_card_next(int* card) {
    if (const auto scripted = fakeAlsa().scripted("snd_card_next")) {
        *card = static_cast<int>(*scripted);
        return *scripted < 0 ? *card : 0;
    }
    const auto next = fakeAlsa().cards.upper_bound(*card);
    *card = next != fakeAlsa().cards.end() ? next->first : -1;
    return 0;
}

int snd_ctl_open(snd_ctl_t** control, const char* name, int) {
    int card = -1;
    std::sscanf(name, "hw:%d", &card);
    const auto found = fakeAlsa().cards.find(card);
    const int status = answer("snd_ctl_open", found != fakeAlsa().cards.end(), -ENOENT);
    if (status < 0 || found == fakeAlsa().cards.end())
        return status;
    *control = make<snd_ctl_t>();
    (*control)->card = &found->second;
    return status;
}
int snd_ctl_close(snd_ctl_t* control) {
    release(control);
    return 0;
}
int snd_ctl_card_info_malloc(snd_ctl_card_info_t** info) {
    return allocate("snd_ctl_card_info_malloc", info);
}
void snd_ctl_card_info_free(snd_ctl_card_info_t* info) { release(info); }
int snd_ctl_card_info(snd_ctl_t* control, snd_ctl_card_info_t* info) {
    info->card = control->card;
    return answer("snd_ctl_card_info", true);
}
/// A text that the script may leave out.
static const char* told(std::string_view call, const std::string& text) {
    return fakeAlsa().scripted(call) ? nullptr : text.c_str();
}
const char* snd_ctl_card_info_get_id(const snd_ctl_card_info_t* info) {
    return told("snd_ctl_card_info_get_id", info->card->id);
}
const char* snd_ctl_card_info_get_name(const snd_ctl_card_info_t* info) {
    return told("snd_ctl_card_info_get_name", info->card->name);
}
const char* snd_ctl_card_info_get_longname(const snd_ctl_card_info_t* info) {
    return told("snd_ctl_card_info_get_longname", info->card->longname);
}
int snd_ctl_pcm_next_device(snd_ctl_t* control, int* device) {
    if (const auto scripted = fakeAlsa().scripted("snd_ctl_pcm_next_device")) {
        *device = static_cast<int>(*scripted);
        return *scripted < 0 ? *device : 0;
    }
    const auto next = control->card->devices.upper_bound(*device);
    *device = next != control->card->devices.end() ? next->first : -1;
    return 0;
}
int snd_pcm_info_malloc(snd_pcm_info_t** info) { return allocate("snd_pcm_info_malloc", info); }
void snd_pcm_info_free(snd_pcm_info_t* info) { release(info); }
void snd_pcm_info_set_device(snd_pcm_info_t* info, unsigned device) { info->device = device; }
void snd_pcm_info_set_subdevice(snd_pcm_info_t*, unsigned) {}
void snd_pcm_info_set_stream(snd_pcm_info_t*, snd_pcm_stream_t) {}
int snd_ctl_pcm_info(snd_ctl_t* control, snd_pcm_info_t* info) {
    auto& devices = control->card->devices;
    const auto found = devices.find(static_cast<int>(info->device));
    info->found = found != devices.end() ? &found->second : nullptr;
    const int status = answer("snd_ctl_pcm_info", info->found != nullptr, -ENOENT);
    return info->found == nullptr && status >= 0 ? -ENOENT : status;
}
const char* snd_pcm_info_get_name(const snd_pcm_info_t* info) {
    return told("snd_pcm_info_get_name", info->found->name);
}

int snd_pcm_open(snd_pcm_t** pcm, const char* name, snd_pcm_stream_t, int) {
    int card = -1;
    int number = -1;
    std::sscanf(name, "hw:%d,%d", &card, &number);
    const auto at = fakeAlsa().cards.find(card);
    FakeAlsa::Device* device = nullptr;
    if (at != fakeAlsa().cards.end() && at->second.devices.contains(number))
        device = &at->second.devices[number];
    const int status = answer("snd_pcm_open", device != nullptr, -ENODEV);
    if (status < 0 || device == nullptr)
        return status;
    if (device->busy)
        return -EBUSY;
    *pcm = make<snd_pcm_t>();
    (*pcm)->device = device;
    return 0;
}
int snd_pcm_close(snd_pcm_t* pcm) {
    release(pcm);
    return 0;
}
int snd_pcm_hw_params_malloc(snd_pcm_hw_params_t** params) {
    return allocate("snd_pcm_hw_params_malloc", params);
}
void snd_pcm_hw_params_free(snd_pcm_hw_params_t* params) { release(params); }
int snd_pcm_hw_params_any(snd_pcm_t* pcm, snd_pcm_hw_params_t* params) {
    params->channels = pcm->device->channels;
    return answer("snd_pcm_hw_params_any", true);
}
int snd_pcm_hw_params_set_rate_resample(snd_pcm_t*, snd_pcm_hw_params_t*, unsigned) {
    return answer("snd_pcm_hw_params_set_rate_resample", true);
}
int snd_pcm_hw_params_set_access(snd_pcm_t* pcm, snd_pcm_hw_params_t*, snd_pcm_access_t access) {
    return answer("snd_pcm_hw_params_set_access", access == pcm->device->access);
}
int snd_pcm_hw_params_set_format(snd_pcm_t* pcm, snd_pcm_hw_params_t* params,
                                 snd_pcm_format_t format) {
    params->format = format;
    return answer("snd_pcm_hw_params_set_format", pcm->device->formats.contains(format));
}
int snd_pcm_hw_params_test_rate(snd_pcm_t* pcm, snd_pcm_hw_params_t*, unsigned rate, int) {
    return answer("snd_pcm_hw_params_test_rate", pcm->device->rates.contains(rate));
}
int snd_pcm_hw_params_get_rate_max(const snd_pcm_hw_params_t*, unsigned* rate, int*) {
    const auto scripted = fakeAlsa().scripted("snd_pcm_hw_params_get_rate_max");
    *rate = scripted ? static_cast<unsigned>(*scripted) : 11025;
    return scripted && *scripted < 0 ? static_cast<int>(*scripted) : 0;
}
int snd_pcm_hw_params_set_rate(snd_pcm_t* pcm, snd_pcm_hw_params_t*, unsigned rate, int) {
    return answer("snd_pcm_hw_params_set_rate", pcm->device->rates.contains(rate));
}
int snd_pcm_hw_params_get_channels_max(const snd_pcm_hw_params_t* params, unsigned* channels) {
    const auto scripted = fakeAlsa().scripted("snd_pcm_hw_params_get_channels_max");
    *channels = scripted ? static_cast<unsigned>(*scripted) : params->channels;
    return scripted && *scripted < 0 ? static_cast<int>(*scripted) : 0;
}
int snd_pcm_hw_params_set_channels(snd_pcm_t* pcm, snd_pcm_hw_params_t*, unsigned channels) {
    return answer("snd_pcm_hw_params_set_channels", channels == pcm->device->channels);
}
int snd_pcm_hw_params_set_buffer_size_near(snd_pcm_t*, snd_pcm_hw_params_t* params,
                                           snd_pcm_uframes_t* frames) {
    params->buffer = *frames;
    return answer("snd_pcm_hw_params_set_buffer_size_near", true);
}
int snd_pcm_hw_params_set_period_size_near(snd_pcm_t*, snd_pcm_hw_params_t* params,
                                           snd_pcm_uframes_t* frames, int*) {
    params->period = *frames;
    return answer("snd_pcm_hw_params_set_period_size_near", true);
}
int snd_pcm_hw_params(snd_pcm_t* pcm, snd_pcm_hw_params_t* params) {
    // From here on it takes what was chosen.
    const auto format = params->format;
    pcm->device->formats = {format};
    return answer("snd_pcm_hw_params", true);
}
int snd_pcm_hw_params_get_period_size(const snd_pcm_hw_params_t* params, snd_pcm_uframes_t* frames,
                                      int*) {
    const auto scripted = fakeAlsa().scripted("snd_pcm_hw_params_get_period_size");
    *frames = scripted ? static_cast<snd_pcm_uframes_t>(*scripted) : params->period;
    return scripted && *scripted < 0 ? static_cast<int>(*scripted) : 0;
}
int snd_pcm_hw_params_get_buffer_size(const snd_pcm_hw_params_t* params,
                                      snd_pcm_uframes_t* frames) {
    const auto scripted = fakeAlsa().scripted("snd_pcm_hw_params_get_buffer_size");
    *frames = scripted ? static_cast<snd_pcm_uframes_t>(*scripted) : params->buffer;
    return scripted && *scripted < 0 ? static_cast<int>(*scripted) : 0;
}
int snd_pcm_sw_params_malloc(snd_pcm_sw_params_t** params) {
    return allocate("snd_pcm_sw_params_malloc", params);
}
void snd_pcm_sw_params_free(snd_pcm_sw_params_t* params) { release(params); }
int snd_pcm_sw_params_current(snd_pcm_t*, snd_pcm_sw_params_t*) {
    return answer("snd_pcm_sw_params_current", true);
}
int snd_pcm_sw_params_set_start_threshold(snd_pcm_t*, snd_pcm_sw_params_t*, snd_pcm_uframes_t) {
    return answer("snd_pcm_sw_params_set_start_threshold", true);
}
int snd_pcm_sw_params_set_avail_min(snd_pcm_t*, snd_pcm_sw_params_t*, snd_pcm_uframes_t) {
    return answer("snd_pcm_sw_params_set_avail_min", true);
}
int snd_pcm_sw_params(snd_pcm_t*, snd_pcm_sw_params_t*) {
    return answer("snd_pcm_sw_params", true);
}
int snd_pcm_format_physical_width(snd_pcm_format_t format) {
    return format == SND_PCM_FORMAT_S16 ? 16 : format == SND_PCM_FORMAT_S24_3LE ? 24 : 32;
}

/// Takes half of what it is offered, and nothing every other time.
static snd_pcm_sframes_t take(snd_pcm_t* pcm, std::string_view call, snd_pcm_uframes_t frames) {
    if (const auto scripted = fakeAlsa().scripted(call))
        return *scripted;
    pcm->full = !pcm->full;
    if (pcm->full)
        return -EAGAIN;
    return static_cast<snd_pcm_sframes_t>((frames + 1) / 2);
}
static void hear(std::vector<std::byte>& heard, const void* samples, std::size_t bytes) {
    constexpr std::size_t most = 1U << 18U;
    const auto* first = static_cast<const std::byte*>(samples);
    heard.insert(heard.end(), first, first + std::min(bytes, most - std::min(most, heard.size())));
}
snd_pcm_sframes_t snd_pcm_writei(snd_pcm_t* pcm, const void* samples, snd_pcm_uframes_t frames) {
    const auto taken = take(pcm, "snd_pcm_writei", frames);
    const std::lock_guard lock(fakeAlsa().mutex);
    if (taken > 0 && taken <= static_cast<snd_pcm_sframes_t>(frames))
        hear(fakeAlsa().heard, samples,
             static_cast<std::size_t>(taken) * pcm->device->channels * width(*pcm->device));
    return taken;
}
snd_pcm_sframes_t snd_pcm_writen(snd_pcm_t* pcm, void** channels, snd_pcm_uframes_t frames) {
    const auto taken = take(pcm, "snd_pcm_writen", frames);
    const std::lock_guard lock(fakeAlsa().mutex);
    auto& heard = fakeAlsa().heardChannels;
    heard.resize(pcm->device->channels);
    if (taken > 0 && taken <= static_cast<snd_pcm_sframes_t>(frames))
        for (std::size_t i = 0; i < heard.size(); ++i)
            hear(heard[i], channels[i], static_cast<std::size_t>(taken) * width(*pcm->device));
    return taken;
}
int snd_pcm_wait(snd_pcm_t*, int) {
    std::this_thread::sleep_for(std::chrono::microseconds(100));
    return answer("snd_pcm_wait", true);
}
int snd_pcm_prepare(snd_pcm_t*) { return answer("snd_pcm_prepare", true); }
int snd_pcm_resume(snd_pcm_t*) { return answer("snd_pcm_resume", true); }
int snd_pcm_drop(snd_pcm_t*) { return answer("snd_pcm_drop", true); }

// NOLINTEND
