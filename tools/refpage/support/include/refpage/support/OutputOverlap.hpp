// The one check every command with an output makes before it reads anything: the
// output must not be, or lie inside, any of its inputs, nor hold one.
#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>

namespace refpage {

/// Why writing `output` would touch an input, or nullopt when it would not. Refused: an
/// output that is an input file, that is an input folder or lies inside one (at any depth),
/// or that is an existing folder holding an input (a folder output replaces everything in
/// it). Files and folders are compared by device and inode, so symlinks, hard links, bind
/// mounts and spellings such as "a/../b" are seen through. "-" (standard input) and inputs
/// that do not exist are passed over. The message names the output and the input.
std::optional<std::string> outputOverlapsInput(std::filesystem::path const& output,
                                               std::span<std::string const> inputs);

}  // namespace refpage
