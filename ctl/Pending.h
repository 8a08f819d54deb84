#pragma once

#include <filesystem>

namespace tallyvox {

/// A file, or a folder of files, that comes to be under a temporary name on the file system of its
/// target. What has not been committed vanishes with the object.
class Pending {
public:
    /// A single file; an existing one is replaced by the commit. Throws an `Error` of domain "File"
    /// where the target is anything but a file.
    static Pending file(const std::filesystem::path& target);

    /// A folder; files of an existing one stay, unless a new one has the same name. Throws an
    /// `Error` of domain "File" where the target is no folder or the temporary one cannot be made.
    static Pending folder(const std::filesystem::path& target);

    Pending(Pending&& other) noexcept;
    Pending(const Pending&) = delete;
    Pending& operator=(const Pending&) = delete;
    ~Pending();

    const std::filesystem::path& target() const noexcept { return target_; }
    const std::filesystem::path& temporary() const noexcept { return temporary_; }

    /// Gives everything its final name. Throws an `Error` of domain "File".
    void commit();

private:
    Pending(std::filesystem::path target, std::filesystem::path temporary);

    std::filesystem::path target_;
    std::filesystem::path temporary_;
};

}
