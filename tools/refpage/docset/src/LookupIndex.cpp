#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>
#include <reference/property/DeprecationStatus.hpp>
#include <reference/property/RecordProducer.hpp>
#include <refpage/docset/LookupIndex.hpp>
#include <refpage/docset/SearchRanking.hpp>
#include <refpage/support/AtomicFile.hpp>
#include <refpage/support/RelativePath.hpp>
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
                   .c_str(),
               "creating the index's tables");
}

void fill(sqlite::Database& db, std::span<LookupEntry const> entries) {
    db.execute("BEGIN", "starting to fill the index");
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
    db.execute("COMMIT", "finishing the index");
}

}  // namespace

std::vector<LookupEntry> lookupEntries(DocSet const& set, std::span<std::string const> links) {
    std::vector<LookupEntry> entries;
    auto const& pages = set.pages();
    for (std::size_t p = 0; p < pages.size(); ++p) {
        PageSummary const& page = pages[p];
        std::u16string const purpose = utf8::utf8to16(page.purpose);
        std::string const& link = p < links.size() ? links[p] : page.href;
        for (auto const& entry : page.entries) {
            std::string const target = entryLink(link, entry.anchor);
            entries.push_back({RecordProducer::makeRefItemLookup(utf8::utf8to16(entry.name), entry.type,
                                                                 entry.purpose.empty() ? purpose
                                                                                       : utf8::utf8to16(entry.purpose),
                                                                 page.deprecated, utf8::utf8to16(target),
                                                                 entry.functionType),
                               p, page.source});
        }
    }
    return entries;
}

std::string entryLink(std::string_view pageLink, std::string_view anchor) {
    if (anchor.empty()) return std::string(pageLink);
    // A member leads to its anchor on the page.
    std::string link(pageLink.substr(0, pageLink.find('#')));
    link += '#';
    link += percentEncode(anchor, true);
    return link;
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
            // A failed write leaves only the new file, which goes.
            db.execute("PRAGMA journal_mode = OFF", "opening the new index");
            createSchema(db);
            fill(db, entries);
        } catch (sqlite::SqliteError const& e) {
            // Named as the user named it; the system's reason when a system call failed.
            throw LookupIndexError(fmt::format("{}: cannot write: {}", refpage::quoted(path.string()),
                                               e.systemError() != 0 ? systemReason(e.systemError()) : e.what()));
        }
        file.commit();
    } catch (FileError const& e) {
        throw LookupIndexError(e.what());
    }
}

struct LookupIndex::Impl {
    sqlite::Database db;
    std::chrono::milliseconds timeLimit{0};         ///< per query; 0: none (an index built in memory)
    std::chrono::steady_clock::time_point deadline;  ///< of the query running now
    std::optional<sqlite::Statement> withText;       ///< the ranking with the full-text tier
    std::optional<sqlite::Statement> withoutText;    ///< the ranking for a query without words

    Impl(sqlite::Database database, std::chrono::milliseconds limit) : db(std::move(database)), timeLimit(limit) {
        if (timeLimit.count() > 0) sqlite3_progress_handler(db.get(), 1000, &Impl::pastDeadline, this);
    }
    Impl(Impl const&) = delete;
    Impl& operator=(Impl const&) = delete;

    void prepare() {
        withText.emplace(db, rankingSql(true));
        withoutText.emplace(db, rankingSql(false));
    }
    /// Starts the clock of one query.
    void startQuery() { deadline = std::chrono::steady_clock::now() + timeLimit; }

    static int pastDeadline(void* self) {
        auto const* impl = static_cast<Impl const*>(self);
        return std::chrono::steady_clock::now() > impl->deadline ? 1 : 0;
    }
};

