#include "app/selfTest.h"

#include "app/checkMapping.h"
#include "app/checkRecording.h"
#include "engine/voices.h"

#include <cstdint>
#include <iostream>

namespace tallyvox {

void selfTest() {
    for (const double rate : {44100.0, 48000.0, 96000.0})
        for (std::int64_t number = 1; number <= 128; ++number)
            checkRecording(loadVoice(number, rate));
    checkMapping();
    std::cout << "PASS: 128 voices at 44.1/48/96 kHz; independent 8/64/128-channel mapping; "
                 "interleaved and split buffers; disabled channels; sequential mode; gain; "
                 "repeat gaps and callback boundaries.\n";
}

}
