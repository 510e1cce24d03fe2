// The formats other tools read: Sphinx inventories written byte for byte as Sphinx
// writes them and read back, hostile inventories refused within their limits, links
// into other doc sets judged by their inventories, and the page schema holding every
// key of the tables pages are loaded with.
#include <gtest/gtest.h>

#include <algorithm>
#include <reference/glue/Enumerations.hpp>
#include <reference/glue/PropertyTable.hpp>
#include <refpage/format/Loader.hpp>
#include <refpage/format/Writer.hpp>
#include <refpage/interchange/ExternalLinks.hpp>
#include <refpage/interchange/InventoryReader.hpp>
#include <refpage/interchange/InventoryWriter.hpp>
#include <refpage/interchange/PageSchema.hpp>
#include <refpage/interchange/SchemaDescriptions.hpp>
#include <string>
#include <vector>

#include "support/HostTest.hpp"
#include "support/InventoryFiles.hpp"

namespace {

using namespace refpage;
using Type = reference::property::RefEntityType;

std::vector<InventoryEntry> const smallSet{
    {"pkg.sort", Type::Function, "ref/pkg.sort.html#pkg.sort"},
    {"pkg.Grid", Type::Class, "ref/pkg.Grid.html"},
    {"pkg.Grid", Type::Constructor, "ref/pkg.Grid.html"},
    {"pkg.Grid.shape", Type::Property, "ref/pkg.Grid.html#pkg.Grid.shape"},
    {"pkg", Type::Package, "ref/pkg.html"},
    {"Run a model", Type::Tool, "ref/run.html"},
    {"x", Type::Function, "ref/x"},
};

InventoryOptions const demo{"Demo", "1.0"};

TEST(InventoryWriter, WritesSphinxsHeaderThenItsSortedLinesCompressedAsSphinxDoes) {
    std::string const lines =
        "pkg py:module 0 ref/pkg.html -\n"
        "pkg.Grid py:class 1 ref/pkg.Grid.html -\n"
        "pkg.Grid py:method 1 ref/pkg.Grid.html -\n"
        "pkg.Grid.shape py:property 1 ref/pkg.Grid.html#$ -\n"
        "pkg.sort py:function 1 ref/pkg.sort.html#$ -\n"
        "x py:function 1 ref/x -\n"
        "Run a model std:label -1 ref/run.html -\n";
    EXPECT_EQ(inventoryBytes(smallSet, demo), testvalues::inventoryFile(lines));
}

TEST(InventoryWriter, TheSameEntriesInAnyOrderOrRepeatedGiveTheSameBytes) {
    std::vector<InventoryEntry> shuffled(smallSet.rbegin(), smallSet.rend());
    shuffled.push_back(smallSet.front());
    EXPECT_EQ(inventoryBytes(shuffled, demo), inventoryBytes(smallSet, demo));
}

TEST(InventoryWriter, WhatWouldBreakALineIsMadeSafe) {
    std::vector<InventoryEntry> const entries{{" a\tb\n c ", Type::Function, "p q.html#a$"}, {"", Type::Class, "z"}};
    Inventory const read = readInventory(inventoryBytes(entries, {"Demo\nx", " \t"}), "t.inv");
    EXPECT_EQ(read.project, "Demo x");
    EXPECT_EQ(read.version, "");
    ASSERT_EQ(read.items.size(), 1u) << "the entry without a name is left out";
    EXPECT_EQ(read.items[0].name, "a b c");
    EXPECT_EQ(read.items[0].uri, "p%20q.html#a%24");
}

TEST(InventoryWriter, ReadsBackAsWrittenWithTheDollarAndDashExpanded) {
    Inventory const read = readInventory(inventoryBytes(smallSet, demo), "t.inv");
    ASSERT_EQ(read.items.size(), smallSet.size());
    InventoryItem const& shape = read.items[3];
    EXPECT_EQ(shape.name, "pkg.Grid.shape");
    EXPECT_EQ(shape.role, "py:property");
    EXPECT_EQ(shape.uri, "ref/pkg.Grid.html#pkg.Grid.shape");
    EXPECT_EQ(shape.displayName, "pkg.Grid.shape");
    EXPECT_EQ(read.items.back().name, "Run a model");
    EXPECT_EQ(read.items.back().priority, -1);
}

TEST(InventoryWriter, AnotherDomainRenamesOnlyTheMappedRoles) {
    Inventory const read = readInventory(inventoryBytes(smallSet, {"Demo", "1", "js"}), "t.inv");
    std::vector<std::string> roles;
    for (auto const& item : read.items) roles.push_back(item.role);
    std::sort(roles.begin(), roles.end());
    roles.erase(std::unique(roles.begin(), roles.end()), roles.end());
    EXPECT_EQ(roles, (std::vector<std::string>{"js:class", "js:function", "js:method", "js:module", "js:property",
                                               "std:label"}));
    for (char const* bad : {"", "py:x", "a b", "1py"})
        EXPECT_THROW(inventoryBytes(smallSet, {"Demo", "1", bad}), std::invalid_argument) << bad;
}

TEST(InventoryReader, EveryHostileInventoryIsAnErrorNamingTheFileAndTheFault) {
    for (auto const& hostile : testvalues::hostileInventories()) {
        SCOPED_TRACE(hostile.name);
        try {
            readInventory(hostile.bytes, "in\x1b.inv");
            ADD_FAILURE() << "read";
        } catch (InventoryError const& e) {
            EXPECT_EQ(e.where().source, "in\x1b.inv");
            EXPECT_NE(e.where().message.find(hostile.reported), std::string::npos) << e.where().message;
            for (char const raw : {'\xff', '\xc3'})
                EXPECT_EQ(e.where().message.find(raw), std::string::npos) << "raw bytes quoted";
        }
    }
}

TEST(InventoryReader, EachLimitCanBeLowered) {
    std::string const three = testvalues::inventoryFile("a py:function 1 a.html -\nb std:label -1 b.html B\n"
                                                        "c py:class 1 c.html#$ -\n");
    EXPECT_EQ(readInventory(three, "t.inv").items.size(), 3u);
    auto const refused = [&three](InventoryLimits const& limits) {
        try {
            readInventory(three, "t.inv", limits);
        } catch (InventoryError const& e) {
            return e.where().message;
        }
        return std::string("read");
    };
    EXPECT_EQ(refused({.items = 2}), "more than 2 entries, the most read");
    EXPECT_EQ(refused({.fileBytes = 100}), "the file holds more than 100 bytes, the most read");
    EXPECT_EQ(refused({.inflatedBytes = 50}),
              "the compressed entries inflate to more than 50 bytes, the most read (a decompression bomb?)");
}

TEST(InventoryReader, NamesWithSpacesAndAnEmptyUriReadAsSphinxReadsThem) {
    Inventory const read = readInventory(testvalues::inventoryFile("the first  steps std:label -1 intro.html#$ "
                                                                   "The First Steps\nidx std:doc -1  Index\r\n\n"),
                                         "t.inv");
    ASSERT_EQ(read.items.size(), 2u);
    EXPECT_EQ(read.items[0].name, "the first  steps");
    EXPECT_EQ(read.items[0].uri, "intro.html#the first  steps");
    EXPECT_EQ(read.items[0].displayName, "The First Steps");
    EXPECT_EQ(read.items[1].uri, "");
    EXPECT_EQ(read.items[1].displayName, "Index");
}

ExternalInventories pythonDocs() {
    Inventory inventory;
    inventory.items = {{"os.getcwd", "py:function", 1, "library/os.html#os.getcwd", "os.getcwd"},
                       {"os", "py:module", 0, "library/os.html#module-os", "os"}};
    Inventory deeper;
    deeper.items = {{"x", "py:function", 1, "x.html#x", "x"}};
    ExternalInventories inventories;
    inventories.add("https://docs.example/3", inventory, "python.inv");
    inventories.add("https://docs.example/3/deeper/", deeper, "deeper.inv");
    return inventories;
}

TEST(ExternalInventories, ALinkUnderABaseUrlMustNameAListedUriOrItsPage) {
    using Verdict = ExternalInventories::Verdict;
    ExternalInventories const inventories = pythonDocs();
    std::pair<char const*, Verdict> const cases[] = {
        {"https://docs.example/3/library/os.html#os.getcwd", Verdict::Found},
        {"https://docs.example/3/library/os.html", Verdict::Found},
        {"https://docs.example/3/library/os.html#", Verdict::Found},
        {"https://docs.example/3/", Verdict::Found},
        {"https://docs.example/3", Verdict::Found},
        {"https://docs.example/3/library/os.html#os.nothing", Verdict::Missing},
        {"https://docs.example/3/library/OS.html", Verdict::Missing},
        {"https://docs.example/3/library/sys.html", Verdict::Missing},
        {"https://docs.example/3/deeper/x.html#x", Verdict::Found},
        {"https://docs.example/3/deeper/library/os.html", Verdict::Missing},
        {"https://docs.example/30/library/os.html", Verdict::Outside},
        {"ref/pkg.sort.html", Verdict::Outside},
    };
    for (auto const& [url, verdict] : cases) EXPECT_EQ(inventories.resolve(url).verdict, verdict) << url;
    EXPECT_EQ(inventories.resolve("https://docs.example/3/deeper/y.html").source, "deeper.inv");
}

TEST(ExternalInventories, AnInventoryOptionIsAnAbsoluteUrlAndAFile) {
    std::string error;
    auto const parsed = parseInventoryOption("https://d.example/3/=in=1.inv", error);
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->baseUrl, "https://d.example/3/");
    EXPECT_EQ(parsed->file, "in=1.inv");
    for (char const* bad : {"python.inv", "docs/=x.inv", "https://d.example/=", "=x.inv", "1http://x/=y"}) {
        EXPECT_FALSE(parseInventoryOption(bad, error)) << bad;
        EXPECT_NE(error.find("--inventory"), std::string::npos);
    }
}

