// Paths inside an output folder that page text may name: relative, '/'-separated UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace refpage {

/// `path` when it is a safe relative file path: not empty, not absolute, no ".", ".." or
/// empty segment, no segment over 200 bytes, no backslash, ':', '?', '#' or control character.
std::optional<std::string> safeRelativePath(std::string_view path);

}  // namespace refpage
