#include "app/Launcher.h"
#include "base/standardStreams.h"

#include <cstdlib>
#include <exception>
#include <iostream>

int main() {
    tallyvox::occupyStandardStreams();
    try {
        tallyvox::Launcher::main();
        if (!std::cout.flush()) {
            std::cerr << "tallyvox: Cannot write to standard output.\n";
            return EXIT_FAILURE;
        }
    } catch (const std::exception& error) {
        std::cout.flush();
        std::cerr << "tallyvox: " << error.what() << '\n';
        std::abort();
    }
}
