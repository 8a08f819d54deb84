#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tallyvox {

/// Every way to say `number` (1 to 128) in English, in lower-case words parted by single spaces.
std::vector<std::string> numberWords(std::int64_t number);

}
