// Files and folders reached from an open folder without ever following a symlink or
// leaving that folder, and whole trees removed the same way.
#pragma once

#include <sys/types.h>

#include <string_view>

namespace refpage::beneath {

/// Opens `path` (relative, '/'-separated) under the folder open as `root`: no symlink is
/// followed on the way or at the end, and ".." or an absolute path is refused (EXDEV).
/// `flags` as for openat; O_NOFOLLOW and O_CLOEXEC are added. Returns the new descriptor,
/// which the caller owns, or -1 with errno set (ELOOP or ENOTDIR where a symlink stood).
int open(int root, std::string_view path, int flags, mode_t mode = 0);

/// Makes the folder `path` under `root`, whose parent must exist, resolved as open() does.
/// Returns 0 or the errno (EEXIST when anything is already there).
int makeFolder(int root, std::string_view path, mode_t mode);

/// Removes `name` of the folder open as `parent` with everything under it, depth first
/// without recursion, never following a symlink (a symlink is removed as itself). A folder
/// that gains entries while it is emptied (a writer still at work) is emptied again, a few
/// times at most. Returns 0 (also when `name` is already gone) or the errno of the failure
/// that stopped it.
int removeTree(int parent, std::string_view name);

/// Tests only: true makes open() walk the path a segment at a time, as it does where the
/// kernel cannot resolve beneath a folder itself (no openat2, or a filter refusing it).
void forceSegmentWalk(bool force) noexcept;

}  // namespace refpage::beneath
