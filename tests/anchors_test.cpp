// The ids of one page: decided once from the page, unique, stable, and a row's own link
// into its page kept as its id so that such links have a target.
#include <gtest/gtest.h>

#include <refpage/format/Anchors.hpp>
#include <refpage/format/Loader.hpp>
#include <set>
#include <string>
#include <vector>

#include "support/HostTest.hpp"

namespace {

using refpage::Anchor;

class AnchorsTest : public HostTest {
protected:
    std::vector<Anchor> anchors(std::string const& json) {
        auto result = refpage::loadPage(json, "page.json");
        EXPECT_TRUE(result.ok()) << (result.errors.empty() ? "" : result.errors.front().describe());
        auto out = refpage::anchorsOf(refpage::nativePage(result.page.get()));
        result = {};
        return out;
    }
    static std::string idOf(std::vector<Anchor> const& all, Anchor::Kind kind, std::vector<std::size_t> path) {
        for (auto const& anchor : all)
            if (anchor.kind == kind && anchor.indexPath == path) return anchor.id;
        return "(none)";
    }
};

TEST_F(AnchorsTest, RowsKeepTheirOwnFragmentsAndOthersGetDerivedIdsAllUnique) {
    auto const all = anchors(R"({"Href": "ref/k.html", "RefEntities": [{"Name": "pkg.K", "RefEntityType": "class"},
        {"Name": "pkg.K", "RefEntityType": "constructor"}, {"Name": "pkg.K.go", "RefEntityType": "method"}],
      "Description": "Intro\n\n## Usage notes\n\ntext\n\n## Usage notes\n",
      "InputGroups": [{"Title": "Input Arguments", "Inputs": [{"Name": "axis", "Href": "#pkg.K-axis"},
        {"Name": "axis", "Href": "ref/k.html#pkg.K-axis"}, {"Name": "main", "Href": "#main"},
        {"Name": "w", "Href": "#has space"}]}],
      "ClassPropertyGroups": [{"Properties": [{"Name": "T", "Href": "#pkg.K-T"}, {"Name": "output-x"}]}],
      "Outputs": [{"Name": "x"}],
      "Examples": [{"Title": "", "Url": "ref/k.html#example-2"}, {"Title": "Second"}, {"Url": "ref/other.html#e"}],
      "SeeAlso": [{"Name": "o", "Url": "ref/o.html"}]})");
    using K = Anchor::Kind;
    EXPECT_EQ(idOf(all, K::Input, {0, 0}), "pkg.K-axis");
    EXPECT_EQ(idOf(all, K::Input, {0, 1}), "input-axis") << "a fragment already taken";
    EXPECT_EQ(idOf(all, K::Input, {0, 2}), "input-main") << "the layout's own ids are never taken";
    EXPECT_EQ(idOf(all, K::Input, {0, 3}), "input-w") << "a fragment that is no valid id";
    EXPECT_EQ(idOf(all, K::ClassProperty, {0, 0}), "pkg.K-T");
    EXPECT_EQ(idOf(all, K::ClassProperty, {0, 1}), "property-output-x");
    EXPECT_EQ(idOf(all, K::Output, {0}), "output-x");
    EXPECT_EQ(idOf(all, K::Example, {0}), "example-2");
    EXPECT_EQ(idOf(all, K::Example, {1}), "example-2-2") << "example-2 is claimed by the first example's own link";
    EXPECT_EQ(idOf(all, K::Example, {2}), "example-3");
    EXPECT_EQ(idOf(all, K::Entity, {1}), "(none)") << "a constructor documented with its class is the class";
    EXPECT_EQ(idOf(all, K::Entity, {2}), "pkg.K.go");
    EXPECT_EQ(idOf(all, K::Heading, {0}), "Usage-notes");
    EXPECT_EQ(idOf(all, K::Heading, {1}), "Usage-notes-2");
    EXPECT_EQ(idOf(all, K::Section, {static_cast<std::size_t>(refpage::PageSection::Description), 0}), "description");
    EXPECT_EQ(idOf(all, K::Section, {static_cast<std::size_t>(refpage::PageSection::SeeAlso), 0}), "see-also");
    std::set<std::string> ids;
    for (auto const& anchor : all) EXPECT_TRUE(ids.insert(anchor.id).second) << anchor.id;
    EXPECT_EQ(all[all.size() - 2].name, "Example 3") << "untitled examples are named by their place";
}

TEST_F(AnchorsTest, IdsFromTextKeepNamesAndNonAsciiAndAreBounded) {
    EXPECT_EQ(refpage::idFromText("numpy.ndarray.T", "x"), "numpy.ndarray.T");
    EXPECT_EQ(refpage::idFromText("  Größe & <b>Maß</b> ", "x"), "Größe-b-Maß-b");
    EXPECT_EQ(refpage::idFromText("!!!", "fallback"), "fallback");
    std::string const long_ = refpage::idFromText(std::string(150, 'a') + std::string(100, '\xc3') + "é", "x");
    EXPECT_LE(long_.size(), 200u);
    std::string const cut = refpage::idFromText(std::string(199, 'a') + "é", "x");
    EXPECT_EQ(cut, std::string(199, 'a')) << "never half a character";
}

TEST_F(AnchorsTest, SamePageSameAnchors) {
    std::string const page = R"({"Href": "a.html", "RefEntities": [{"Name": "a"}],
        "Parameters": [{"Name": "p"}, {"Name": "p"}], "Examples": [{}, {}]})";
    auto const first = anchors(page);
    EXPECT_EQ(first, anchors(page));
    EXPECT_EQ(idOf(first, Anchor::Kind::Parameter, {1}), "parameter-p-2");
}

}  // namespace
