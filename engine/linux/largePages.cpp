#include "engine/largePages.h"

#include <sys/mman.h>

namespace tallyvox {

void preferLargePages(void* memory, std::size_t bytes) noexcept {
    madvise(memory, bytes, MADV_HUGEPAGE);
}

}
