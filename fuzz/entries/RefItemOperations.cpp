// Fuzz entry: a program of host property operations on two pages. After every
// step it checks what the library promises: a copy equals its source, a cached
// array stays the same until its property is set, the host's view of a cached
// property agrees with the native field, a failed set leaves the page as it was,
// and at the end no host array or object is left alive.
#include "ByteReader.hpp"
#include "FuzzCheck.hpp"
#include "FuzzEntries.hpp"
#include "RecordGenerator.hpp"

#include "support/HostValues.hpp"
#include "support/ObjectProperties.hpp"

#include <reference/glue/Classes.hpp>
#include <reference/property/RequireScalar.hpp>

#include <ovrin/error.hpp>
#include <ovrin/testing.hpp>

#include <array>
#include <cstdint>
#include <typeinfo>

namespace refprop::fuzz {

namespace {

namespace rp = reference::property;
using namespace testvalues;

/// One string property of RefItem: native getter, host getter and setter.
struct StringProperty {
    std::u16string const& (rp::RefItem::*native)() const;
    std::u16string const& (rp::RefItem::*get)() const;
    void (rp::RefItem::*set)(std::u16string const*);
};

constexpr StringProperty stringProperties[] = {
    {&rp::RefItem::getHref, &rp::RefItem::getHrefProperty, &rp::RefItem::setHrefProperty},
    {&rp::RefItem::getPackageName, &rp::RefItem::getPackageNameProperty, &rp::RefItem::setPackageNameProperty},
    {&rp::RefItem::getPurpose, &rp::RefItem::getPurposeProperty, &rp::RefItem::setPurposeProperty},
    {&rp::RefItem::getIntroduced, &rp::RefItem::getIntroducedInProperty, &rp::RefItem::setIntroducedInProperty},
    {&rp::RefItem::getDescription, &rp::RefItem::getDescriptionProperty, &rp::RefItem::setDescriptionProperty},
};

constexpr std::size_t objectPropertyCount = pageObjectPropertyCount;
constexpr std::size_t pageCount = 2;
constexpr std::size_t maxOperations = 64;
/// The cached properties: the object properties, then the deprecation status.
constexpr std::size_t deprecationProperty = objectPropertyCount;
constexpr std::size_t cachedPropertyCount = objectPropertyCount + 1;

/// Changes the first text of a record (its name or title) through its host setter.
template <class T>
void changeText(T& record, std::u16string const& text) {
    glue::tableOf<T>().entries.front().strings().set(&record, &text);
}

/// A record class other than `T`, for arrays of the wrong element class.
template <class T>
using ForeignElement = std::conditional_t<std::is_same_v<T, rp::SeeAlso>, rp::Example, rp::SeeAlso>;

class Program {
public:
    explicit Program(ByteReader& input) noexcept : input_(input), generator_(input) {}

    void run() {
        for (std::size_t step = 0; step < maxOperations && !input_.empty(); ++step) {
            switch (input_.choose(8)) {
            case 0: setString(); break;
            case 1: setDeprecationStatus(); break;
            case 2: setObjects(); break;
            case 3: get(); break;
            case 4: copy(); break;
            case 5: compare(); break;
            case 6: reset(); break;
            default: changeInHost(); break;
            }
        }
    }

private:
    std::size_t pickPage() noexcept { return input_.choose(pageCount); }

    /// Remembers what a getter returned; it must return the same until the property is set.
    void sawArray(std::size_t page, std::size_t property, oxArray_tag const* array) {
        check(array != nullptr, "a property getter never returns null");
        oxArray_tag const*& seen = seen_[page][property];
        check(seen == nullptr || seen == array, "a cached array is returned again until its property is set");
        seen = array;
    }

    /// Sets a property of `page` to null through `set`, which must change nothing.
    template <class Set>
    void setNull(rp::RefItem& page, Set set, char const* what) {
        rp::RefItem const before = page.copy();
        (page.*set)(nullptr);
        check(page == before, what);
    }

    void forget(std::size_t page) {
        seen_[page] = {};
        hostChanged_[page] = {};
    }

    void setString() {
        rp::RefItem& page = pages_[pickPage()];
        StringProperty const& property = stringProperties[input_.choose(std::size(stringProperties))];
        if (input_.flag()) return setNull(page, property.set, "a null string leaves the page unchanged");
        std::u16string const text = generator_.text();
        (page.*property.set)(&text);
        check((page.*property.native)() == text, "a string setter stores the text");
        check(&(page.*property.get)() == &(page.*property.native)(), "a string getter returns the native field");
    }

