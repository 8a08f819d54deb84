#pragma once

#include <cstdint>

namespace tallyvox {

/// What this process holds of the system.
struct Resources {
    std::int64_t threads;
    std::int64_t descriptors;
    std::int64_t kibibytes; ///< resident memory

    /// As it is now.
    static Resources held();
};

}
