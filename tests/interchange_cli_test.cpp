// The interchange commands as a user runs them: inventory writes objects.inv of the
// pages at their site paths, check --inventory judges links into other doc sets and
// refuses hostile inventories, schema prints the page schema.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <refpage/interchange/InventoryReader.hpp>
#include <set>
#include <sstream>
#include <string>
#include <tuple>

#include "support/InventoryFiles.hpp"
#include "support/ToolRun.hpp"

namespace {

using testvalues::expectRun;
using testvalues::ScratchFolder;


std::string quotedPath(std::filesystem::path const& path) {
    return "'" + path.string() + "'";
}

TEST(InventoryCommand, ListsEveryEntryOfThePagesAtItsSitePathTheSameBytesEachRun) {
    ScratchFolder const folder;
    std::string const arguments =
        "inventory " + testvalues::data("good") + " --project Demo --version 1.0 -o " + quotedPath(folder / "a.inv");
    expectRun(arguments, 0, {"3 pages, 7 entries written to"});
    std::string const first = testvalues::readFile(folder / "a.inv");
    expectRun(arguments, 0);
    EXPECT_EQ(testvalues::readFile(folder / "a.inv"), first);

    refpage::Inventory const read = refpage::readInventory(first, "a.inv");
    EXPECT_EQ(read.project, "Demo");
    std::set<std::tuple<std::string, std::string, std::string>> items;
    for (auto const& item : read.items) items.emplace(item.name, item.role, item.uri);
    std::string const lattice = "reference/demo/demo.grid.Lattice.html";
    EXPECT_EQ(items, (std::set<std::tuple<std::string, std::string, std::string>>{
                         {"demo.minimal", "py:function", "demo/minimal.html"},
                         {"demo.grid.Lattice", "py:class", lattice},
                         {"demo.grid.Lattice.step", "py:method", lattice + "#demo.grid.Lattice.step"},
                         {"demo.grid.Lattice.origin", "py:property", lattice + "#demo.grid.Lattice-origin"},
                         {"demo.grid.Lattice.shape", "py:property", lattice + "#demo.grid.Lattice-shape"},
                         {"demo.grid.Lattice.spacing", "py:property", lattice + "#demo.grid.Lattice-spacing"},
                         {"demo.clef\xf0\x9d\x84\x9e", "py:class", "demo/unicode.html"}}));
}

TEST(InventoryCommand, ABadPageLeavesTheFileAsItWasAndOptionsAreChecked) {
    ScratchFolder const folder;
    folder.write("old.inv", "old");
    expectRun("inventory " + testvalues::data("bad/wrong_type.json") + " --project P -o " +
                  quotedPath(folder / "old.inv"),
              1, {"1 failed", "left as it was"});
    EXPECT_EQ(testvalues::readFile(folder / "old.inv"), "old");
    expectRun("inventory " + testvalues::data("good") + " -o " + quotedPath(folder / "x.inv"), 2, {"--project"});
    expectRun("inventory " + testvalues::data("good") + " --project P --domain 'py:x' -o x.inv", 2, {"--domain"});
}

class CheckInventory : public ::testing::Test {
protected:
    void SetUp() override {
        // The other doc set publishes its inventory; this set's pages link into it.
        folder_.write("other/a.json", R"({"Href": "lib/a.html", "RefEntities": [{"Name": "other.a"}]})");
        expectRun("inventory " + quotedPath(folder_ / "other") + " --project Other -o " + quotedPath(inventory()), 0);
        folder_.write("pages/good.json", R"({"Href": "g.html", "SeeAlso": [{"Url": "https://other.example/v1/lib/a.html"},
            {"Url": "https://other.example/v1/"}, {"Url": "https://elsewhere.example/x.html"}]})");
        folder_.write("pages/planted.json", R"({"Href": "p.html",
            "InputGroups": [{"Inputs": [{"Href": "https://other.example/v1/lib/a.html"}]}],
            "SeeAlso": [{"Url": "https://other.example/v1/lib/gone.html"}]})");
    }
    std::filesystem::path inventory() const { return folder_ / "other.inv"; }
    std::string option() const { return " --inventory https://other.example/v1=" + quotedPath(inventory()); }

    ScratchFolder folder_;
};

TEST_F(CheckInventory, ReportsTheLinkToAPageTheInventoryLacksAndAcceptsTheOthers) {
    std::string const planted = (folder_ / "pages/planted.json").string();
    testvalues::ToolRun const run =
        expectRun("check " + quotedPath(folder_ / "pages") + option(), 0,
                  {planted + ": warning: link \"https://other.example/v1/lib/gone.html\" names nothing that the "
                             "inventory of \"https://other.example/v1/\" (\"" + inventory().string() + "\") lists [/SeeAlso/0/Url]",
                   "2 pages, 0 failed, 0 unresolved links, 0 shared Hrefs, 0 duplicate names, 1 unresolved external link"});
    EXPECT_FALSE(testvalues::contains(run.output, "good.json: warning"));
    expectRun("--strict check " + quotedPath(folder_ / "pages/planted.json") + option(), 1,
              {"planted.json: error: link", "1 pages, 0 failed, 1 unresolved external link"});
    expectRun("check " + quotedPath(folder_ / "pages/good.json") + option(), 0, {"0 unresolved external links"});
}

TEST_F(CheckInventory, AHostileInventoryIsAnErrorNamingItAndNoPageIsChecked) {
    for (auto const& hostile : testvalues::hostileInventories()) {
        SCOPED_TRACE(hostile.name);
        std::filesystem::path const file = folder_.write(hostile.name + ".inv", hostile.bytes);
        testvalues::ToolRun const run = expectRun("check " + quotedPath(folder_ / "pages") +
                                                      " --inventory https://other.example/v1/=" + quotedPath(file),
                                                  1, {file.string() + ": error: ", hostile.reported});
        EXPECT_FALSE(testvalues::contains(run.output, "pages,")) << "pages were checked";
    }
    expectRun("check " + quotedPath(folder_ / "pages") + " --inventory https://x.example/=" +
                  quotedPath(folder_ / "none.inv"),
              1, {"none.inv: error: No such file or directory"});
    expectRun("check " + quotedPath(folder_ / "pages") + " --inventory https://x.example/=" + quotedPath(folder_.path()),
              1, {"error: is a folder, expected an inventory file"});
    for (char const* bad : {" --inventory x.inv", " --inventory docs/=x.inv"})
        expectRun("check " + quotedPath(folder_ / "pages") + bad, 2, {"refpage: --inventory"});
}

TEST(SchemaCommand, PrintsTheSchemaOrWritesItAndAPageNamingItPassesCheck) {
    ScratchFolder const folder;
    testvalues::ToolRun const printed = expectRun("schema", 0, {}, "2>/dev/null");
    nlohmann::json const schema = nlohmann::json::parse(printed.output);
    EXPECT_EQ(schema["$schema"], "https://json-schema.org/draft/2020-12/schema");
    expectRun("schema -o " + quotedPath(folder / "page.schema.json"), 0);
    EXPECT_EQ(testvalues::readFile(folder / "page.schema.json"), printed.output);
    folder.write("p.json", R"({"$schema": "page.schema.json", "Href": "p.html"})");
    expectRun("check " + quotedPath(folder / "p.json"), 0, {"1 pages, 0 failed"});
}

}  // namespace
