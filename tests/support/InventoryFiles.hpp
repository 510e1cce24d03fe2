// Sphinx inventory files for the tests, made with zlib directly rather than with the
// writer under test: well-formed ones from given lines, and hostile ones. For the tests
// that link zlib ("z").
#pragma once

#include <zlib.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace testvalues {

inline constexpr std::string_view inventoryHeader =
    "# Sphinx inventory version 2\n# Project: Demo\n# Version: 1.0\n"
    "# The remainder of this file is compressed using zlib.\n";

/// `text` as one zlib stream at level 9, as Sphinx compresses its inventories.
inline std::string zlibStream(std::string_view text) {
    uLongf size = compressBound(static_cast<uLong>(text.size()));
    std::string out(size, '\0');
    if (compress2(reinterpret_cast<Bytef*>(out.data()), &size, reinterpret_cast<Bytef const*>(text.data()),
                  static_cast<uLong>(text.size()), 9) != Z_OK)
        throw std::runtime_error("compress2 failed");
    out.resize(size);
    return out;
}

/// A whole inventory file whose compressed part holds `lines`.
inline std::string inventoryFile(std::string_view lines) {
    return std::string(inventoryHeader) + zlibStream(lines);
}

/// A zlib stream that inflates to `repeats` copies of `unit` (at most 64 KiB) in a few
/// bytes per copy: each copy is compressed after a full flush, so all but the first are
/// the same bytes and are repeated rather than compressed. Its checksum is never right:
/// a reader must stop long before it.
inline std::string zlibBomb(std::string_view unit, std::size_t repeats) {
    z_stream stream{};
    if (deflateInit(&stream, 9) != Z_OK) throw std::runtime_error("deflateInit failed");
    auto flushed = [&stream, unit](int flush) {
        std::string out(compressBound(static_cast<uLong>(unit.size())) + 64, '\0');
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(unit.data()));
        stream.avail_in = flush == Z_FINISH ? 0 : static_cast<uInt>(unit.size());
        stream.next_out = reinterpret_cast<Bytef*>(out.data());
        stream.avail_out = static_cast<uInt>(out.size());
        deflate(&stream, flush);
        out.resize(out.size() - stream.avail_out);
        return out;
    };
    std::string bomb = flushed(Z_FULL_FLUSH);
    std::string const copy = flushed(Z_FULL_FLUSH);
    if (flushed(Z_FULL_FLUSH) != copy) throw std::runtime_error("full flushes differ: no bomb");
    bomb.reserve(bomb.size() + copy.size() * repeats + 64);
    for (std::size_t i = 2; i < repeats; ++i) bomb += copy;
    bomb += flushed(Z_FINISH);
    deflateEnd(&stream);
    return bomb;
}

/// 1 GiB of blank lines (which a reader skips, so only the inflated size stops it) in under 3 MiB.
inline std::string inventoryBomb() {
    std::string unit;
    for (int i = 0; i < 64; ++i) unit += std::string(1023, ' ') + "\n";
    return std::string(inventoryHeader) + zlibBomb(unit, 16384);
}

struct HostileInventory {
    std::string name;      ///< what it is, and its file name in the tool's tests
    std::string bytes;
    std::string reported;  ///< a part of the error message that says what is wrong
};

/// Every kind of malformed or hostile inventory that reading must refuse with the default limits.
inline std::vector<HostileInventory> hostileInventories() {
    std::string const header(inventoryHeader);
    std::string const good = inventoryFile("a py:function 1 a.html -\n");
    std::string badChecksum = good;
    badChecksum.back() = static_cast<char>(badChecksum.back() ^ 0x55);
    return {
        {"empty", "", "the file is empty"},
        {"html", "<!DOCTYPE html>\n<html></html>\n", "not a Sphinx inventory: the first line is <!DOCTYPE html>"},
        {"version-1", "# Sphinx inventory version 1\n# Project: P\n# Version: 1\nx mod x.html\n", "version 1"},
        {"no-project", "# Sphinx inventory version 2\n# Name: P\n# Version: 1\n# zlib\n", "header line 2 is"},
        {"uncompressed", "# Sphinx inventory version 2\n# Project: P\n# Version: 1\n# plain\n", "not said to be"},
        {"header-cut", "# Sphinx inventory version 2\n# Project: P", "the file ends in header line 2"},
        {"huge-header", "# Sphinx inventory version 2\n# Project: " + std::string(100000, 'p') + "\n",
         "header line 2 is longer than 64 KiB"},
        {"header-not-utf8", "# Sphinx inventory version 2\n# Project: \xff\xfe\n# Version: 1\n# zlib\n",
         "header line 2 is not valid UTF-8"},
        {"not-zlib", header + "name py:function 1 uri -\n", "no zlib stream or a corrupt one"},
        {"bad-checksum", badChecksum, "no zlib stream or a corrupt one: \"incorrect data check\""},
        {"cut-zlib", good.substr(0, good.size() - 6), "the compressed entries end early"},
        {"trailing-bytes", good + "tail", "4 bytes follow the end of the compressed entries"},
        {"bomb", inventoryBomb(), "inflate to more than 64 MiB"},
        {"huge-line", inventoryFile(std::string(200000, 'n') + " py:function 1 u -\n"), "entry 1 is longer than 64 KiB"},
        {"entry-not-utf8", inventoryFile("ok py:function 1 u -\nn\xc3\x28 py:function 1 u -\n"),
         "entry 2 is not valid UTF-8"},
        {"one-word", inventoryFile("word\n"), "entry 1 is not \"name domain:role priority uri displayName\""},
        {"no-domain", inventoryFile("a function 1 a.html -\n"), "entry 1 has the role \"function\""},
        {"huge-priority", inventoryFile("a py:function 99999999999999999999 a.html -\n"),
         "entry 1 has the priority 99999999999999999999"},
    };
}

}  // namespace testvalues
