#include "app/Launcher.h"

#include <cstdlib>
#include <exception>
#include <iostream>

int main() {
    try {
        tallyvox::Launcher::main();
    } catch (const std::exception& error) {
        std::cout.flush();
        std::cerr << "tallyvox: " << error.what() << '\n';
        std::abort();
    }
}
