// Output that cannot fail silently: standard streams checked at exit, and files
// replaced whole or not at all.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace refpage {

/// Flushes and closes standard output and flushes standard error. On a failed write
/// (now, or earlier with the system error `earlierFailure`) says so on stderr, when it
/// can, and returns false: the run must exit 1.
bool finishOutput(int earlierFailure = 0);

/// Writes `text` to a new temporary file beside `file`, then renames it over `file`;
/// a file replaced keeps its permission bits. On failure `file` is untouched, the
/// temporary is gone, and `error` holds the reason.
bool replaceFile(std::filesystem::path const& file, std::string_view text, std::string& error);

}  // namespace refpage
