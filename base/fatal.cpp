#include "base/fatal.h"

#include <cstdlib>

namespace tallyvox {

void fatal() noexcept { std::abort(); }

}
