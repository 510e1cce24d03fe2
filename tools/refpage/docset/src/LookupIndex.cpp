#include <fmt/format.h>

#include <array>
#include <reference/property/DeprecationStatus.hpp>
#include <reference/property/RecordProducer.hpp>
#include <refpage/docset/LookupIndex.hpp>
#include <refpage/docset/SearchRanking.hpp>
#include <refpage/support/AtomicFile.hpp>
#include <refpage/support/Escape.hpp>
#include <refpage/support/Text.hpp>
#include <utf8.h>
#include <system_error>

#include "Sqlite.hpp"

namespace refpage {

using namespace reference::property;

namespace {

constexpr int schemaVersion = 1;


std::string lastComponent(std::string const& name) {
    auto const dot = name.rfind('.');
    return dot == std::string::npos ? name : name.substr(dot + 1);
}

void createSchema(sqlite::Database& db) {
    db.execute(fmt::format(
                   "CREATE TABLE lookup(id INTEGER PRIMARY KEY, name TEXT NOT NULL, last TEXT NOT NULL, "
                   "entity_type INTEGER NOT NULL, function_type INTEGER NOT NULL, purpose TEXT NOT NULL, "
                   "deprecated INTEGER NOT NULL, href TEXT NOT NULL, page_file TEXT NOT NULL);"
                   "CREATE INDEX lookup_name ON lookup(name);"
                   "CREATE INDEX lookup_last ON lookup(last);"
                   "CREATE VIRTUAL TABLE lookup_text USING fts5(name, purpose, tokenize = '{}');"
                   "CREATE TABLE searchIndex(id INTEGER PRIMARY KEY, name TEXT, type TEXT, path TEXT);"
                   "CREATE UNIQUE INDEX anchor ON searchIndex (name, type, path);"
                   "PRAGMA user_version = {};",
                   fullTextTokenizer, schemaVersion)
                   .c_str());
}

void fill(sqlite::Database& db, std::span<LookupEntry const> entries) {
    db.execute("BEGIN");
    sqlite::Statement lookup(db,
                                   "INSERT INTO lookup(id, name, last, entity_type, function_type, purpose, "
                                   "deprecated, href, page_file) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)");
    sqlite::Statement text(db, "INSERT INTO lookup_text(rowid, name, purpose) VALUES (?1, ?2, ?3)");
    sqlite::Statement dash(db, "INSERT OR IGNORE INTO searchIndex(name, type, path) VALUES (?1, ?2, ?3)");
    std::int64_t id = 0;
    for (auto const& entry : entries) {
        ++id;
        auto const& record = entry.lookup;
        std::string const name = utf8(record.getName());
        std::string const purpose = utf8(record.getPurpose());
        std::string const href = utf8(record.getHref());
        lookup.bind(1, id);
        lookup.bind(2, name);
        lookup.bind(3, lastComponent(name));
        lookup.bind(4, static_cast<std::int64_t>(record.getType()));
        lookup.bind(5, static_cast<std::int64_t>(record.getFunctionType()));
        lookup.bind(6, purpose);
        lookup.bind(7, std::int64_t{record.isDeprecated() ? 1 : 0});
        lookup.bind(8, href);
        lookup.bind(9, entry.source);
        lookup.run();
        text.bind(1, id);
        text.bind(2, name);
        text.bind(3, purpose);
        text.run();
        dash.bind(1, name);
        dash.bind(2, dashEntryType(record.getType()));
        dash.bind(3, href);
        dash.run();
    }
    db.execute("COMMIT");
}

}  // namespace

std::vector<LookupEntry> lookupEntries(DocSet const& set, std::span<std::string const> links) {
    std::vector<LookupEntry> entries;
    auto const& pages = set.pages();
    for (std::size_t p = 0; p < pages.size(); ++p) {
        PageSummary const& page = pages[p];
        std::u16string const purpose = utf8::utf8to16(page.purpose);
        std::u16string const link = utf8::utf8to16(p < links.size() ? links[p] : page.href);
        for (auto const& entity : page.entities)
            entries.push_back({RecordProducer::makeRefItemLookup(utf8::utf8to16(entity.name), entity.type, purpose,
                                                                 page.deprecated, link, entity.functionType),
                               p, page.source});
    }
    return entries;
}

std::string_view dashEntryType(RefEntityType::Value type) noexcept {
    using T = RefEntityType;
    switch (type) {
        case T::Function:
        case T::C:
        case T::Cpp: return "Function";
        case T::Class: return "Class";
        case T::Method: return "Method";
        case T::Constructor: return "Constructor";
        case T::Property:
        case T::Properties: return "Property";
        case T::Object:
        case T::SysObj: return "Object";
        case T::Package: return "Package";
        case T::Settings: return "Setting";
        case T::Keyword: return "Keyword";
        case T::Block:
        case T::ReportGen:
        case T::CorvaneBlock:
        case T::Tessark: return "Component";
        case T::ModelCheck:
        case T::RuntimeCheck: return "Test";
        case T::QuillpadTask:
        case T::ModelGuideline: return "Guide";
        case T::CorvaneLanguage: return "Statement";
        case T::ConfigParam: return "Parameter";
        case T::AnalysisOpt: return "Option";
        case T::App: return "Service";
        case T::Tool: return "Command";
        case T::Scene: return "Sample";
        case T::Unknown: break;
    }
    return "Entry";
}

void writeLookupIndex(std::filesystem::path const& path, std::span<LookupEntry const> entries) {
    try {
        AtomicFile file(path);
        try {
            sqlite::Database db(file.path().string(), SQLITE_OPEN_READWRITE);
            db.execute("PRAGMA journal_mode = OFF");  // a failed write leaves only the new file, which goes
            createSchema(db);
            fill(db, entries);
        } catch (sqlite::SqliteError const& e) {
            throw LookupIndexError(fmt::format("{}: {}", refpage::quoted(file.path().string()), e.what()));
        }
        file.commit();
    } catch (FileError const& e) {
        throw LookupIndexError(e.what());
    }
}

struct LookupIndex::Impl {
    sqlite::Database db;
    sqlite::Statement withText;     ///< the ranking with the full-text tier
    sqlite::Statement withoutText;  ///< the ranking for a query without words

