// Paths inside an output folder that page text may name: relative, '/'-separated UTF-8.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace refpage {

/// The longest segment of such a path, and the longest path, in bytes: within the file
/// system's NAME_MAX (255) and PATH_MAX (4096), leaving room for the folders the path is
/// written in (a docset's Contents/Resources/Documents/, the output folder's own path).
inline constexpr std::size_t maxRelativePathSegmentBytes = 200;
inline constexpr std::size_t maxRelativePathBytes = 3072;

/// True when `path` has a segment, or is in all, longer than the limits above.
bool relativePathTooLong(std::string_view path) noexcept;

/// `path` when it is a safe relative file path: not empty, not absolute, no ".", ".." or
/// empty segment, no backslash, ':', '?', '#' or control character, within the limits above.
std::optional<std::string> safeRelativePath(std::string_view path);

/// `text` percent-encoded for a URL path ('/' kept) or, with `fragment`, a fragment.
/// Keeps ASCII letters, digits and "-._~"; every other byte becomes %XX.
std::string percentEncode(std::string_view text, bool fragment = false);

}  // namespace refpage