class ExternalLinks : public HostTest {};

TEST_F(ExternalLinks, EveryLinkKindIntoAKnownSiteIsJudgedAndOnlyMissingOnesReported) {
    LoadResult const page = loadPage(R"({"SeeAlso": [{"Url": "https://docs.example/3/library/os.html#os.getcwd"},
        {"Url": "https://docs.example/3/library/os.html#os.gone"}, {"Url": "other.html"}],
        "Examples": [{"Url": "https://docs.example/3/tutorial.html"}],
        "InputGroups": [{"Inputs": [{"Href": "https://docs.example/3/library/os.html"}, {"Href": "https://docs.example/3/x#y"}]}],
        "ClassPropertyGroups": [{"Properties": [{"Href": "https://elsewhere.example/a.html"}]}]})",
                                     "p.json");
    ASSERT_TRUE(page.ok());
    PageErrors const findings = externalLinkFindings(summarize("p.json", nativePage(page.page.get())), pythonDocs());
    std::vector<std::string> pointers;
    for (auto const& finding : findings) pointers.push_back(finding.path);
    EXPECT_EQ(pointers, (std::vector<std::string>{"/InputGroups/0/Inputs/1/Href", "/SeeAlso/1/Url", "/Examples/0/Url"}));
    ASSERT_FALSE(findings.empty());
    EXPECT_EQ(findings[1].describe(Severity::Warning),
              "p.json: warning: link \"https://docs.example/3/library/os.html#os.gone\" names nothing that the "
              "inventory of \"https://docs.example/3/\" (\"python.inv\") lists [/SeeAlso/1/Url]");
}

