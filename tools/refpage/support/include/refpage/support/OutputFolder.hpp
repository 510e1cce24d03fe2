// One output folder (a site, a docset) built whole or not at all: every file is
// written into a fresh staging folder beside the target, relative to that open
// folder and never through a symlink, and commit() swaps it in for the target only
// when everything was written. docs/output-safety.md states the promises.
#pragma once

#include <atomic>
#include <cstddef>
#include <filesystem>
#include <mutex>
#include <optional>
#include <refpage/support/FileDescriptor.hpp>
#include <refpage/support/TemporaryPaths.hpp>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <unordered_set>

namespace refpage {

/// The file at the top of every folder the tool builds. A folder holding it (a regular
/// file, not a symlink) was written by the tool: the next build may replace it whole,
/// and a walk for pages passes it by.
inline constexpr std::string_view outputMarkerName = ".refpage-output";

/// The longest relative path an OutputFolder writes, in bytes (PATH_MAX less its NUL).
inline constexpr std::size_t maxOutputPathBytes = 4095;
/// The longest segment of such a path (NAME_MAX).
inline constexpr std::size_t maxOutputSegmentBytes = 255;

/// True when `path` may be written under an output folder: not empty, relative, no empty,
/// "." or ".." segment, no NUL byte, segments and the whole within the limits above.
bool isSafeOutputPath(std::string_view path) noexcept;

/// True when `folder` holds the marker (as a regular file). False for anything else,
/// including a folder that cannot be read.
bool holdsOutputMarker(std::filesystem::path const& folder) noexcept;

/// A folder output in the making. Construction checks the target and makes the staging
/// folder; writeFile and makeFolder fill it, from any number of threads at once; commit()
/// puts it in the target's place. Destroyed uncommitted (or interrupted, see
/// InterruptCleanup.hpp), it removes the staging folder and leaves the target as it was.
class OutputFolder {
public:
    /// Checks that `target` is absent, or a folder (never a symlink) that is empty or holds
    /// the marker, then makes the staging folder ".<name>.refpage-XXXXXX" beside it (mode
    /// 0700 until commit) holding the marker; missing folders above the target are made.
    /// Throws FileError naming the target otherwise.
    explicit OutputFolder(std::filesystem::path target);
    OutputFolder(OutputFolder const&) = delete;
    OutputFolder& operator=(OutputFolder const&) = delete;
    ~OutputFolder();

    /// Writes `content` as the new file `path` (relative, '/'-separated), making its folders
    /// as needed; each file is written once. Safe to call from several threads for distinct
    /// paths. Returns false, writing nothing, when `path` is not a safe output path, a symlink
    /// or anything else stands in its way, the system refuses, or any earlier call failed:
    /// the first failure is kept (failure()) and every later call returns false at once.
    bool writeFile(std::string_view path, std::string_view content) noexcept;

    /// Makes the folder `path` and its parents, as writeFile makes a file's folders.
    bool makeFolder(std::string_view path) noexcept;

    /// Where the file `path` (relative, '/'-separated) goes in the staging folder, its folders
    /// made, for a library that writes files by name (SQLite); nullopt, with the failure kept,
    /// as writeFile refuses. The staging folder is the tool's own (mode 0700 until commit), so
    /// nothing of anyone else's can stand in the way; the caller writes the file once.
    std::optional<std::filesystem::path> pathFor(std::string_view path) noexcept;

    /// True once a write failed; then commit() throws.
    bool failed() const noexcept { return failed_.load(std::memory_order_acquire); }

    /// The first failure: "<target>/<path>: cannot write: <system's reason>" and the like;
    /// empty while none.
    std::string failure() const;

    /// Gives the staging folder its mode (the target's when it exists, else what the umask
    /// gives a new folder), syncs its file system once, checks the target again and swaps
    /// the staging folder in (RENAME_EXCHANGE; a plain rename when the target is absent),
    /// then removes the old tree. Throws FileError, leaving the target as it was, when a
    /// write failed, the target may not be replaced, or the swap fails. Returns a warning
    /// naming what is left when the old tree could not be removed after the swap, else "".
    /// Call once, after every write has returned.
    [[nodiscard]] std::string commit();

    std::filesystem::path const& target() const noexcept { return target_; }
    /// The staging folder, until commit() (tests plant things in it).
    std::filesystem::path staging() const { return parentPath_ / stagingName_; }

private:
    bool ensureFolders(std::string_view folder) noexcept;
    void fail(std::string_view path, std::string_view what, int code) noexcept;

    std::filesystem::path target_;      ///< as given, without trailing '/'
    std::filesystem::path parentPath_;  ///< the target's folder as given ("." when none)
    std::string targetName_;            ///< the target's last segment
    std::string stagingName_;           ///< the staging folder's name in the parent
    FileDescriptor parent_;             ///< the target's folder
    FileDescriptor root_;               ///< the staging folder, open for reading
    TemporaryPath registration_;        ///< the staging folder, for interrupts
    bool committed_ = false;            ///< the staging folder is now the target

    std::shared_mutex foldersMutex_;
    std::unordered_set<std::string> folders_;  ///< folders made so far, as relative paths

    std::atomic<bool> failed_{false};
    mutable std::mutex failureMutex_;
    std::string failure_;  ///< the first failure's message; set once, under failureMutex_
};

}  // namespace refpage