LookupIndex::LookupIndex(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
LookupIndex::LookupIndex(LookupIndex&&) noexcept = default;
LookupIndex& LookupIndex::operator=(LookupIndex&&) noexcept = default;
LookupIndex::~LookupIndex() = default;

namespace {

/// The objects an index file holds besides its tables' own indexes: each must be a real table
/// with exactly these columns (the full-text table also by its module).
struct ExpectedTable {
    std::string_view name;
    std::vector<std::string_view> columns;
};

std::vector<ExpectedTable> const& expectedTables() {
    static std::vector<ExpectedTable> const tables{
        {"lookup",
         {"id", "name", "last", "entity_type", "function_type", "purpose", "deprecated", "href", "page_file"}},
        {"lookup_text", {"name", "purpose"}},
        {"searchIndex", {"id", "name", "type", "path"}},
    };
    return tables;
}

/// Why the open database is not an index this tool wrote, or empty. Reads only the schema
/// table and the expected tables' column lists; names nothing that the file itself holds.
std::string schemaProblem(sqlite::Database& db) {
    sqlite::Statement version(db, "PRAGMA main.user_version");
    if (!version.step() || version.integer(0) != schemaVersion) return "its schema version is not 1";
    // Views and triggers run queries of the file's choosing: an index has none.
    sqlite::Statement others(db, "SELECT count(*) FROM main.sqlite_master WHERE type NOT IN ('table', 'index')");
    if (!others.step() || others.integer(0) != 0) return "it holds views or triggers";
    sqlite::Statement object(db, "SELECT type, sql FROM main.sqlite_master WHERE name = ?1 COLLATE NOCASE");
    sqlite::Statement columns(db, "SELECT name FROM pragma_table_info(?1, 'main') ORDER BY cid");
    for (auto const& table : expectedTables()) {
        object.reset();
        object.bind(1, table.name);
        if (!object.step() || object.text(0) != "table") return fmt::format("it has no table {}", table.name);
        bool const fullText = table.name == "lookup_text";
        bool const virtualTable = object.text(1).starts_with("CREATE VIRTUAL TABLE");
        if (virtualTable != fullText ||
            (fullText && object.text(1).find("USING fts5(") == std::string::npos))
            return fmt::format("its table {} is not of the expected kind", table.name);
        columns.reset();
        columns.bind(1, table.name);
        std::vector<std::string> found;
        while (columns.step()) found.push_back(columns.text(0));
        if (!std::equal(found.begin(), found.end(), table.columns.begin(), table.columns.end()))
            return fmt::format("its table {} does not have the expected columns", table.name);
    }
    return {};
}

/// The message of an SQLite failure on a file: SQLite's generic text for the code, never
/// text taken from the file.
std::string sqliteReason(sqlite::SqliteError const& e) {
    return sqlite3_errstr(e.code() & 0xff);
}

/// `work()`, its SQLite failures as LookupIndexError: past the time limit, or SQLite's reason.
template <class Work>
auto answering(std::chrono::milliseconds timeLimit, Work&& work) -> decltype(work()) {
    try {
        return work();
    } catch (sqlite::SqliteError const& e) {
        if ((e.code() & 0xff) == SQLITE_INTERRUPT)
            throw LookupIndexError(
                fmt::format("the index took longer than {} ms to answer; given up", timeLimit.count()));
        throw LookupIndexError(fmt::format("the index could not be read: {}", sqliteReason(e)));
    }
}

}  // namespace

LookupIndex LookupIndex::open(std::filesystem::path const& path, std::chrono::milliseconds timeLimit) {
    std::string const shown = refpage::quoted(path.string());
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        throw LookupIndexError(fmt::format("{}: no such index file", shown));
    try {
        sqlite::Database db(path.string(), SQLITE_OPEN_READONLY);
        sqlite3_db_config(db.get(), SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
        sqlite3_db_config(db.get(), SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
        auto impl = std::make_unique<Impl>(std::move(db), timeLimit);
        impl->startQuery();
        if (std::string const problem = schemaProblem(impl->db); !problem.empty())
            throw LookupIndexError(fmt::format("{}: not a lookup index written by this tool: {}", shown, problem));
        impl->prepare();
        return LookupIndex(std::move(impl));
    } catch (sqlite::SqliteError const& e) {
        if ((e.code() & 0xff) == SQLITE_INTERRUPT)
            throw LookupIndexError(fmt::format("{}: reading the index took longer than {} ms; given up", shown,
                                               timeLimit.count()));
        throw LookupIndexError(fmt::format("{}: not a lookup index: {}", shown, sqliteReason(e)));
    }
}

LookupIndex LookupIndex::inMemory(std::span<LookupEntry const> entries) {
    sqlite::Database db(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    createSchema(db);
    fill(db, entries);
    auto impl = std::make_unique<Impl>(std::move(db), std::chrono::milliseconds(0));
    impl->prepare();
    return LookupIndex(std::move(impl));
}

std::vector<LookupHit> LookupIndex::find(std::string_view query, std::size_t limit) const {
    impl_->startQuery();
    return answering(impl_->timeLimit, [&] { return findHits(query, limit); });
}

std::vector<LookupHit> LookupIndex::findHits(std::string_view query, std::size_t limit) const {
    std::vector<LookupHit> hits;
    if (query.empty()) return hits;
    std::vector<std::string> const words = queryWords(query);
    sqlite::Statement& statement = words.empty() ? *impl_->withoutText : *impl_->withText;
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
    impl_->startQuery();
    return answering(impl_->timeLimit, [&] {
        sqlite::Statement count(impl_->db, "SELECT count(*) FROM lookup");
        count.step();
        return static_cast<std::size_t>(count.integer(0));
    });
}

}  // namespace refpage