TEST_F(ExternalLinks, APageMayNameItsSchemaWhichLoadingDropsButOnlyAtTheTopAndAsAString) {
    LoadResult const named = loadPage(R"({"$schema": "page.schema.json", "Href": "a.html"})", "p.json");
    ASSERT_TRUE(named.ok());
    EXPECT_EQ(pageText(named.page.get()), pageText(loadPage(R"({"Href": "a.html"})", "q.json").page.get()));
    for (char const* bad : {R"({"$schema": 1})", R"({"$schema": "a", "$schema": "a"})",
                            R"({"AppThumbnail": {"$schema": "a"}})"})
        EXPECT_FALSE(loadPage(bad, "p.json").ok()) << bad;
}

TEST(PageSchema, EveryKeyOfEveryTableIsThereWithItsDescriptionAndNoOther) {
    Json const schema = pageSchema();
    for (auto const* table : reference::glue::allTables()) {
        std::string const name = table->qualifiedName.substr(table->qualifiedName.rfind('.') + 1);
        SCOPED_TRACE(name);
        Json const& record = schema["$defs"][name];
        EXPECT_EQ(record["additionalProperties"], false);
        EXPECT_FALSE(record["description"].get<std::string>().empty());
        std::vector<std::string> keys;
        for (auto const& [key, value] : record["properties"].items()) {
            keys.push_back(key);
            EXPECT_FALSE(value["description"].get<std::string>().empty()) << key;
        }
        std::vector<std::string> words(name == "RefItem" ? 1 : 0, "$schema");
        for (auto const& entry : table->entries) words.emplace_back(entry.word);
        EXPECT_EQ(keys, words);
    }
    auto const& tables = reference::glue::allTables();
    for (auto const& description : keyDescriptions()) {
        bool const named = std::any_of(tables.begin(), tables.end(), [&](auto const* table) {
            bool const owner = description.record.empty() || table->qualifiedName.ends_with("." + std::string(description.record));
            return owner && table->find(description.word) != nullptr;
        });
        EXPECT_TRUE(named) << description.record << " " << description.word << " names no key of the tables";
    }
}

TEST(PageSchema, EnumerationsTakeEveryKeyAnUnsignedNumberOrAOneElementArray) {
    Json const schema = pageSchema();
    for (auto const* info : reference::glue::allEnumerations()) {
        Json const& choices = schema["$defs"][std::string(info->className)]["anyOf"];
        ASSERT_EQ(choices.size(), 3u) << info->className;
        EXPECT_EQ(choices[0]["enum"].size(), info->members.size());
        EXPECT_EQ(choices[2]["minItems"], 1);
        EXPECT_EQ(choices[2]["maxItems"], 1);
    }
    EXPECT_EQ(schema["$defs"]["UnsignedNumber"]["maximum"], 4294967295u);
    EXPECT_EQ(pageSchemaText(), pageSchemaText());
}

}  // namespace
