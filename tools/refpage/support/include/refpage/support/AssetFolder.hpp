// A folder of files that pages reference (images, thumbnails), read without ever
// following a symlink or leaving the folder: page text names the paths, so a path can
// never reach a file of the machine outside it.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <refpage/support/FileDescriptor.hpp>
#include <string>
#include <string_view>

namespace refpage {

class AssetFolder {
public:
    /// The files a single asset may hold; a larger one is refused, so that memory stays bounded.
    static constexpr std::size_t maxFileBytes = std::size_t{64} << 20;

    /// Opens `folder`; a folder that cannot be opened holds no file (every lookup says missing).
    explicit AssetFolder(std::filesystem::path folder);

    std::filesystem::path const& path() const noexcept { return folder_; }

    /// The bytes of the regular file `path` (a safe relative path) under the folder, or
    /// nullopt with `why` set: missing, not a regular file, a symlink on the way, too large.
    /// Safe to call from several threads at once.
    std::optional<std::string> read(std::string_view path, std::string& why) const;

    /// True when `path` names a regular file under the folder that read() would give;
    /// otherwise false with `why` set. Reads nothing of the file.
    bool holds(std::string_view path, std::string& why) const;

private:
    /// The regular file `path`, open for reading, with its size; invalid with `why` set otherwise.
    FileDescriptor open(std::string_view path, std::size_t& size, std::string& why) const;

    std::filesystem::path folder_;
    FileDescriptor root_;  ///< the folder, open for lookups; invalid when it could not be opened
};

}  // namespace refpage
