// Buffer lists of any shape: every sample is the one that the rules name, and nothing else is
// written.

#include "base/fatal.h"
#include "engine/Renderer.h"
#include "tests/fuzz/AnyBuffers.h"
#include "tests/support/alike.h"
#include "tests/support/literal.h"

#include <bit>

namespace tallyvox {
namespace {

float anyFloat(FuzzedDataProvider& data) {
    return std::bit_cast<float>(data.ConsumeIntegral<std::uint32_t>());
}

std::vector<std::vector<float>> anyVoices(FuzzedDataProvider& data) {
    std::vector<std::vector<float>> voices(data.ConsumeIntegralInRange<std::size_t>(0, 12));
    for (auto& voice : voices)
        for (auto left = data.ConsumeIntegralInRange<int>(0, 9); left > 0; --left)
            voice.push_back(anyFloat(data));
    return voices;
}

/// At least `least` flags: a voice without a flag stops the program.
std::vector<bool> anyFlags(FuzzedDataProvider& data, std::size_t least) {
    std::vector<bool> flags;
    for (auto left = least + data.ConsumeIntegralInRange<std::size_t>(0, 3); left > 0; --left)
        flags.push_back(data.ConsumeBool());
    return flags;
}

}
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace tallyvox;
    FuzzedDataProvider data(bytes, size);
    const auto voices = anyVoices(data);
    const auto enabled = anyFlags(data, voices.size());
    const float gain = anyFloat(data);
    // Long enough for a year, short enough for a round of all turns in 64 bits.
    const auto gap = data.ConsumeIntegralInRange<std::int64_t>(-12, std::int64_t{1} << 48);
    const bool sequential = data.ConsumeBool();
    Renderer renderer(voices, enabled, gain, gap, sequential);
    LiteralRenderer literal(voices, enabled, gain, gap, sequential);
    require(renderer.cycle() == literal.cycle());
    const auto start = data.ConsumeIntegralInRange<std::int64_t>(0, std::int64_t{1} << 60);
    renderer.setPosition(start);
    literal.setPosition(start);

    for (int calls = 0; calls < 6 && data.remaining_bytes() > 0; ++calls) {
        const AnyBuffers::Shape shape(data);
        AnyBuffers rendered(shape);
        AnyBuffers expected(shape);
        renderer.render(rendered.list());
        literal.render(expected.list());
        require(renderer.position() == literal.position());
        for (std::size_t buffer = 0; buffer < rendered.memory().size(); ++buffer)
            require(alike(rendered.memory()[buffer], expected.memory()[buffer]));
    }
    return 0;
}
