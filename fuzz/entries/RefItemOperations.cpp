// Fuzz entry: a program of host property operations on two pages, over every
// property of the page's glue table. After every step it checks what the library
// promises: a copy equals its source, a cached array stays the same until its
// property is set, the host's view of a cached property agrees with the native
// field, a failed or null set leaves the page as it was, and at the end no host
// array or object is left alive.
#include "ByteReader.hpp"
#include "FuzzCheck.hpp"
#include "FuzzEntries.hpp"
#include "RecordGenerator.hpp"

#include "support/GlueValues.hpp"
#include "support/HostValues.hpp"

#include <reference/glue/Classes.hpp>
#include <reference/property/RefItem.hpp>
#include <reference/property/RequireScalar.hpp>

#include <ovrin/error.hpp>
#include <ovrin/testing.hpp>

#include <array>
#include <cstdint>
#include <vector>

namespace refprop::fuzz {

namespace {

namespace rp = reference::property;
using glue::PropertyKind;

constexpr std::size_t pageCount = 2;
constexpr std::size_t maxOperations = 64;

glue::PropertyTable const& pageTable() { return glue::tableOf<rp::RefItem>(); }

/// The property kinds that keep a cached host array.
bool cached(glue::PropertyEntry const& entry) { return std::holds_alternative<glue::ArrayAccess>(entry.access); }

/// A record class other than `table`'s, for arrays of the wrong element class.
glue::PropertyTable const& foreignTable(glue::PropertyTable const& table) {
    glue::PropertyTable const& seeAlso = glue::tableOf<rp::SeeAlso>();
    return &table == &seeAlso ? glue::tableOf<rp::Example>() : seeAlso;
}

class Program {
public:
    explicit Program(ByteReader& input) noexcept : input_(input), generator_(input) {}

    void run() {
        for (std::size_t step = 0; step < maxOperations && !input_.empty(); ++step) {
            std::size_t const slot = input_.choose(pageCount);
            std::size_t const property = input_.choose(pageTable().entries.size());
            switch (input_.choose(6)) {
            case 0: set(slot, property); break;
            case 1: get(slot, property); break;
            case 2: copy(slot, property); break;
            case 3: reset(slot); break;
            case 4: changeInHost(slot, property); break;
            default: compare(slot); break;
            }
        }
    }

private:
    /// Remembers what a getter returned; it must return the same until the property is set.
    void sawArray(std::size_t slot, std::size_t property, oxArray_tag const* array) {
        check(array != nullptr, "a property getter never returns null");
        oxArray_tag const*& seen = seen_[slot][property];
        check(seen == nullptr || seen == array, "a cached array is returned again until its property is set");
        seen = array;
    }

    void forget(std::size_t slot) {
        seen_[slot] = {};
        hostChanged_[slot] = {};
    }

    /// The host's view of a cached property agrees with the native field.
    void checkHostView(rp::RefItem const& page, glue::PropertyEntry const& entry, oxArray_tag const* array) {
        // An enumeration slot holds whatever object was assigned, of its class or another.
        if (entry.kind != PropertyKind::Enumeration)
            check(ovrin::testing::className(array) == entry.elementTable().qualifiedName,
                  "a cached array holds the element class");
        if (entry.kind == PropertyKind::ObjectArray)
            check(oxGetM(array) == 1 && oxGetArrayScope(array) == 6, "a cached object array is 1-by-N and scoped");
        else
            check(omGetNumberOfElementsInUnderlyingArray(array) == 1, "an enumeration or record is one value");
        check(testvalues::agrees(entry, page, array), "host and native views agree");
    }

    /// A value for `entry`: null, one the host makes for it, or one of another kind or class.
    HostArrayPtr offer(glue::PropertyEntry const& entry) {
        std::vector<std::uint32_t> numbers(input_.choose(4));
        for (std::uint32_t& number : numbers) number = input_.number();
        switch (input_.choose(7)) {
        case 0: return HostArrayPtr();
        case 1: return testvalues::numericArray(numbers);
        case 2: return testvalues::enumObject(testvalues::hostClassName<rp::SyntaxType>(), numbers);
        case 3: return testvalues::stringArray(std::vector<std::u16string>(numbers.size()));
        case 4:
            if (entry.kind == PropertyKind::Enumeration)
                return testvalues::enumObject(entry.enumeration->qualifiedName, numbers);
            return generator_.objectArray(foreignTable(entry.elementTable()));
        default: return std::get<HostArrayPtr>(generator_.value(entry));
        }
    }

