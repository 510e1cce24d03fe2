// Checking that a page survives the host: loaded, read back two ways, written
// out and loaded again, and copied, it always compares equal to its input.
#pragma once

#include <refpage/Json.hpp>
#include <refpage/PageError.hpp>
#include <refpage/PageParser.hpp>
#include <string>
#include <string_view>

namespace refpage {

struct CheckReport {
    PageErrors failures;
    PageErrors warnings;

    bool passed() const noexcept { return failures.empty(); }
};

/// Every difference between `expected` and `actual` for the keys `expected` has
/// (arrays compare whole), one message each, with its path under `path`.
void compareJson(Json const& expected, Json const& actual, std::string& path, std::vector<std::string>& differences);

/// Loads `text` through the host and checks the round trips.
CheckReport checkPage(std::string_view text, std::string_view source, LoadOptions const& options = {});

}  // namespace refpage
