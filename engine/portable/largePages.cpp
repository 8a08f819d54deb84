#include "engine/largePages.h"

namespace tallyvox {

void preferLargePages(void* /*memory*/, std::size_t /*bytes*/) noexcept {}

}
