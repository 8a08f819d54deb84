#include "platform/common/bypassFileCache.h"

#include <fcntl.h>

namespace tallyvox {

bool bypassFileCache(int descriptor, bool bypass) noexcept {
    const int flags = fcntl(descriptor, F_GETFL);
    return flags != -1 &&
           fcntl(descriptor, F_SETFL, bypass ? flags | O_DIRECT : flags & ~O_DIRECT) == 0;
}

}
