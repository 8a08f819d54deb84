#include "platform/linux/jack/jackReport.h"

#include "platform/linux/jack/JackLayer.h"

#include <jack/jack.h>

#include <string>

namespace tallyvox {

LayerReport jackReport() {
    const std::string version = jack_get_version_string();
    const bool emulated = version.find("PipeWire") != std::string::npos;
    return {"jack", makeJackLayer(JackServers::own)->devices().has_value(), version,
            "An output may have up to 768 channels.",
            emulated
                ? "PipeWire stands in for it, and lists the outputs itself."
                : "Start jackd where you want to use it; JACK_DEFAULT_SERVER names the server."};
}

}
