// Small doc sets written in a line each, for the doc set's tests and the tool's.
#pragma once

#include <fmt/format.h>

#include <refpage/format/Loader.hpp>
#include <string>
#include <vector>

#include "support/Files.hpp"

namespace testvalues {

/// A page "<name>.json" at Href "ref/<name>.html" with the given extra members and, unless they
/// give RefEntities, one function "pkg.<name>".
inline refpage::PageInput page(std::string const& name, std::string const& extra = {}) {
    std::string const entities =
        contains(extra, "RefEntities")
            ? ""
            : fmt::format(R"(, "RefEntities": [{{"Name": "pkg.{}", "RefEntityType": "function"}}])", name);
    return refpage::PageInput::memory(
        name + ".json", fmt::format(R"({{"Href": "ref/{}.html"{}{}}})", name, entities, extra.empty() ? "" : ", " + extra));
}

/// The text of a page at `href` documenting `name` in package "p", with `rest` (members, each after a comma) added.
inline std::string pageAt(std::string const& name, std::string const& href, std::string const& rest = "") {
    return fmt::format(R"({{"Href": "{}", "RefEntities": [{{"Name": "{}"}}], "PackageName": "p"{}}})", href, name, rest);
}

/// RefEntities of one entity of each "name:type" given, then a Purpose.
inline std::string documenting(std::vector<std::string> const& entities, std::string const& purpose) {
    std::string list;
    for (std::string const& entity : entities)
        list += fmt::format(R"({}{{"Name": "{}", "RefEntityType": "{}"}})", list.empty() ? "" : ", ",
                            entity.substr(0, entity.find(':')), entity.substr(entity.find(':') + 1));
    return fmt::format(R"("RefEntities": [{}], "Purpose": "{}")", list, purpose);
}

}  // namespace testvalues
