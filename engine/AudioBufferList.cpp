#include "engine/AudioBufferList.h"

#include "base/checked.h"

#include <algorithm>
#include <cstdint>
#include <new>

namespace tallyvox {

std::span<AudioBuffer> buffers(AudioBufferList& list) noexcept {
    return {list.mBuffers, list.mNumberBuffers};
}

std::span<const AudioBuffer> buffers(const AudioBufferList& list) noexcept {
    return {list.mBuffers, list.mNumberBuffers};
}

std::size_t audioBufferListSize(std::size_t count) noexcept {
    return offsetof(AudioBufferList, mBuffers) + count * sizeof(AudioBuffer);
}

OwnedBufferList::OwnedBufferList(const std::vector<std::uint32_t>& channelsPerBuffer)
    : memory_(std::make_unique<std::byte[]>(
          std::max(sizeof(AudioBufferList), audioBufferListSize(channelsPerBuffer.size())))) {
    auto* list = new (memory_.get()) AudioBufferList{};
    list->mNumberBuffers = checkedCast<std::uint32_t>(channelsPerBuffer.size());
    for (std::size_t i = 0; i < channelsPerBuffer.size(); ++i)
        new (&list->mBuffers[i]) AudioBuffer{channelsPerBuffer[i], 0, nullptr};
}

AudioBufferList* OwnedBufferList::get() noexcept {
    return std::launder(reinterpret_cast<AudioBufferList*>(memory_.get()));
}

}
