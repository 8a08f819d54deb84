#include "audio/SystemReport.h"

#include "audio/Hardware.h"

namespace tallyvox {

SystemReport systemReport() {
    const AudioObjectPropertyAddress devices = {kAudioHardwarePropertyDevices,
                                                kAudioObjectPropertyScopeGlobal, kMainElement};
    std::uint32_t bytes = 0;
    const bool answers = hardware().propertyDataSize(kAudioObjectSystemObject, devices, bytes) == 0;
    return {{{"coreaudio", answers, "", "Carries as many channels as the device offers.",
              "Restart the audio service: sudo killall coreaudiod"}},
            // The callbacks run on the system's own real-time threads.
            true,
            ""};
}

}
