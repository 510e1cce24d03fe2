// The library's dynamic symbol table: every operation listed in
// tests/exported_symbols.txt (every operation of every class, irregular names
// included) is exported under its exact name, and nothing is exported beyond
// the listed classes and the RequireScalar exception: so no symbol of the host
// stand-in (its om/ox operations included), of the sibling libraries or of the
// library's internal helpers (reference::property::bridge and detail).
#include <reference/property/RefEntityType.hpp>

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>
#include <regex>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

struct Symbol {
    char kind;            ///< nm's type letter: T, W, V, u, B, D, R...
    std::string mangled;  ///< as the linker sees it
    std::string name;     ///< demangled, with standard string types spelled by their aliases
};

/// The path of the loaded library, found from one of its own functions.
std::string libraryPath() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&reference::property::RefEntityType::getDefaultValue), &info) == 0 ||
        info.dli_fname == nullptr)
        throw std::runtime_error("dladdr found no library for an exported function");
    return info.dli_fname;
}

/// Spells the standard types of a demangled name as the list file does.
std::string normalise(std::string name) {
    static std::array<std::pair<std::regex, char const*>, 5> const rules = {{
        {std::regex(R"(\[abi:cxx11\])"), ""},
        {std::regex(R"(std::__cxx11::basic_string<char16_t, std::char_traits<char16_t>, std::allocator<char16_t> >)"),
         "std::u16string"},
        {std::regex(R"(std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >)"),
         "std::string"},
        {std::regex(R"(std::basic_string_view<char, std::char_traits<char> >)"), "std::string_view"},
        {std::regex(R"(std::vector<([^<>]*(?:<[^<>]*>)?), std::allocator<\1 ?> >)"), "std::vector<$1>"},
    }};
    for (auto const& [pattern, replacement] : rules) name = std::regex_replace(name, pattern, replacement);
    return name;
}

/// "<address> <kind> <name>" lines of nm over the library, in symbol-table order.
std::vector<std::pair<char, std::string>> runNm(std::string const& options) {
    std::string const command = "nm -D --defined-only -p " + options + " '" + libraryPath() + "'";
    std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    if (!pipe) throw std::runtime_error("cannot run " + command);
    std::vector<std::pair<char, std::string>> symbols;
    std::array<char, 4096> buffer{};
    std::string line;
    while (std::fgets(buffer.data(), buffer.size(), pipe.get()) != nullptr) {
        line += buffer.data();
        if (line.back() != '\n') continue;
        line.pop_back();
        std::size_t const kindAt = line.find(' ');
        if (kindAt != std::string::npos && kindAt + 3 <= line.size())
            symbols.emplace_back(line[kindAt + 1], line.substr(kindAt + 3));
        line.clear();
    }
    return symbols;
}

std::vector<Symbol> exportedSymbols() {
    auto const mangled = runNm("");
    auto const demangled = runNm("-C");
    if (mangled.size() != demangled.size()) throw std::runtime_error("nm listed the symbols differently with -C");
    std::vector<Symbol> symbols;
    for (std::size_t i = 0; i < mangled.size(); ++i)
        symbols.push_back({mangled[i].first, mangled[i].second, normalise(demangled[i].second)});
    return symbols;
}

std::vector<std::string> listedSymbols() {
    std::ifstream file(REFPROP_SOURCE_DIR "/tests/exported_symbols.txt");
    if (!file) throw std::runtime_error("cannot read tests/exported_symbols.txt");
    std::vector<std::string> listed;
    for (std::string line; std::getline(file, line);)
        if (!line.empty() && line.front() != '#') listed.push_back(line);
    return listed;
}

bool startsWith(std::string const& text, std::string const& prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
}

/// The name with a "typeinfo for ", "vtable for " or similar prefix removed.
std::string owner(std::string const& name) {
    for (char const* prefix : {"typeinfo name for ", "typeinfo for ", "vtable for ", "non-virtual thunk to ",
                               "virtual thunk to ", "guard variable for "})
        if (startsWith(name, prefix)) return name.substr(std::string(prefix).size());
    return name;
}

/// The classes the list names: "reference::property::RefItem::" and so on.
std::set<std::string> listedClassScopes() {
    static std::regex const scope(R"(^(reference::property::\w+::))");
    std::set<std::string> scopes;
    for (std::string const& name : listedSymbols()) {
        std::smatch match;
        if (std::regex_search(name, match, scope)) scopes.insert(match[1]);
    }
    return scopes;
}

/// True when `name` is a member of one of `scopes`, or the class itself (its type information).
bool inScopes(std::string const& name, std::set<std::string> const& scopes) {
    return std::any_of(scopes.begin(), scopes.end(), [&](std::string const& scope) {
        return startsWith(name, scope) || name + "::" == scope;
    });
}

bool allowed(Symbol const& symbol) {
    static std::set<std::string> const scopes = listedClassScopes();
    std::string const name = owner(symbol.name);
    if (inScopes(name, scopes)) return true;
    if (startsWith(name, "foundation::core::except::Exception<component_Ovrin::catalog_class::key_RequireScalar, "
                         "std::exception, void>"))
        return true;
    // Vague-linkage instantiations of the standard library's own templates, which it marks visible.
    // The mangled name tells their namespace without the return type the demangler puts first.
    static std::regex const standardLibrary(R"(^_Z(T[IVS])?N?[KVrLO]*(St|9__gnu_cxx))");
    bool const vague = symbol.kind == 'W' || symbol.kind == 'V' || symbol.kind == 'u';
    if (vague && std::regex_search(symbol.mangled, standardLibrary)) return true;
    // Symbols the linker and the sanitizer runtimes define in every shared library.
    static std::set<std::string> const linkerSymbols = {"_init", "_fini", "__bss_start", "_edata", "_end"};
    return linkerSymbols.count(name) != 0 || startsWith(name, "__asan") || startsWith(name, "__odr_asan") ||
           startsWith(name, "__ubsan") || startsWith(name, "__sanitizer");
}

}  // namespace

TEST(Exports, EveryListedOperationIsExported) {
    std::set<std::string> exported;
    for (Symbol const& symbol : exportedSymbols()) exported.insert(symbol.name);
    std::vector<std::string> const listed = listedSymbols();
    ASSERT_FALSE(listed.empty());
    for (std::string const& name : listed) EXPECT_TRUE(exported.count(name) != 0) << "not exported: " << name;
}

TEST(Exports, NothingOutsideTheLibraryInterfaceIsExported) {
    std::vector<Symbol> const symbols = exportedSymbols();
    for (Symbol const& symbol : symbols)
        EXPECT_TRUE(allowed(symbol)) << "exported outside the listed classes (a host, sibling or internal symbol?): "
                                     << symbol.kind << " " << symbol.name;
    RecordProperty("symbols_checked", static_cast<int>(symbols.size()));
    std::cout << "[ EXPORTS  ] " << listedSymbols().size() << " listed operations, " << symbols.size()
              << " exported symbols checked\n";
}
