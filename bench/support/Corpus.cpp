// Loads the corpus pages through the glue's property tables: every JSON member
// becomes the host value of the property with the same word, set through the
// record's host setter, as the host would.
#include "support/Corpus.hpp"

#include <reference/glue/Classes.hpp>
#include <reference/glue/Enumerations.hpp>
#include <reference/glue/Properties.hpp>
#include <reference/glue/PropertyTable.hpp>

#include <nlohmann/json.hpp>
#include <utf8.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace bench {
namespace {

using nlohmann::json;
using reference::glue::HostValue;
using reference::glue::PropertyEntry;
using reference::glue::PropertyKind;
using reference::glue::PropertyTable;
using reference::property::HostArrayPtr;

std::u16string utf16Of(std::string const& text) {
    std::u16string result;
    utf8::utf8to16(text.begin(), text.end(), std::back_inserter(result));
    return result;
}

void fillRecord(void* record, PropertyTable const& table, json const& object);

/// A host object of `table`'s class filled from `object`, as a 1-by-1 host array.
HostArrayPtr hostRecord(PropertyTable const& table, json const& object) {
    HostArrayPtr array = reference::glue::constructObject(table);
    ocos::COSInterfacePtr const element = reference::glue::objectOf(array.get());
    fillRecord(reference::glue::recordOf(*element.get(), table), table, object);
    return array;
}

HostValue hostValueOf(PropertyEntry const& entry, json const& value) {
    switch (entry.kind) {
    case PropertyKind::String:
        return utf16Of(value.get<std::string>());
    case PropertyKind::Bool:
        return value.get<bool>();
    case PropertyKind::Enumeration: {
        std::uint32_t const number = entry.enumeration->keyToValue(value.get<std::string>());
        return reference::glue::constructEnumeration(*entry.enumeration, std::span(&number, 1));
    }
    case PropertyKind::StringList: {
        matrix::unique_array array = matrix::from_ovrin(oxCreateStringArray(1, value.size()));
        for (std::size_t i = 0; i < value.size(); ++i) {
            oxSetStringElement(array.get(), i, utf16Of(value[i].get<std::string>()));
        }
        return HostArrayPtr(array.release(), false);
    }
    case PropertyKind::ObjectArray: {
        PropertyTable const& elementTable = entry.elementTable();
        matrix::unique_array array = matrix::from_ovrin(omCreateOCOSMatrix(1, value.size(), elementTable.identity));
        for (std::size_t i = 0; i < value.size(); ++i) {
            HostArrayPtr const element = hostRecord(elementTable, value[i]);
            omSetArrayElement(array.get(), i, reference::glue::objectOf(element.get()));
        }
        return HostArrayPtr(array.release(), false);
    }
    case PropertyKind::Record:
        return hostRecord(entry.elementTable(), value);
    }
    return {};
}

void fillRecord(void* record, PropertyTable const& table, json const& object) {
    for (PropertyEntry const& entry : table.entries) {
        auto const member = object.find(std::string(entry.word));
        if (member == object.end()) {
            continue;
        }
        HostValue const value = hostValueOf(entry, *member);
        switch (entry.kind) {
        case PropertyKind::String:
            entry.strings().set(record, &std::get<std::u16string>(value));
            break;
        case PropertyKind::Bool:
            entry.flag().set(record, std::get<bool>(value));
            break;
        default:
            entry.arrays().set(record, std::get<HostArrayPtr>(value).get());
            break;
        }
    }
}

std::string readFile(std::filesystem::path const& path) {
    std::ifstream stream(path, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

std::vector<CorpusPage> loadCorpus() {
    reference::glue::registerClasses();
    std::vector<std::filesystem::path> paths;
    std::error_code error;
    for (auto const& file : std::filesystem::directory_iterator(REFPROP_CORPUS_DIR, error)) {
        if (file.path().extension() == ".json") {
            paths.push_back(file.path());
        }
    }
    std::sort(paths.begin(), paths.end());
    PropertyTable const& table = reference::glue::tableOf<reference::property::RefItem>();
    std::vector<CorpusPage> pages;
    pages.reserve(paths.size());
    for (auto const& path : paths) {
        CorpusPage entry{path.string(), readFile(path), {}};
        fillRecord(&entry.page, table, json::parse(entry.json));
        pages.push_back(std::move(entry));
    }
    return pages;
}

}  // namespace

std::vector<CorpusPage> const& corpus() {
    static std::vector<CorpusPage> const pages = loadCorpus();
    return pages;
}

std::vector<reference::property::RefItem> corpusCopies() {
    std::vector<reference::property::RefItem> copies;
    copies.reserve(corpus().size());
    for (auto const& entry : corpus()) {
        copies.push_back(entry.page.copy());
    }
    return copies;
}

}  // namespace bench
