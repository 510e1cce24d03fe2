// Files replaced whole or not at all.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace refpage {

/// Writes `text` to a new temporary file beside `file`, then renames it over `file`;
/// a file replaced keeps its permission bits. On failure `file` is untouched, the
/// temporary is gone, and `error` holds the reason.
bool replaceFile(std::filesystem::path const& file, std::string_view text, std::string& error);

}  // namespace refpage
