// Links into other doc sets, judged by the inventories those sets publish. A link
// under an inventory's base URL must name something the inventory lists:
//   - with a fragment ("library/os.html#os.getcwd"): exactly the uri of one of its items;
//   - without one ("library/os.html"): a page that one of its items is on (Sphinx also
//     lists every page itself, as a std:doc item);
//   - the base URL itself, with or without its final '/': the site's root, always found.
// Comparison is bytewise, after the base URL: no percent-decoding, no case folding.
#pragma once

#include <cstddef>
#include <optional>
#include <refpage/interchange/Inventory.hpp>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace refpage {

class ExternalInventories {
public:
    enum class Verdict {
        Outside,  ///< under no inventory's base URL: not judged
        Found,    ///< names something its inventory lists
        Missing,  ///< under an inventory's base URL, naming nothing it lists
    };
    struct Resolution {
        Verdict verdict = Verdict::Outside;
        std::string_view baseUrl;  ///< the base URL that judged it (the longest that matches); borrowed from this object
        std::string_view source;   ///< that inventory's file, as named when added; borrowed from this object
    };

    /// Adds the inventory of the site at `baseUrl` (a final '/' is added when missing);
    /// `source` names its file in findings. Inventories added under one base URL are merged.
    void add(std::string baseUrl, Inventory const& inventory, std::string source);

    /// Where `url` (UTF-8, as a page writes it) stands. Safe to call from several threads at once.
    Resolution resolve(std::string_view url) const;

    bool empty() const noexcept { return sites_.empty(); }

private:
    struct Site {
        std::string baseUrl;                    ///< ends with '/'
        std::string source;                     ///< the first file added under it
        std::unordered_set<std::string> uris;   ///< every item's uri, relative to baseUrl
        std::unordered_set<std::string> pages;  ///< every item's uri without its fragment
    };
    std::vector<Site> sites_;  ///< longest base URL first
};

/// One `--inventory URL=FILE` option, split at its first '='.
struct InventoryOption {
    std::string baseUrl;
    std::string file;
};

/// The option's parts, or nullopt with `error` saying what is wrong: URL must be absolute
/// ("scheme://..."), FILE must not be empty.
std::optional<InventoryOption> parseInventoryOption(std::string_view option, std::string& error);

}  // namespace refpage
