// Names of the kinds of file, for messages. Internal to support.
#pragma once

#include <sys/stat.h>

namespace refpage {

/// "a folder", "a symbolic link", "a FIFO", "a socket", "a character device", "a block
/// device", "a regular file", or "an unknown kind of file".
inline char const* kindOf(mode_t mode) noexcept {
    if (S_ISREG(mode)) return "a regular file";
    if (S_ISDIR(mode)) return "a folder";
    if (S_ISLNK(mode)) return "a symbolic link";
    if (S_ISFIFO(mode)) return "a FIFO";
    if (S_ISSOCK(mode)) return "a socket";
    if (S_ISCHR(mode)) return "a character device";
    if (S_ISBLK(mode)) return "a block device";
    return "an unknown kind of file";
}

}  // namespace refpage
