#include "platform/common/OutputFile.h"

#include "platform/common/bypassFileCache.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace tallyvox {
namespace {

bool isRegular(int descriptor) noexcept {
    struct stat about {};
    return fstat(descriptor, &about) == 0 && S_ISREG(about.st_mode);
}

}

OutputFile::~OutputFile() { close(); }

int OutputFile::open(const std::filesystem::path& path, std::size_t block) {
    constexpr mode_t everyone = 0666;
    descriptor_ = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, everyone);
    if (descriptor_ < 0)
        return errno;
    // A pipe would take the same wish for another one.
    pastCache_ = block > 0 && isRegular(descriptor_) && bypassFileCache(descriptor_, true);
    if (pastCache_) {
        pages_ = std::make_unique_for_overwrite<Page[]>((block + sizeof(Page) - 1) / sizeof(Page));
        block_ = block;
    }
    return 0;
}

int OutputFile::append(std::span<const std::uint8_t> bytes) noexcept {
    while (pastCache_ && !bytes.empty()) {
        const std::size_t count = std::min(bytes.size(), block_ - begun_);
        std::memcpy(staged() + begun_, bytes.data(), count);
        begun_ += count;
        bytes = bytes.subspan(count);
        if (begun_ < block_)
            break;
        begun_ = 0;
        if (const int failure = put({staged(), block_}); failure != 0)
            return failure;
    }
    return put(bytes);
}

int OutputFile::flush() noexcept {
    goThroughCache();
    return begun_ == 0 ? 0 : put({staged(), std::exchange(begun_, 0)});
}

int OutputFile::overwrite(std::int64_t offset, std::span<const std::uint8_t> bytes) const noexcept {
    while (!bytes.empty()) {
        const ssize_t count = ::pwrite(descriptor_, bytes.data(), bytes.size(), offset);
        if (count < 0 && errno != EINTR)
            return errno;
        const ssize_t done = std::max<ssize_t>(count, 0);
        offset += done;
        bytes = bytes.subspan(static_cast<std::size_t>(done));
    }
    return 0;
}

int OutputFile::close() noexcept {
    return !isOpen() || ::close(std::exchange(descriptor_, -1)) == 0 ? 0 : errno;
}

int OutputFile::put(std::span<const std::uint8_t> bytes) noexcept {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
        if (count >= 0) {
            written_ += count;
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        } else if (errno == EINVAL && pastCache_) {
            goThroughCache();
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

void OutputFile::goThroughCache() noexcept {
    if (std::exchange(pastCache_, false))
        bypassFileCache(descriptor_, false);
}

}
