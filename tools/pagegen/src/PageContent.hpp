// The content of one page, drawn from its identity and the pages it may link to.
#pragma once

#include "Random.hpp"

#include <pagegen/PageGen.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace pagegen {

/// What a page documents; decides its entities, syntax kind and groups.
enum class Kind { Function, Class, Method, Object };

/// A page another page can link to.
struct Link {
    std::string name;  ///< the entity name, as "pkg.sort"
    std::string href;  ///< the page's Href
};

/// What a page is, fixed before its content is drawn.
struct PageIdentity {
    std::string name;         ///< entity name, as "pkg.sub.sort" or "pkg.Klass.method"
    std::string href;         ///< the page's Href
    Kind kind = Kind::Function;
    bool deprecated = false;  ///< DeprecationStatus other than "current"
};

/// What the content is drawn from; the referenced objects outlive the call.
struct PageContext {
    PageIdentity const& self;
    std::string const& package;
    std::vector<Link> const& targets;  ///< pages links may point at; links are made up when empty
    std::uint32_t brokenLinks;         ///< per million links, pointing at no page
    std::uint32_t nonAscii;            ///< per million texts
    Shape shape;
};

/// The page's JSON text: every key in the page format's order, enumerations as keys.
std::string pageJson(PageContext const& context, Random random);

}  // namespace pagegen
