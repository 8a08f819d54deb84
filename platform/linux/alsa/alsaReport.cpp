#include "platform/linux/alsa/alsaReport.h"

#include "platform/linux/alsa/AlsaLayer.h"

#include <alsa/asoundlib.h>

namespace tallyvox {

LayerReport alsaReport() {
    const auto found = makeAlsaLayer()->devices();
    return {"alsa", found && !found->empty(), snd_asoundlib_version(),
            "Sound cards are listed where no server answers, with the channels they have.",
            "No sound card can be opened; /proc/asound/cards tells which are there."};
}

}
