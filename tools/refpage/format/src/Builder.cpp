#include <fmt/format.h>

#include <ovrin/array.hpp>
#include <ovrin/ocos.hpp>
#include <reference/glue/Properties.hpp>
#include <reference/property/RequireScalar.hpp>
#include <refpage/format/Builder.hpp>
#include <new>
#include <utility>

namespace refpage {

PageBuildError::PageBuildError(std::string path, std::string const& message, std::size_t offset)
    : std::runtime_error(message), path_(std::move(path)), offset_(offset) {}

namespace {

using reference::glue::PropertyEntry;
using reference::glue::PropertyKind;
using reference::glue::PropertyTable;
using reference::property::HostArrayPtr;

/// A built record: the 1-by-1 array the host constructed, and the object in it.
struct BuiltRecord {
    HostArrayPtr array;
    ocos::COSInterfacePtr object;
};

class PageBuilder {
public:
    /// Failures carry the path of the innermost value being built: the path is shortened
    /// only after a success, so when an exception leaves, it still names where it started.
    BuiltRecord build(PageNode const& node) {
        try {
            return buildRecord(node);
        } catch (PageBuildError const&) {
            throw;
        } catch (reference::property::RequireScalar const& e) {
            throw PageBuildError(path_, fmt::format("{} [{}]", e.what(), e.GetID()), offset_);
        } catch (std::bad_alloc const&) {
            throw PageBuildError(path_, "out of memory while building the page through the host", offset_);
        } catch (std::exception const& e) {
            throw PageBuildError(path_, e.what(), offset_);
        }
    }

private:
    BuiltRecord buildRecord(PageNode const& node) {
        PropertyTable const& table = *node.table;
        BuiltRecord built;
        built.array = reference::glue::constructObject(table);
        built.object = reference::glue::objectOf(built.array.get());
        void* const record = reference::glue::recordOf(*built.object.get(), table);
        for (Assignment const& assignment : node.assignments) {
            std::size_t const size = path_.size();
            path_ += '/';
            path_ += assignment.entry->word;
            offset_ = assignment.offset;
            assign(record, *assignment.entry, assignment.value);
            path_.resize(size);
        }
        return built;
    }

    void assign(void* record, PropertyEntry const& entry, NodeValue const& value) {
        switch (entry.kind) {
            case PropertyKind::String: entry.strings().set(record, &std::get<std::u16string>(value)); return;
            case PropertyKind::Bool: entry.flag().set(record, std::get<bool>(value)); return;
            case PropertyKind::Enumeration: {
                HostArrayPtr const object =
                    reference::glue::constructEnumeration(*entry.enumeration, std::get<EnumerationValues>(value));
                entry.arrays().set(record, object.get());
                return;
            }
            case PropertyKind::StringList: {
                auto const& texts = std::get<StringList>(value);
                matrix::unique_array array = matrix::from_ovrin(oxCreateStringArray(1, texts.size()));
                for (std::size_t i = 0; i < texts.size(); ++i) oxSetStringElement(array.get(), i, texts[i]);
                HostArrayPtr const list(array.release(), false);
                entry.arrays().set(record, list.get());
                return;
            }
            case PropertyKind::ObjectArray: {
                auto const& nodes = std::get<NodeList>(value);
                PropertyTable const& table = entry.elementTable();
                matrix::unique_array array = matrix::from_ovrin(omCreateOCOSMatrix(1, nodes.size(), table.identity));
                std::size_t const size = path_.size();
                for (std::size_t i = 0; i < nodes.size(); ++i) {
                    path_ += '/';
                    path_ += std::to_string(i);
                    omSetArrayElement(array.get(), i, buildRecord(nodes[i]).object);
                    path_.resize(size);
                }
                HostArrayPtr const list(array.release(), false);
                entry.arrays().set(record, list.get());
                return;
            }
            case PropertyKind::Record: {
                BuiltRecord const child = buildRecord(std::get<NodeList>(value).front());
                entry.arrays().set(record, child.array.get());
                return;
            }
        }
    }

    std::string path_;        ///< pointer of the value being assigned; left as it was when an assignment fails
    std::size_t offset_ = 0;  ///< text offset of that value
};

}  // namespace

HostArrayPtr buildRecord(PageNode const& node) {
    return PageBuilder().build(node).array;
}

}  // namespace refpage