    void setDeprecationStatus() {
        std::size_t const slot = pickPage();
        std::size_t const count = input_.choose(4);
        std::vector<std::uint32_t> numbers(count);
        for (std::uint32_t& number : numbers) number = input_.number();
        switch (input_.choose(6)) {
        case 0:
            return setNull(pages_[slot], &rp::RefItem::setDeprecationStatusProperty,
                           "a null enumeration value leaves the page unchanged");
        case 1: return offerEnumeration(slot, enumObject(hostClassName<rp::DeprecationStatus>(), numbers), numbers);
        case 2: return offerEnumeration(slot, enumObject(hostClassName<rp::SyntaxType>(), numbers), numbers);
        case 3: return offerEnumeration(slot, numericArray(numbers), numbers);
        case 4: return offerEnumeration(slot, stringArray(std::vector<std::u16string>(count)), {});
        default: return offerEnumeration(slot, objectArray(std::vector<rp::SeeAlso>(count)), {});
        }
    }

    /// Sets the deprecation status from `value`, which stands on `numbers` when it is numeric.
    void offerEnumeration(std::size_t slot, HostArrayPtr const& value, std::vector<std::uint32_t> const& numbers) {
        rp::RefItem& page = pages_[slot];
        std::size_t const count = omGetNumberOfElementsInUnderlyingArray(value.get());
        bool const numeric = !numbers.empty() || oxGetClassID(omGetUnderlyingArray(value.get())) == oxUINT32_CLASS;
        rp::RefItem const before = page.copy();
        try {
            page.setDeprecationStatusProperty(value.get());
        } catch (rp::RequireScalar const&) {
            check(count != 1, "RequireScalar only for a value of other than one element");
            check(page == before, "a rejected enumeration value leaves the page unchanged");
            return;
        } catch (ovrin::HostError const&) {
            check(!numeric, "a numeric scalar enumeration value is accepted");
            check(page == before, "a failed enumeration set leaves the page unchanged");
            return;
        }
        check(count == 1 && numeric, "only a numeric scalar enumeration value is accepted");
        check(static_cast<std::uint32_t>(page.getDeprecationStatus()) == numbers.at(0),
              "an enumeration setter stores the number unchecked");
        seen_[slot][deprecationProperty] = nullptr;
        oxArray_tag const* const cached = page.getDeprecationStatusProperty();
        check(cached == value.get(), "an enumeration getter returns the array last set");
        sawArray(slot, deprecationProperty, cached);
    }

    void setObjects() {
        std::size_t const slot = pickPage();
        std::size_t const property = input_.choose(objectPropertyCount);
        visitProperty<PageObjectProperties>(property, [&](auto p) { setObjectsOf<decltype(p)>(slot, property); });
    }

    template <class Property>
    void setObjectsOf(std::size_t slot, std::size_t property) {
        using T = typename Property::Element;
        rp::RefItem& page = pages_[slot];
        switch (input_.choose(5)) {
        case 0: return setNull(page, Property::set, "a null object array leaves the page unchanged");
        case 1: {
            HostArrayPtr const value = generator_.objectArray(glue::tableOf<T>(), Property::single ? 1 : 0);
            std::vector<T> const records = hostRecords<T>(value.get());
            (page.*Property::set)(value.get());
            if constexpr (Property::single) {
                check((page.*Property::native)() == records.front(), "the record setter keeps element 0");
            } else {
                check((page.*Property::native)() == records, "an object-array setter stores copies of the records");
            }
            seen_[slot][property] = nullptr;
            hostChanged_[slot][property] = false;
            oxArray_tag const* const cached = (page.*Property::get)();
            check(cached != value.get(), "the cached array is built afresh, never the array that was set");
            sawArray(slot, property, cached);
            checkHostView<Property>(page, cached);
            return;
        }
        case 2:
            return offerForeign<Property>(slot, property, generator_.objectArray(glue::tableOf<ForeignElement<T>>()));
        case 3: return offerForeign<Property>(slot, property, stringArray(std::vector<std::u16string>(input_.choose(3))));
        default:
            return offerForeign<Property>(
                slot, property,
                enumObject(hostClassName<rp::SyntaxType>(), std::vector<std::uint32_t>(input_.choose(3))));
        }
    }

    /// Sets an object property from an array whose elements are not records of its class.
    template <class Property>
    void offerForeign(std::size_t slot, std::size_t property, HostArrayPtr const& value) {
        rp::RefItem& page = pages_[slot];
        rp::RefItem const before = page.copy();
        try {
            (page.*Property::set)(value.get());
        } catch (ovrin::HostError const&) {
            check(page == before, "a failed object-array set leaves the page unchanged");
            return;
        }
        // Only an array with no elements can be read without touching an element.
        check(!Property::single && omGetNumberOfElementsInUnderlyingArray(value.get()) == 0,
              "an array of foreign elements is rejected by the host");
        if constexpr (!Property::single) check((page.*Property::native)().empty(), "an empty array stores no records");
        seen_[slot][property] = nullptr;
        hostChanged_[slot][property] = false;
    }

