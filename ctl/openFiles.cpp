#include "ctl/openFiles.h"

#include "base/Error.h"

#include <fcntl.h>
#include <sys/resource.h>

#include <cerrno>
#include <string>

namespace tallyvox {
namespace {

/// What libraries may open for a moment meanwhile.
constexpr std::int64_t spare = 16;

/// One more than the largest descriptor when `files` more are taken, always the lowest free one.
rlim_t descriptorsWith(std::int64_t files) {
    int descriptor = 0;
    for (std::int64_t taken = 0; taken < files; ++descriptor)
        if (fcntl(descriptor, F_GETFD) == -1)
            ++taken;
    return static_cast<rlim_t>(descriptor);
}

}

void allowOpenFiles(std::int64_t files) {
    rlimit limit{};
    const rlim_t needed = descriptorsWith(files + spare);
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur >= needed)
        return;
    const bool allowed = limit.rlim_max >= needed;
    limit.rlim_cur = needed;
    if (!allowed || setrlimit(RLIMIT_NOFILE, &limit) != 0)
        throw Error("File", EMFILE,
                    std::to_string(files) +
                        " files have to be open at once, and the system does not allow as many; "
                        "'ulimit -Hn' tells its limit.");
}

}
