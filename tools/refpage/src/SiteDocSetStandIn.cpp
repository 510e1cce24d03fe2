#include "SiteDocSetStandIn.hpp"

#include <sqlite3.h>

#include <fmt/format.h>

#include <memory>
#include <refpage/SiteHtml.hpp>
#include <refpage/SitePaths.hpp>
#include <unordered_map>

namespace refpage::site_standin {

using namespace reference::property;

SiteLinkResolver makeResolver(std::span<SitePageInput const> pages) {
    auto byHref = std::make_shared<std::unordered_map<std::string, std::size_t>>();
    for (std::size_t i = 0; i < pages.size(); ++i) {
        std::string href = siteUtf8(pages[i].page->getHref());
        href.erase(std::min(href.find('#'), href.size()));
        if (!href.empty()) byHref->emplace(std::move(href), i);
    }
    return [byHref](std::string_view link) -> SiteLink {
        if (link.empty()) return {};
        std::size_t const colon = link.find(':');
        bool const scheme = colon != std::string_view::npos && colon > 0 && link.find_first_of("/?#") > colon;
        if (scheme || link.starts_with("/")) return {SiteLink::Kind::External, 0, {}};
        std::size_t const hash = link.find('#');
        std::string const path(link.substr(0, hash));
        std::string fragment = hash == std::string_view::npos ? std::string() : std::string(link.substr(hash + 1));
        auto const found = byHref->find(path);
        if (found == byHref->end()) return {SiteLink::Kind::Unresolved, 0, {}};
        return {SiteLink::Kind::Page, found->second, std::move(fragment)};
    };
}

namespace {

std::string_view dashType(RefEntityType::Value type) {
    switch (type) {
        case RefEntityType::Function: return "Function";
        case RefEntityType::Class: return "Class";
        case RefEntityType::Method: return "Method";
        case RefEntityType::Constructor: return "Constructor";
        case RefEntityType::Property:
        case RefEntityType::Properties: return "Property";
        case RefEntityType::Object: return "Object";
        case RefEntityType::Package: return "Package";
        case RefEntityType::Keyword: return "Keyword";
        case RefEntityType::Settings:
        case RefEntityType::ConfigParam: return "Setting";
        default: return "Entry";
    }
}

struct Closer {
    void operator()(sqlite3* db) const { sqlite3_close(db); }
};

}  // namespace

bool writeIndex(std::filesystem::path const& file, std::span<SitePageInput const> pages,
                std::vector<std::string> const& paths, PageErrors& errors) {
    std::error_code ec;
    std::filesystem::remove(file, ec);
    sqlite3* raw = nullptr;
    int rc = sqlite3_open(file.c_str(), &raw);
    std::unique_ptr<sqlite3, Closer> db(raw);
    auto fail = [&](char const* what) {
        errors.push_back({file.string(), "", fmt::format("{}: {}", what, db ? sqlite3_errmsg(db.get()) : "no memory")});
        return false;
    };
    if (rc != SQLITE_OK) return fail("cannot open");
    char const* schema =
        "BEGIN;"
        "CREATE TABLE searchIndex(id INTEGER PRIMARY KEY, name TEXT, type TEXT, path TEXT);"
        "CREATE UNIQUE INDEX anchor ON searchIndex (name, type, path);";
    if (sqlite3_exec(db.get(), schema, nullptr, nullptr, nullptr) != SQLITE_OK) return fail("cannot create");
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db.get(), "INSERT OR IGNORE INTO searchIndex(name, type, path) VALUES (?, ?, ?)", -1,
                           &statement, nullptr) != SQLITE_OK)
        return fail("cannot prepare");
    std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> insert(statement, sqlite3_finalize);
    for (std::size_t i = 0; i < pages.size(); ++i) {
        std::string const path = percentEncode(paths[i]);
        for (auto const& entity : pages[i].page->getRefEntities()) {
            std::string const name = siteUtf8(entity.getName());
            if (name.empty()) continue;
            std::string_view const type = dashType(entity.getRefEntityType());
            sqlite3_bind_text(insert.get(), 1, name.data(), static_cast<int>(name.size()), SQLITE_TRANSIENT);
            sqlite3_bind_text(insert.get(), 2, type.data(), static_cast<int>(type.size()), SQLITE_STATIC);
            sqlite3_bind_text(insert.get(), 3, path.data(), static_cast<int>(path.size()), SQLITE_TRANSIENT);
            if (sqlite3_step(insert.get()) != SQLITE_DONE) return fail("cannot insert");
            sqlite3_reset(insert.get());
        }
    }
    if (sqlite3_exec(db.get(), "COMMIT;", nullptr, nullptr, nullptr) != SQLITE_OK) return fail("cannot commit");
    return true;
}

}  // namespace refpage::site_standin