    explicit Impl(sqlite::Database database)
        : db(std::move(database)), withText(db, rankingSql(true)), withoutText(db, rankingSql(false)) {}
};

LookupIndex::LookupIndex(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
LookupIndex::LookupIndex(LookupIndex&&) noexcept = default;
LookupIndex& LookupIndex::operator=(LookupIndex&&) noexcept = default;
LookupIndex::~LookupIndex() = default;

LookupIndex LookupIndex::open(std::filesystem::path const& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        throw LookupIndexError(fmt::format("{}: no such index file", refpage::quoted(path.string())));
    try {
        sqlite::Database db(path.string(), SQLITE_OPEN_READONLY);
        sqlite::Statement version(db, "PRAGMA user_version");
        if (!version.step() || version.integer(0) != schemaVersion)
            throw LookupIndexError(fmt::format("{}: not a lookup index written by this tool", refpage::quoted(path.string())));
        return LookupIndex(std::make_unique<Impl>(std::move(db)));
    } catch (sqlite::SqliteError const& e) {
        throw LookupIndexError(fmt::format("{}: not a lookup index: {}", refpage::quoted(path.string()), e.what()));
    }
}

LookupIndex LookupIndex::inMemory(std::span<LookupEntry const> entries) {
    sqlite::Database db(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    createSchema(db);
    fill(db, entries);
    return LookupIndex(std::make_unique<Impl>(std::move(db)));
}

std::vector<LookupHit> LookupIndex::find(std::string_view query, std::size_t limit) const {
    std::vector<LookupHit> hits;
    if (query.empty()) return hits;
    std::vector<std::string> const words = queryWords(query);
    sqlite::Statement& statement = words.empty() ? impl_->withoutText : impl_->withText;
    statement.reset();
    statement.bind(1, query);
    if (!words.empty()) statement.bind(2, fullTextQuery(words));
    statement.bind(3, limit == 0 ? std::int64_t{-1} : static_cast<std::int64_t>(limit));
    while (statement.step()) {
        LookupHit hit;
        hit.name = statement.text(1);
        hit.type = static_cast<RefEntityType::Value>(statement.integer(2));
        hit.functionType = static_cast<FunctionType::Value>(statement.integer(3));
        hit.purpose = statement.text(4);
        hit.deprecated = statement.integer(5) != 0;
        hit.href = statement.text(6);
        hit.pageFile = statement.text(7);
        hit.tier = rankTiers.at(static_cast<std::size_t>(statement.integer(8))).key;
        hit.score = statement.real(9);
        hits.push_back(std::move(hit));
    }
    statement.reset();
    return hits;
}

std::size_t LookupIndex::size() const {
    sqlite::Statement count(impl_->db, "SELECT count(*) FROM lookup");
    count.step();
    return static_cast<std::size_t>(count.integer(0));
}

std::string LookupIndex::searchData() const {
    nlohmann::json entries = nlohmann::json::array();
    sqlite::Statement rows(impl_->db,
                                 "SELECT id, name, entity_type, function_type, purpose, deprecated, href, page_file "
                                 "FROM lookup ORDER BY id");
    std::vector<std::int64_t> ids;
    while (rows.step()) {
        auto const type = static_cast<RefEntityType::Value>(rows.integer(2));
        ids.push_back(rows.integer(0));
        entries.push_back({{"name", rows.text(1)},
                           {"type", dashEntryType(type)},
                           {"entityType", RefEntityType::enumToString(type)},
                           {"functionType", FunctionType::enumToString(static_cast<FunctionType::Value>(rows.integer(3)))},
                           {"purpose", rows.text(4)},
                           {"deprecated", rows.integer(5) != 0},
                           {"href", rows.text(6)},
                           {"page", rows.text(7)},
                           {"words", {nlohmann::json::array(), nlohmann::json::array()}}});
    }
    // The words as the full-text index holds them, so the script's BM25 counts what SQLite counts.
    impl_->db.execute("CREATE VIRTUAL TABLE IF NOT EXISTS temp.lookup_words USING fts5vocab(main, lookup_text, instance)");
    sqlite::Statement words(impl_->db, "SELECT doc, col, term FROM temp.lookup_words ORDER BY doc, col, offset");
    std::size_t at = 0;
    while (words.step()) {
        std::int64_t const doc = words.integer(0);
        while (at < ids.size() && ids[at] < doc) ++at;
        if (at == ids.size() || ids[at] != doc) continue;
        std::size_t const column = words.text(1) == "name" ? 0 : 1;
        entries[at]["words"][column].push_back(words.text(2));
    }
    nlohmann::json data{{"ranking", rankingDescription()}, {"entries", std::move(entries)}};
    return data.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace refpage
