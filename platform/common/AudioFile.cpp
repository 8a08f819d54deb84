#include "engine/AudioFile.h"

#include "base/Error.h"

#include <fcntl.h>
#include <sndfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace tallyvox {
namespace {

constexpr sf_count_t chunkFrames = 4096;

std::string sentence(const char* verb, const std::filesystem::path& path, std::string_view reason) {
    while (!reason.empty() && (reason.back() == '.' || reason.back() == '\n'))
        reason.remove_suffix(1);
    return std::string("Cannot ") + verb + " \"" + path.string() + "\": " + std::string(reason) +
           ".";
}

/// Appends `count` samples that lie `stride` apart.
void append(std::vector<float>& channel, const float* from, std::size_t stride, std::size_t count) {
    if (stride == 1) {
        channel.insert(channel.end(), from, from + count);
        return;
    }
    for (std::size_t f = 0; f < count; ++f)
        channel.push_back(from[f * stride]);
}

}

struct AudioFile::Handle {
    std::filesystem::path path;
    SF_INFO info{};
    SNDFILE* file = nullptr;
};

AudioFile::AudioFile(const std::filesystem::path& path) {
    auto handle = std::make_unique<Handle>();
    handle->path = path;
    // Without waiting: a pipe of that name would otherwise never open.
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        const int reason = errno;
        throw Error("POSIX", reason, sentence("open", path, std::strerror(reason)));
    }
    struct stat about {};
    if (::fstat(descriptor, &about) != 0 || !S_ISREG(about.st_mode)) {
        ::close(descriptor);
        const int reason = S_ISDIR(about.st_mode) ? EISDIR : EINVAL;
        throw Error("POSIX", reason, sentence("open", path, std::strerror(reason)));
    }
    handle->file = sf_open_fd(descriptor, SFM_READ, &handle->info, SF_TRUE);
    if (handle->file == nullptr)
        throw Error("Sound file", sf_error(nullptr), sentence("open", path, sf_strerror(nullptr)));
    handle_ = handle.release();
}

AudioFile::~AudioFile() {
    sf_close(handle_->file);
    delete handle_;
}

double AudioFile::rate() const noexcept { return handle_->info.samplerate; }

std::int64_t AudioFile::length() const noexcept { return handle_->info.frames; }

bool AudioFile::read(std::vector<std::vector<float>>& channels) {
    const auto width = static_cast<std::size_t>(handle_->info.channels);
    channels.resize(width);
    const auto most = static_cast<std::size_t>(length());
    for (auto& channel : channels) {
        channel.clear();
        // With room to spare: a somewhat longer file would otherwise begin on fresh pages again.
        if (channel.capacity() < most)
            channel.reserve(std::max(most, 2 * channel.capacity()));
    }
    const auto chunk = std::make_unique_for_overwrite<float[]>(width * chunkFrames);
    sf_seek(handle_->file, 0, SEEK_SET);
    sf_count_t left = length();
    while (left > 0) {
        const auto got = sf_readf_float(handle_->file, chunk.get(), std::min(left, chunkFrames));
        for (std::size_t c = 0; c < width; ++c)
            append(channels[c], chunk.get() + c, width, static_cast<std::size_t>(got));
        if (got == 0)
            break;
        left -= got;
    }
    if (const int error = sf_error(handle_->file); error != SF_ERR_NO_ERROR)
        throw Error("Sound file", error,
                    sentence("read", handle_->path, sf_strerror(handle_->file)));
    return true;
}

}
