// Long trials of the whole chain, for as long as asked:
//   soak jack|pipewire SECONDS            every sample on 128 channels of a real server
//   soak crowded jack|pipewire SECONDS    the same on a machine that is too busy
//   soak cycles virtual|jack N            starts and stops that leave nothing behind
//   soak overload SECONDS                 a device whose cycles are held up

#include "tests/soak/trials.h"

#include <cstdlib>
#include <exception>
#include <iostream>
#include <vector>

int main(int count, char** arguments) {
    std::vector<std::string> words(arguments + 1, arguments + count);
    try {
        const bool crowded = !words.empty() && words[0] == "crowded";
        if (crowded)
            words.erase(words.begin());
        if (words.size() == 2 && (words[0] == "jack" || words[0] == "pipewire"))
            return tallyvox::soak(words[0], std::stoll(words[1]), crowded) ? 0 : 1;
        if (words.size() == 2 && words[0] == "overload")
            return tallyvox::overload(std::stoll(words[1])) ? 0 : 1;
        if (words.size() == 3 && words[0] == "cycles")
            return tallyvox::cycles(words[1], std::stoll(words[2])) ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << "soak: " << error.what() << '\n';
        return 1;
    }
    std::cerr << "usage: soak [crowded] jack|pipewire SECONDS | cycles virtual|jack N | overload "
                 "SECONDS\n";
    return 2;
}
