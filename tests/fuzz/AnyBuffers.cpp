#include "tests/fuzz/AnyBuffers.h"

namespace tallyvox {
namespace {

std::vector<std::uint32_t> channelsOf(const AnyBuffers::Shape& shape) {
    std::vector<std::uint32_t> channels;
    for (const auto& buffer : shape)
        channels.push_back(buffer.channels);
    return channels;
}

}

AnyBuffers::Shape::Shape(FuzzedDataProvider& data) {
    for (auto left = data.ConsumeIntegralInRange<int>(0, 5); left > 0; --left) {
        Buffer buffer{};
        buffer.null = data.ConsumeIntegralInRange<int>(0, 7) == 7;
        buffer.channels = buffer.null ? data.ConsumeIntegral<std::uint32_t>()
                                      : data.ConsumeIntegralInRange<std::uint32_t>(0, 200);
        buffer.bytes = buffer.null ? data.ConsumeIntegral<std::uint32_t>()
                                   : data.ConsumeIntegralInRange<std::uint32_t>(0, 1700);
        push_back(buffer);
    }
}

AnyBuffers::AnyBuffers(const Shape& shape) : list_(channelsOf(shape)) {
    constexpr float stale = -77.25F;
    for (std::size_t i = 0; i < shape.size(); ++i) {
        memory_.emplace_back(shape[i].null ? 0 : (shape[i].bytes + 3) / 4, stale);
        list_.buffers()[i].mDataByteSize = shape[i].bytes;
        list_.buffers()[i].mData = memory_[i].empty() ? nullptr : memory_[i].data();
    }
}

}
