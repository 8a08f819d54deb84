#include "platform/common/waveHeader.h"

#include "base/checked.h"

#include <cmath>
#include <string_view>

namespace tallyvox {

namespace {

constexpr std::int64_t kUnknown32 = 0xFFFFFFFF;
constexpr std::int64_t kExtensible = 0xFFFE;
constexpr std::int64_t kPcm = 1;
constexpr std::int64_t kFloat = 3;
/// Bytes of the header behind the length field of the file chunk.
constexpr std::int64_t kBeforeSamples = 4 + (8 + 28) + (8 + 40) + (8 + 4) + 8;

class Bytes {
public:
    void text(std::string_view characters) {
        bytes_.insert(bytes_.end(), characters.begin(), characters.end());
    }
    /// `value` in little-endian order.
    void number(std::int64_t value, int count) {
        for (int index = 0; index < count; ++index)
            bytes_.push_back(static_cast<std::uint8_t>(static_cast<std::uint64_t>(value) >>
                                                       (8U * static_cast<unsigned>(index))));
    }
    std::vector<std::uint8_t> take() { return std::move(bytes_); }

private:
    std::vector<std::uint8_t> bytes_;
};

}

std::int64_t bytesPerSample(SampleFormat format) noexcept {
    switch (format) {
    case SampleFormat::float32:
        return 4;
    case SampleFormat::pcm24:
        return 3;
    case SampleFormat::pcm16:
        return 2;
    }
    fatal();
}

std::vector<std::uint8_t> waveHeader(std::int64_t channels, double rate, SampleFormat format,
                                     std::int64_t frames) {
    const std::int64_t sampleBytes = bytesPerSample(format);
    const std::int64_t frameBytes = checkedMultiply(channels, sampleBytes);
    require(channels > 0 && frameBytes <= 0xFFFF && frames >= 0);
    const std::int64_t wholeRate = checkedTruncate(std::round(rate));
    require(wholeRate >= 0 && wholeRate <= kUnknown32);
    const std::int64_t dataBytes = checkedMultiply(frames, frameBytes);
    // A chunk of odd length is followed by one byte that its length does not count.
    const std::int64_t fileBytes = checkedAdd(dataBytes + dataBytes % 2, kBeforeSamples);
    const bool large = fileBytes > kUnknown32;

    Bytes bytes;
    bytes.text(large ? "RF64" : "RIFF");
    bytes.number(large ? kUnknown32 : fileBytes, 4);
    bytes.text("WAVE");

    bytes.text(large ? "ds64" : "JUNK");
    bytes.number(28, 4);
    bytes.number(large ? fileBytes : 0, 8);
    bytes.number(large ? dataBytes : 0, 8);
    bytes.number(large ? frames : 0, 8);
    bytes.number(0, 4);

    bytes.text("fmt ");
    bytes.number(40, 4);
    bytes.number(kExtensible, 2);
    bytes.number(channels, 2);
    bytes.number(wholeRate, 4);
    bytes.number(std::min(checkedMultiply(wholeRate, frameBytes), kUnknown32), 4);
    bytes.number(frameBytes, 2);
    bytes.number(8 * sampleBytes, 2);
    bytes.number(22, 2);
    bytes.number(8 * sampleBytes, 2);
    bytes.number(0, 4);
    bytes.number(format == SampleFormat::float32 ? kFloat : kPcm, 2);
    bytes.text({"\x00\x00\x00\x00\x10\x00\x80\x00\x00\xAA\x00\x38\x9B\x71", 14});

    bytes.text("fact");
    bytes.number(4, 4);
    bytes.number(large ? kUnknown32 : frames, 4);

    bytes.text("data");
    bytes.number(large ? kUnknown32 : dataBytes, 4);
    return bytes.take();
}

}
