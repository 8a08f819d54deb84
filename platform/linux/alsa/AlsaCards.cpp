#include "platform/linux/alsa/AlsaCards.h"

#include "platform/common/Layer.h"

#include <alsa/asoundlib.h>

#include <functional>
#include <memory>
#include <string_view>

namespace tallyvox {
namespace {

/// More than any system has; keeps a card that lies from being asked for ever.
constexpr int kMostCards = 256;
constexpr int kMostDevices = 256;

struct Free {
    void operator()(snd_ctl_t* card) const noexcept { snd_ctl_close(card); }
    void operator()(snd_ctl_card_info_t* info) const noexcept { snd_ctl_card_info_free(info); }
    void operator()(snd_pcm_info_t* info) const noexcept { snd_pcm_info_free(info); }
};

std::string text(const char* given) { return given != nullptr ? given : ""; }

/// Tells the cards that take each other's place apart; the same in every program.
std::uint32_t fingerprint(std::string_view identity) noexcept {
    std::uint32_t hash = 2166136261U; // FNV-1a
    for (const char c : identity)
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
    return (hash ^ hash >> 14U) & 0x3FFFU;
}

void appendDevices(int card, std::vector<AlsaDevice>& devices) {
    const auto address = "hw:" + std::to_string(card);
    snd_ctl_t* opened = nullptr;
    if (snd_ctl_open(&opened, address.c_str(), SND_CTL_NONBLOCK) < 0 || opened == nullptr)
        return;
    const std::unique_ptr<snd_ctl_t, Free> control(opened);

    snd_ctl_card_info_t* cardMemory = nullptr;
    snd_pcm_info_t* pcmMemory = nullptr;
    if (snd_ctl_card_info_malloc(&cardMemory) < 0)
        return;
    const std::unique_ptr<snd_ctl_card_info_t, Free> cardInfo(cardMemory);
    if (snd_pcm_info_malloc(&pcmMemory) < 0)
        return;
    const std::unique_ptr<snd_pcm_info_t, Free> pcmInfo(pcmMemory);
    if (snd_ctl_card_info(opened, cardMemory) < 0)
        return;
    const auto cardName = text(snd_ctl_card_info_get_name(cardMemory));
    const auto identity = fingerprint(text(snd_ctl_card_info_get_id(cardMemory)) + '\n' +
                                      text(snd_ctl_card_info_get_longname(cardMemory)));

    int device = -1;
    for (int previous = -1; snd_ctl_pcm_next_device(opened, &device) >= 0 && device > previous &&
                            device < kMostDevices;
         previous = device) {
        const auto number = static_cast<unsigned>(device);
        snd_pcm_info_set_device(pcmMemory, number);
        snd_pcm_info_set_subdevice(pcmMemory, 0);
        snd_pcm_info_set_stream(pcmMemory, SND_PCM_STREAM_PLAYBACK);
        if (snd_ctl_pcm_info(opened, pcmMemory) < 0)
            continue; // it only records
        const auto name = text(snd_pcm_info_get_name(pcmMemory));
        devices.push_back({deviceId(LayerTag::alsa, std::uint64_t{identity} << 16U |
                                                        static_cast<unsigned>(card) << 8U | number),
                           name.empty() || name == cardName
                               ? cardName
                               : std::string(cardName).append(": ").append(name),
                           address + ',' + std::to_string(device)});
    }
}

}

std::vector<AlsaDevice> alsaDevices() {
    std::vector<AlsaDevice> devices;
    int card = -1;
    for (int previous = -1; snd_card_next(&card) >= 0 && card > previous && card < kMostCards;
         previous = card)
        appendDevices(card, devices);
    return devices;
}

}
