#include "audio/Hardware.h"

#include "platform/linux/makeHardware.h"

#include <cstdlib>
#include <iostream>

namespace tallyvox {

namespace {

std::string_view environment(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

}

Hardware& hardware() {
    static const std::unique_ptr<Hardware> chosen =
        makeHardware(environment("TALLYVOX_AUDIO"), environment("TALLYVOX_RECORD"), std::cerr);
    return *chosen;
}

}
