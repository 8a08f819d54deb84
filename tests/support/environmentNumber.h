#pragma once

#include <cstdlib>
#include <string>

namespace tallyvox {

/// The whole number that the environment variable `name` holds, or `otherwise` where it is unset.
/// Throws std::invalid_argument or std::out_of_range for what is no number.
inline int environmentNumber(const char* name, int otherwise) {
    const char* const text = std::getenv(name);
    return text != nullptr ? std::stoi(text) : otherwise;
}

}