    /// The host's view of a cached object property agrees with the native field.
    template <class Property>
    void checkHostView(rp::RefItem const& page, oxArray_tag const* array) {
        using T = typename Property::Element;
        check(ovrin::testing::className(array) == hostClassName<T>(), "a cached array holds the element class");
        if constexpr (Property::single) {
            check(omGetNumberOfElementsInUnderlyingArray(array) == 1, "the thumbnail is one host object");
            check(recordAt<T>(array, 0) == (page.*Property::native)(), "host and native thumbnails agree");
        } else {
            auto const& field = (page.*Property::native)();
            check(oxGetM(array) == 1 && oxGetN(array) == field.size(), "a cached array is 1-by-N");
            check(oxGetArrayScope(array) == 6, "a cached object array is scoped");
            for (std::size_t i = 0; i < field.size(); ++i)
                check(recordAt<T>(array, i) == field[i], "host and native records agree");
        }
    }

    void get() {
        std::size_t const slot = pickPage();
        std::size_t const property = input_.choose(cachedPropertyCount);
        rp::RefItem const& page = pages_[slot];
        if (property == deprecationProperty) {
            oxArray_tag const* const cached = page.getDeprecationStatusProperty();
            sawArray(slot, property, cached);
            check(hostNumber(cached) == static_cast<std::uint32_t>(page.getDeprecationStatus()),
                  "host and native deprecation status agree");
            return;
        }
        visitProperty<PageObjectProperties>(property, [&](auto p) {
            using Property = decltype(p);
            oxArray_tag const* const cached = (page.*Property::get)();
            sawArray(slot, property, cached);
            if (!hostChanged_[slot][property]) checkHostView<Property>(page, cached);
        });
    }

    void copy() {
        std::size_t const from = pickPage();
        std::size_t const to = pickPage();
        std::size_t const property = input_.choose(objectPropertyCount);
        rp::RefItem copied = pages_[from].copy();
        check(copied == pages_[from] && pages_[from] == copied, "a copy equals its source");
        visitProperty<PageObjectProperties>(property, [&](auto p) {
            using Property = decltype(p);
            oxArray_tag const* const source = (pages_[from].*Property::get)();
            sawArray(from, property, source);
            oxArray_tag const* const fresh = (copied.*Property::get)();
            check(fresh != source, "a copy builds its own arrays");
            checkHostView<Property>(copied, fresh);
            pages_[to] = std::move(copied);
            forget(to);
            seen_[to][property] = fresh;
        });
    }

    void compare() {
        rp::RefItem const& a = pages_[pickPage()];
        rp::RefItem const& b = pages_[pickPage()];
        check((a == b) == (b == a), "equality is symmetric");
        check(a == a, "a page equals itself");
    }

    void reset() {
        std::size_t const slot = pickPage();
        pages_[slot] = rp::RefItem();
        forget(slot);
    }

    /// Changes a record inside a cached host array: the native field keeps its copy.
    void changeInHost() {
        std::size_t const slot = pickPage();
        std::size_t const property = input_.choose(objectPropertyCount);
        std::u16string const text = generator_.text();
        visitProperty<PageObjectProperties>(property, [&](auto p) {
            using Property = decltype(p);
            using T = typename Property::Element;
            rp::RefItem& page = pages_[slot];
            oxArray_tag const* const cached = (page.*Property::get)();
            sawArray(slot, property, cached);
            if (omGetNumberOfElementsInUnderlyingArray(cached) == 0) return;
            rp::RefItem const before = page.copy();
            changeText(recordAt<T>(cached, 0), text);
            check(page == before, "a change made in the host does not reach the native field");
            hostChanged_[slot][property] = true;
        });
    }

    ByteReader& input_;
    RecordGenerator generator_;
    std::array<rp::RefItem, pageCount> pages_;
    /// Per page and cached property: the array last returned, null once a set may have replaced it.
    std::array<std::array<oxArray_tag const*, cachedPropertyCount>, pageCount> seen_{};
    /// Per page and object property: a record of the cached array was changed in the host.
    std::array<std::array<bool, objectPropertyCount>, pageCount> hostChanged_{};
};

}  // namespace

int fuzzRefItemOperations(std::uint8_t const* data, std::size_t size) {
    reference::glue::registerClasses();
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
