// Where page texts come from: files named on the command line, folders walked for
// *.json, and standard input. Every input ends as a text or as one error naming
// the path and the system's reason; nothing here throws for a bad entry.
#pragma once

#include <filesystem>
#include <optional>
#include <refpage/format/PageError.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace refpage {

/// The path that names standard input, and the source name its page gets.
inline constexpr std::string_view stdinPath = "-";
inline constexpr std::string_view stdinSource = "<stdin>";

/// One input to read: a file, standard input, or an entry already known to be unreadable.
struct PageEntry {
    std::string path;                ///< the file as named or found; empty for standard input. Text, not a
                                     ///< path object, which would hold each component again: a set keeps one per page
    std::optional<PageError> error;  ///< set when the walk could not use the entry; then it is never read

    bool isStdin() const noexcept { return path.empty() && !error; }
    /// The name messages use: the path, or "<stdin>".
    std::string source() const;
};

/// The entries named by `names`, in order. A file is taken as named (even if it does
/// not exist: reading it reports why); "-" is standard input; a folder is walked
/// iteratively, each level sorted by name, keeping `*.json` entries that are not
/// folders, descending into subfolders but never following a symlinked folder nor entering
/// a subfolder the tool wrote (a site or docset, known by its outputMarkerName file), and
/// adding an error entry for every entry or subfolder it cannot read.
std::vector<PageEntry> findPageEntries(std::vector<std::string> const& names);

/// The whole text of `file`, or false and `error` with the system's reason. Anything
/// but a regular file is refused before it is opened for reading ("is a folder,
/// expected a page file", "not a regular file (FIFO)", ...).
bool readTextFile(std::filesystem::path const& file, std::string& text, PageError& error);

/// All of standard input, or false and `error`.
bool readStandardInput(std::string& text, PageError& error);

/// The text of `entry`: its file, standard input, or its walk error.
bool readPageEntry(PageEntry const& entry, std::string& text, PageError& error);

}  // namespace refpage
