// A hardware layer that lies or dies at every call: a list, an announcement, or one error.

#include "audio/AudioOutput.h"
#include "audio/deviceLine.h"
#include "audio/devices.h"
#include "audio/layer.h"
#include "audio/xruns.h"
#include "base/Error.h"
#include "base/fatal.h"
#include "tests/fuzz/AnyBuffers.h"
#include "tests/fuzz/HostileHardware.h"

#include <algorithm>

namespace tallyvox {
namespace {

/// Channels and rates beyond it stop the program by contract, or fill the machine's memory.
constexpr double fastest = 1e6;

void announce(AudioOutput& audio, const OutputDevice& device, FuzzedDataProvider& data) {
    std::vector<bool> enabled(
        static_cast<std::size_t>(std::min<std::int64_t>(device.channels, 300)));
    for (std::size_t i = 0; i < enabled.size(); ++i)
        enabled[i] = data.ConsumeBool();
    const double db = data.ConsumeFloatingPoint<double>();
    const double gap = data.ConsumeFloatingPointInRange<double>(-1, 1000);
    try {
        audio.start(device, std::move(enabled), db, gap, data.ConsumeBool());
        require(audio.proc() && audio.renderer() && audio.device() == device.id);
    } catch (const Error& error) {
        require(error.domain() == "Audio" && *error.what() != '\0');
        require(!audio.proc());
    }
}

}

Hardware& hardware() { fatal(); }

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace tallyvox;
    FuzzedDataProvider data(bytes, size);
    HostileHardware hostile(data);
    AudioOutput audio(hostile);
    for (const OutputDevice& device : devices(hostile)) {
        require(device.channels >= 1);
        require(!deviceLine(device).empty());
        layer(device.id, hostile);
        if (device.rate > fastest)
            continue;
        announce(audio, device, data);
        require(hostile.registered() <= 1);
        for (auto calls = data.ConsumeIntegralInRange<int>(0, 2); calls > 0; --calls)
            hostile.call(AnyBuffers(AnyBuffers::Shape(data)).list());
        xruns(device.id, hostile);
    }
    audio.stop();
    require(hostile.registered() == 0 && !audio.renderer());
    return 0;
}
