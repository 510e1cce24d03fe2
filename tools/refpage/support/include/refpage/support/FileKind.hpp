// Names of the kinds of file, for messages: one table for every message that says what a
// path turned out to be.
#pragma once

#include <sys/stat.h>

#include <string>
#include <string_view>

namespace refpage {

/// "regular file", "folder", "symbolic link", "FIFO", "socket", "character device",
/// "block device", or "unknown kind of file".
inline std::string_view fileKind(mode_t mode) noexcept {
    if (S_ISREG(mode)) return "regular file";
    if (S_ISDIR(mode)) return "folder";
    if (S_ISLNK(mode)) return "symbolic link";
    if (S_ISFIFO(mode)) return "FIFO";
    if (S_ISSOCK(mode)) return "socket";
    if (S_ISCHR(mode)) return "character device";
    if (S_ISBLK(mode)) return "block device";
    return "unknown kind of file";
}

/// The same with its article: "a folder", "an unknown kind of file".
inline std::string articledFileKind(mode_t mode) {
    std::string_view const kind = fileKind(mode);
    return std::string(kind.front() == 'u' ? "an " : "a ") + std::string(kind);
}

}  // namespace refpage
