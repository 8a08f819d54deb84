#include "platform/common/bypassFileCache.h"

#include <fcntl.h>

namespace tallyvox {

bool bypassFileCache(int descriptor, bool bypass) noexcept {
    return fcntl(descriptor, F_NOCACHE, bypass ? 1 : 0) == 0;
}

}
