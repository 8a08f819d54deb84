#include "app/Launcher.h"

#include "app/selfTest.h"
#include "audio/deviceLine.h"
#include "audio/devices.h"
#include "engine/Environment.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <string_view>

namespace tallyvox {

void Launcher::main() {
    const auto words = arguments();
    const auto given = [&words](std::string_view word) {
        return std::find(words.begin(), words.end(), word) != words.end();
    };
    if (given("--self-test")) {
        selfTest();
    } else if (given("--devices")) {
        for (const OutputDevice& device : devices())
            std::cout << deviceLine(device) << '\n';
    } else {
        std::cerr << "This build of tallyvox has no window; it serves --self-test and --devices.\n";
        std::exit(EXIT_FAILURE);
    }
}

}