    void set(std::size_t slot, std::size_t property) {
        glue::PropertyEntry const& entry = pageTable().entries[property];
        rp::RefItem& page = pages_[slot];
        rp::RefItem const before = page.copy();
        if (!cached(entry)) {
            std::u16string const text = generator_.text();
            bool const null = input_.flag();
            entry.strings().set(&page, null ? nullptr : &text);
            check(null ? page == before : entry.strings().get(&page) == text,
                  "a string setter stores the text, and a null one changes nothing");
            return;
        }
        HostArrayPtr const value = offer(entry);
        oxArray_tag const* const array = value.get();
        try {
            entry.arrays().set(&page, array);
        } catch (rp::RequireScalar const&) {
            check(entry.kind == PropertyKind::Enumeration && omGetNumberOfElementsInUnderlyingArray(array) != 1,
                  "RequireScalar only for an enumeration value of other than one element");
            check(page == before, "a rejected value leaves the page unchanged");
            return;
        } catch (ovrin::HostError const&) {
            bool const numericScalar = entry.kind == PropertyKind::Enumeration &&
                                       omGetNumberOfElementsInUnderlyingArray(array) == 1 &&
                                       oxGetClassID(omGetUnderlyingArray(array)) == oxUINT32_CLASS;
            check(!numericScalar, "a numeric scalar enumeration value is accepted");
            check(page == before, "a failed set leaves the page unchanged");
            return;
        }
        if (array == nullptr) return check(page == before, "a null value leaves the page unchanged");
        seen_[slot][property] = nullptr;
        hostChanged_[slot][property] = false;
        oxArray_tag const* const stored = entry.arrays().get(&page);
        sawArray(slot, property, stored);
        checkHostView(page, entry, stored);
        check(testvalues::agrees(entry, page, array), "the setter stores what the value holds");
        if (entry.kind == PropertyKind::Enumeration) {
            check(oxGetClassID(omGetUnderlyingArray(array)) == oxUINT32_CLASS, "only numbers are enumeration values");
            check(stored == array, "an enumeration getter returns the array last set");
            check(static_cast<std::uint32_t>(page.getDeprecationStatus()) == testvalues::hostNumber(array),
                  "an enumeration setter stores the number unchecked");
        } else {
            check(stored != array, "the cached array is built afresh, never the array that was set");
        }
    }

    void get(std::size_t slot, std::size_t property) {
        glue::PropertyEntry const& entry = pageTable().entries[property];
        if (!cached(entry)) return;
        oxArray_tag const* const array = entry.arrays().get(&pages_[slot]);
        sawArray(slot, property, array);
        if (!hostChanged_[slot][property]) checkHostView(pages_[slot], entry, array);
    }

    void copy(std::size_t from, std::size_t property) {
        std::size_t const to = input_.choose(pageCount);
        rp::RefItem copied = pages_[from].copy();
        check(copied == pages_[from] && pages_[from] == copied, "a copy equals its source");
        glue::PropertyEntry const& entry = pageTable().entries[property];
        if (!cached(entry)) return;
        oxArray_tag const* const source = entry.arrays().get(&pages_[from]);
        sawArray(from, property, source);
        oxArray_tag const* const fresh = entry.arrays().get(&copied);
        check(fresh != source, "a copy of the page builds its own arrays");
        checkHostView(copied, entry, fresh);
        pages_[to] = std::move(copied);
        forget(to);
        seen_[to][property] = fresh;
    }

    void compare(std::size_t slot) {
        rp::RefItem const& other = pages_[input_.choose(pageCount)];
        check((pages_[slot] == other) == (other == pages_[slot]), "equality is symmetric");
    }

    void reset(std::size_t slot) {
        pages_[slot] = rp::RefItem();
        forget(slot);
    }

    /// Changes a record inside a cached host array: the native field keeps its copy.
    void changeInHost(std::size_t slot, std::size_t property) {
        glue::PropertyEntry const& entry = pageTable().entries[property];
        if (entry.kind != PropertyKind::ObjectArray && entry.kind != PropertyKind::Record) return;
        std::u16string const text = generator_.text();
        rp::RefItem& page = pages_[slot];
        oxArray_tag const* const array = entry.arrays().get(&page);
        sawArray(slot, property, array);
        if (omGetNumberOfElementsInUnderlyingArray(array) == 0) return;
        rp::RefItem const before = page.copy();
        glue::PropertyTable const& table = entry.elementTable();
        table.entries.front().strings().set(glue::recordOf(*omGetArrayElement(array, 0).get(), table), &text);
        check(page == before, "a change made in the host does not reach the native field");
        hostChanged_[slot][property] = true;
    }

    ByteReader& input_;
    RecordGenerator generator_;
    std::array<rp::RefItem, pageCount> pages_;
    /// Per page and property: the array last returned, null once a set may have replaced it.
    std::array<std::array<oxArray_tag const*, 16>, pageCount> seen_{};
    /// Per page and property: a record of the cached array was changed in the host.
    std::array<std::array<bool, 16>, pageCount> hostChanged_{};
};

}  // namespace

int fuzzRefItemOperations(std::uint8_t const* data, std::size_t size) {
    reference::glue::registerClasses();
    check(pageTable().entries.size() <= 16, "the program tracks every property of the page");
    std::size_t const arraysAtStart = ovrin::testing::liveArrays();
    std::size_t const objectsAtStart = ovrin::testing::liveObjects();
    {
        ByteReader input(data, size);
        Program program(input);
        program.run();
    }
    check(ovrin::testing::liveArrays() == arraysAtStart, "every host array is released at the end");
    check(ovrin::testing::liveObjects() == objectsAtStart, "every host object is released at the end");
    return 0;
}

}  // namespace refprop::fuzz
