#include "platform/linux/pipewire/pipewireReport.h"

#include "platform/linux/pipewire/pipewireLayer.h"

#include <pipewire/pipewire.h>

#include <charconv>
#include <string>
#include <utility>

namespace tallyvox {

int pipewireChannels(std::string_view version) {
    std::pair<int, int> number{0, 0};
    const char* end = version.data() + version.size();
    const auto major = std::from_chars(version.data(), end, number.first);
    if (major.ptr != end)
        std::from_chars(major.ptr + 1, end, number.second);
    return number >= std::pair{1, 6} ? 128 : 64;
}

LayerReport pipewireReport() {
    const std::string version = pw_get_library_version();
    return {"pipewire", makePipewireLayer()->devices().has_value(), version,
            "Its own outputs have up to " + std::to_string(pipewireChannels(version)) +
                " channels; those of other programs may have more.",
            "Start it with \"systemctl --user start pipewire\" as the user of the session."};
}

}
