#include "PageContent.hpp"
#include "Random.hpp"
#include "Text.hpp"

#include <pagegen/PageGen.hpp>

#include <algorithm>
#include <fstream>
#include <set>
#include <stdexcept>

namespace pagegen {

namespace {

std::string hrefOf(std::string const& name) { return "reference/generated/" + name + ".html"; }

Kind drawKind(Random& random) {
    std::size_t const draw = random.below(100);
    if (draw < 84) return Kind::Function;
    if (draw < 92) return Kind::Class;
    if (draw < 98) return Kind::Method;
    return Kind::Object;
}

/// Names, Hrefs and kinds of every page of a set. Leaves repeat across submodules
/// ("pkg.sort", "pkg.linalg.sort"), full names repeat only by the duplicate share.
std::vector<PageIdentity> drawIdentities(DocSetOptions const& options, Random& random, Text& text) {
    std::vector<std::string> submodules;
    std::size_t const submoduleCount = std::clamp<std::size_t>(options.pages / 40, 2, 12);
    for (std::size_t i = 0; i < submoduleCount; ++i) submodules.push_back(text.word());
    std::vector<std::string> leaves;
    std::size_t const leafCount = std::max<std::size_t>(options.pages * 2 / 3, 4);
    for (std::size_t i = 0; i < leafCount; ++i) leaves.push_back(text.identifier());

    std::uint32_t const duplicateNames = perMillion(options.duplicateNames);
    std::uint32_t const duplicateHrefs = perMillion(options.duplicateHrefs);
    std::uint32_t const deprecated = perMillion(options.deprecated);
    std::vector<PageIdentity> pages;
    std::vector<std::string> classes;
    std::set<std::string> names;
    for (std::size_t i = 0; i < options.pages; ++i) {
        PageIdentity page;
        page.kind = drawKind(random);
        if (page.kind == Kind::Method && classes.empty()) page.kind = Kind::Function;
        bool const repeat = !pages.empty() && random.chance(duplicateNames);
        if (repeat) {
            PageIdentity const& earlier = pages[random.below(pages.size())];
            page.name = earlier.name;
            page.kind = earlier.kind;
        } else {
            for (int attempt = 0; page.name.empty() || names.contains(page.name); ++attempt) {
                std::string prefix = options.package;
                if (page.kind == Kind::Method) {
                    prefix = classes[random.below(classes.size())];
                } else if (random.chance(450'000)) {
                    prefix += "." + submodules[random.below(submodules.size())];
                }
                std::string leaf = page.kind == Kind::Class ? text.className() : leaves[random.below(leaves.size())];
                if (attempt >= 8) leaf += std::to_string(attempt);
                page.name = prefix + "." + leaf;
            }
            names.insert(page.name);
            if (page.kind == Kind::Class) classes.push_back(page.name);
        }
        page.href = hrefOf(page.name);
        if (!pages.empty() && random.chance(duplicateHrefs)) page.href = pages[random.below(pages.size())].href;
        page.deprecated = random.chance(deprecated);
        pages.push_back(std::move(page));
    }
    return pages;
}

}  // namespace

std::string generatePage(std::uint64_t seed, Shape shape) {
    Random random(seed);
    Text text(random, perMillion(0.03));
    std::string const package = "pkg";
    std::vector<Link> const targets;  // links are made up
    PageIdentity self;
    self.kind = shape == Shape::Drawn ? drawKind(random) : Kind::Class;
    self.name = package + "." + (self.kind == Kind::Class ? text.className() : text.identifier());
    self.href = hrefOf(self.name);
    PageContext const context{self, package, targets, 0, perMillion(0.03), shape};
    return pageJson(context, random.fork());
}

std::vector<GeneratedPage> generateDocSet(DocSetOptions const& options) {
    Random random(options.seed);
    Text text(random, 0);
    std::vector<PageIdentity> const identities = drawIdentities(options, random, text);

    std::vector<Link> targets;
    targets.reserve(identities.size());
    for (PageIdentity const& page : identities) targets.push_back({page.name, page.href});

    std::vector<GeneratedPage> pages;
    pages.reserve(identities.size());
    std::set<std::string> fileNames;
    for (std::size_t i = 0; i < identities.size(); ++i) {
        PageIdentity const& self = identities[i];
        Shape const shape = identities.size() >= 20 && i < 2 ? (i == 0 ? Shape::Full : Shape::Largest) : Shape::Drawn;
        PageContext const context{self,
                                  options.package,
                                  targets,
                                  perMillion(options.brokenLinks),
                                  perMillion(options.nonAscii),
                                  shape};
        GeneratedPage page{self.name + ".json", self.href, self.name, pageJson(context, random.fork())};
        for (std::size_t n = 2; fileNames.contains(page.fileName); ++n)
            page.fileName = self.name + "_" + std::to_string(n) + ".json";
        fileNames.insert(page.fileName);
        pages.push_back(std::move(page));
    }
    return pages;
}

void writeDocSet(std::filesystem::path const& folder, std::vector<GeneratedPage> const& pages) {
    std::filesystem::create_directories(folder);
    for (GeneratedPage const& page : pages) {
        std::filesystem::path const file = folder / page.fileName;
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        out << page.json;
        out.close();
        if (!out) throw std::runtime_error("cannot write " + file.string());
    }
}

}  // namespace pagegen
