// Reading a Sphinx inventory (objects.inv, version 2) that another doc set publishes,
// trusting nothing in it: every limit below is checked as the file is read, so a
// hostile file costs at most that much memory and time and ends in an InventoryError
// naming the file and what is wrong (and, for an entry, which one).
//
// Read as Sphinx 5.3 reads it: four header lines ("# Sphinx inventory version 2",
// "# Project: ", "# Version: ", a line mentioning zlib), then one zlib stream of lines
// `name domain:role priority uri displayName`; a name may hold spaces (the first split
// that leaves a role, a priority, a uri and a display name wins). Unlike Sphinx, a line
// that does not have that shape, or a role without ':', is an error rather than skipped,
// and nothing may follow the stream. Empty lines are skipped.
#pragma once

#include <cstddef>
#include <filesystem>
#include <refpage/interchange/Inventory.hpp>
#include <string_view>

namespace refpage {

struct InventoryLimits {
    std::size_t fileBytes = std::size_t{16} << 20;      ///< the file as stored: 16 MiB
    std::size_t inflatedBytes = std::size_t{64} << 20;  ///< the entries inflated: 64 MiB; a bomb stops here
    std::size_t lineBytes = std::size_t{64} << 10;      ///< one line, header or entry: 64 KiB
    std::size_t items = 500000;                         ///< entries
};

/// The inventory in `bytes`; `source` names it in errors. Memory stays within the limits'
/// sizes (the inflated text is never held whole). Throws InventoryError.
Inventory readInventory(std::string_view bytes, std::string_view source, InventoryLimits const& limits = {});

/// The inventory in `file`, which must be a regular file of at most limits.fileBytes.
/// Throws InventoryError, naming `file` as given.
Inventory readInventoryFile(std::filesystem::path const& file, InventoryLimits const& limits = {});

}  // namespace refpage
