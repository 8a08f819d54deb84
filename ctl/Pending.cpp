#include "ctl/Pending.h"

#include "base/Error.h"

#include <unistd.h>

#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace tallyvox {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const fs::path& path, int code, const std::string& reason) {
    throw Error("File", code, "Cannot write \"" + path.string() + "\": " + reason + ".");
}

void succeed(const fs::path& path, const std::error_code& failure) {
    if (failure)
        fail(path, failure.value(), failure.message());
}

/// What `target` really is: a link stays one, and what it points to is replaced, or made.
fs::path resolved(const fs::path& target) {
    constexpr int mostLinks = 40;
    std::error_code failure;
    fs::path real = target;
    for (int links = 0; fs::is_symlink(real, failure) && links < mostLinks; ++links)
        real = real.parent_path() / fs::read_symlink(real, failure);
    real = fs::weakly_canonical(real, failure);
    succeed(target, failure);
    return real;
}

std::string hiddenName(const std::string& name) {
    return '.' + name + '.' + std::to_string(getpid()) + ".part";
}

}

Pending::Pending(fs::path target, fs::path temporary)
    : target_(std::move(target)), temporary_(std::move(temporary)) {}

Pending::Pending(Pending&& other) noexcept
    : target_(std::move(other.target_)), temporary_(std::exchange(other.temporary_, {})) {}

Pending::~Pending() {
    std::error_code ignored;
    if (!temporary_.empty())
        fs::remove_all(temporary_, ignored);
}

Pending Pending::file(const fs::path& target) {
    const fs::path real = resolved(target);
    std::error_code unreadable;
    if (fs::exists(real, unreadable) && !fs::is_regular_file(real, unreadable))
        fail(target, EEXIST, "exists and is no file");
    if (!real.has_filename())
        fail(target, ENOENT, "names no file");
    return {real, real.parent_path() / hiddenName(real.filename().string())};
}

Pending Pending::folder(const fs::path& target) {
    const fs::path real = resolved(target);
    std::error_code failure;
    if (fs::exists(real, failure) && !fs::is_directory(real, failure))
        fail(target, EEXIST, "exists and is no folder");
    // Inside an existing folder, because its parent may be another file system.
    Pending pending(real, fs::is_directory(real, failure)
                              ? real / hiddenName("export")
                              : real.parent_path() / hiddenName(real.filename().string()));
    fs::create_directory(pending.temporary_, failure);
    succeed(target, failure);
    return pending;
}

void Pending::commit() {
    std::error_code failure;
    if (fs::is_directory(target_, failure)) {
        std::vector<fs::path> files;
        for (fs::directory_iterator entry(temporary_, failure);
             !failure && entry != fs::directory_iterator(); entry.increment(failure))
            files.push_back(entry->path());
        succeed(temporary_, failure);
        for (const fs::path& file : files) {
            fs::rename(file, target_ / file.filename(), failure);
            succeed(target_ / file.filename(), failure);
        }
        return;
    }
    fs::rename(temporary_, target_, failure);
    succeed(target_, failure);
    temporary_.clear();
}

}
