#pragma once

#include <thread>
#include <vector>

namespace tallyvox {

/// As long as it lives every core is kept from all other work, above every sound server where the
/// system lets it, for spells of up to a third of a second and with pauses of twice that.
class Crowd {
public:
    Crowd();

private:
    std::vector<std::jthread> threads_;
};

}
