#include "audio/devices.h"

#include "audio/property.h"
#include "base/checked.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>
#include <utility>

namespace tallyvox {
namespace {

/// The channels of the buffer list in `block`, as far as its count and the block reach.
std::int64_t channelsOf(const std::vector<std::byte>& block) {
    constexpr std::size_t head = offsetof(AudioBufferList, mBuffers);
    if (block.size() < head)
        return 0;
    std::uint32_t stated = 0;
    std::memcpy(&stated, block.data() + offsetof(AudioBufferList, mNumberBuffers), sizeof stated);
    const std::size_t count =
        std::min<std::size_t>(stated, (block.size() - head) / sizeof(AudioBuffer));
    std::int64_t channels = 0;
    for (std::size_t i = 0; i < count; ++i) {
        AudioBuffer buffer{};
        std::memcpy(&buffer, block.data() + head + i * sizeof buffer, sizeof buffer);
        channels = checkedAdd(channels, buffer.mNumberChannels);
    }
    return channels;
}

std::string nameOf(Hardware& hardware, std::uint32_t id) {
    const auto* reference =
        readValue<const void*>(hardware, id, address(kAudioObjectPropertyName), nullptr);
    return reference != nullptr ? hardware.takeString(reference) : "Unknown output";
}

std::optional<OutputDevice> describe(Hardware& hardware, std::uint32_t id) {
    std::vector<std::byte> configuration;
    if (readArray(hardware, id,
                  address(kAudioDevicePropertyStreamConfiguration, kAudioObjectPropertyScopeOutput),
                  configuration) != 0)
        return std::nullopt;
    const std::int64_t channels = channelsOf(configuration);
    if (channels <= 0)
        return std::nullopt;
    auto name = nameOf(hardware, id);
    const double rate =
        readValue(hardware, id, address(kAudioDevicePropertyNominalSampleRate), 0.0);
    return OutputDevice{id, std::move(name), channels, rate};
}

}

AudioObjectPropertyAddress address(std::uint32_t selector, std::uint32_t scope) noexcept {
    return {selector, scope, kMainElement};
}

std::vector<OutputDevice> devices(Hardware& hardware) {
    std::vector<std::uint32_t> ids;
    if (readArray(hardware, kAudioObjectSystemObject, address(kAudioHardwarePropertyDevices),
                  ids) != 0)
        return {};
    std::vector<OutputDevice> outputs;
    for (const std::uint32_t id : ids) {
        if (auto output = describe(hardware, id))
            outputs.push_back(std::move(*output));
    }
    return outputs;
}

}
