// Files replaced whole or not at all: written beside their destination and renamed
// over it only when complete, so that a reader sees the old file or the new one.
#pragma once

#include <filesystem>
#include <refpage/support/TemporaryPaths.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

namespace refpage {

/// A file that could not be written or replaced; the message names the path and the system's reason.
class FileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The system's reason for `code` (an errno value), as messages give it.
std::string systemReason(int code);

/// Throws FileError naming `destination` when it exists as anything but a regular file (a
/// folder, symlink, device, FIFO or socket), which no file output ever replaces.
void requireReplaceableFile(std::filesystem::path const& destination);

/// The new file of one replacement. Until commit(), it is removed when this object goes away,
/// and by an interrupt (InterruptCleanup.hpp).
class AtomicFile {
public:
    /// Creates the new file, empty, beside `destination`. Throws FileError when `destination`
    /// is anything but a regular file or nothing (a folder, symlink, device, FIFO or socket is
    /// never replaced) or when its folder refuses a new file.
    explicit AtomicFile(std::filesystem::path destination);
    AtomicFile(AtomicFile const&) = delete;
    AtomicFile& operator=(AtomicFile const&) = delete;
    ~AtomicFile();

    /// The new file, for libraries that open files by name; it exists until commit() or destruction.
    std::filesystem::path const& path() const noexcept { return temporary_; }
    std::filesystem::path const& destination() const noexcept { return destination_; }

    /// Appends `text` to the new file. Throws FileError.
    void write(std::string_view text);

    /// Gives the new file its mode (the destination's when it exists, else what the umask
    /// gives any new file), syncs it to disk and renames it over the destination, which must
    /// still be a regular file or nothing. Throws FileError and leaves the destination as it was.
    void commit();

private:
    std::filesystem::path destination_;
    std::filesystem::path temporary_;  ///< empty once committed
    int fd_ = -1;                      ///< the new file, open for writing until commit()
    TemporaryPath registration_;       ///< `temporary_` while it exists
};

/// `text` as the whole content of `file`, through an AtomicFile; on failure `file` is
/// untouched and `error` holds the reason.
bool replaceFile(std::filesystem::path const& file, std::string_view text, std::string& error);

}  // namespace refpage
