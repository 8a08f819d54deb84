#include "ctl/Progress.h"

#include <algorithm>
#include <string>

namespace tallyvox {

void Progress::reached(std::int64_t done) {
    const auto now = std::chrono::steady_clock::now();
    if (now < next_)
        return;
    next_ = now + std::chrono::milliseconds(100);
    constexpr std::size_t width = 40;
    const double part =
        static_cast<double>(done) / static_cast<double>(std::max<std::int64_t>(total_, 1));
    const auto filled = static_cast<std::size_t>(part * width);
    line_.show('[' + std::string(filled, '#') + std::string(width - filled, '.') + "] " +
               std::to_string(static_cast<int>(part * 100)) + " %");
}

}
