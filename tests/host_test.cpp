// The stand-in host: array and object lifetimes, payloads, the class registry,
// object arrays, enumeration and record construction, honest failures and fault
// injection; its foundation's error identifiers, message catalog refusals and
// the user exception's UTF-16 to UTF-8 conversions. That no failing host call leaves anything alive is the fault
// sweep's to show, and use from many threads the concurrency test's (under tsan).
#include "support/HostErrors.hpp"
#include "support/HostTest.hpp"
#include "support/HostValues.hpp"

#include <ovrin/array.hpp>
#include <ovrin/foundation/except.hpp>
#include <ovrin/ocos.hpp>
#include <ovrin/testing.hpp>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using ovrin::testing::referenceCount;
using testvalues::HostArrayPtr;
using testvalues::hostErrorOf;
using testvalues::numericArray;
using Handle = boost::intrusive_ptr<oxArray_tag const>;

struct Widget {
    int value = 42;
    static inline std::atomic<int> disposed{0};
};
struct Gadget {};
struct Unregistered {};

template <class T>
void dispose(void* record) noexcept {
    if constexpr (std::is_same_v<T, Widget>) ++Widget::disposed;
    delete static_cast<T*>(record);
}

/// The test classes; registering again returns the classes already there.
struct TestClasses {
    ocos::COSClass& widget = ocos::COSClass::define(
        {"test.Widget", &typeid(Widget), &dispose<Widget>, [] { return static_cast<void*>(new Widget); }, false});
    ocos::COSClass& gadget = ocos::COSClass::define({"test.Gadget", &typeid(Gadget), &dispose<Gadget>, nullptr, false});
    ocos::COSClass& colour = ocos::COSClass::define({"test.Colour", nullptr, nullptr, nullptr, true});
};

/// A host object owning a new record of `cls`'s native type.
template <class T = Widget>
ocos::COSInterfacePtr wrap(ocos::COSClass& cls, T record = {}) {
    auto heap = std::make_unique<T>(record);
    ocos::COSInterfacePtr object = omWrapData(heap.get(), &cls);
    static_cast<void>(heap.release());
    return object;
}

Handle construct(ocos::ClassIdentity cls, std::vector<oxArray_tag const*> const& args) {
    return Handle(omConstructObjectWithClient(cls, static_cast<int>(args.size()), args.data(), COSGetPublicClient()),
                  false);
}

int widgetValue(oxArray_tag const* array, std::size_t index) {
    return static_cast<Widget*>(omGetArrayElement(array, index)->getData(typeid(Widget)))->value;
}

class Host : public LiveCountTest {
protected:
    TestClasses classes;
};

TEST_F(Host, ArraysCountTheirReferencesAndTheLastReleaseDestroysThem) {
    std::size_t const before = ovrin::testing::liveArrays();
    oxArray_tag* const array = matrix::detail::do_create_uninitnumeric(1, 1, oxUINT32_CLASS, false);
    Handle shared(array);
    EXPECT_EQ(referenceCount(array), 2);
    intrusive_ptr_release(array);
    EXPECT_EQ(ovrin::testing::liveArrays(), before + 1);
    shared.reset();
    EXPECT_EQ(ovrin::testing::liveArrays(), before);
    EXPECT_EQ(referenceCount(matrix::from_ovrin(oxCreateStringArray(1, 2)).get()), 1) << "adoption adds no reference";
    matrix::destroyArray(nullptr);  // ignored
}

TEST_F(Host, NumericAndStringArraysHaveTheirShapeClassAndPayload) {
    using matrix::detail::do_create_uninitnumeric;
    HostArrayPtr const doubles = testvalues::adopt(do_create_uninitnumeric(2, 3, oxDOUBLE_CLASS, false));
    EXPECT_EQ(ovrin::testing::className(doubles.get()), "double");
    EXPECT_EQ(oxGetM(doubles.get()) * 10 + oxGetN(doubles.get()), 23u);
    EXPECT_EQ(oxGetNumberOfElements(doubles.get()), 6u);
    EXPECT_FALSE(oxIsComplex(doubles.get()));
    for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(static_cast<double const*>(oxGetData(doubles.get()))[i], 0.0);
    EXPECT_TRUE(oxIsComplex(testvalues::adopt(do_create_uninitnumeric(1, 1, oxINT32_CLASS, true)).get()));
    EXPECT_EQ(static_cast<std::uint32_t const*>(oxGetData(numericArray({7, 0xFFFFFFFFu}).get()))[1], 0xFFFFFFFFu);

    matrix::unique_array strings = matrix::from_ovrin(oxCreateStringArray(1, 3));
    EXPECT_EQ(ovrin::testing::className(strings.get()), "string");
    EXPECT_EQ(oxGetStringElement(strings.get(), 0), u"");
    oxSetStringElement(strings.get(), 2, std::u16string(u"z\0y", 3));
    EXPECT_EQ(oxGetStringElement(strings.get(), 2), std::u16string(u"z\0y", 3));
    EXPECT_EQ(oxGetArrayScope(strings.get()), 0);
    oxSetArrayScope(strings.get(), 6);
    EXPECT_EQ(oxGetArrayScope(strings.get()), 6);
    EXPECT_FALSE(oxIsInternal(strings.get()));
}

TEST_F(Host, EqualNamesInternToOneIdentityAndDefiningAgainKeepsTheFirstClass) {
    using ocos::internal::makeInterned;
    EXPECT_EQ(makeInterned("test.Widget"), makeInterned(std::string("test.Widget")));
    EXPECT_NE(makeInterned("test.Widget"), makeInterned("test.widget"));
    EXPECT_EQ(ocos::internal::nameOf(makeInterned("test.Widget")), "test.Widget");
    EXPECT_EQ(ocos::internal::nameOf(ocos::internal::nullValue()), "");
    ocos::COSClass& again = ocos::COSClass::define({"test.Widget", &typeid(Gadget), &dispose<Gadget>, nullptr, false});
    EXPECT_EQ(&again, &classes.widget);
    EXPECT_EQ(again.definition().nativeType, &typeid(Widget));
    EXPECT_EQ(ocos::COSClass::getClass(makeInterned("test.Widget")), &classes.widget);
    EXPECT_TRUE(classes.colour.isEnumeration());
}

TEST_F(Host, TheLastReferenceToAWrappedRecordDisposesOfIt) {
    int const disposedBefore = Widget::disposed;
    std::size_t const objectsBefore = ovrin::testing::liveObjects();
    {
        ocos::COSInterfacePtr object = wrap(classes.widget, Widget{7});
        ocos::COSInterfacePtr const copy = object;
        EXPECT_EQ(referenceCount(object.get()), 2);
        EXPECT_EQ(&object->getClass(), &classes.widget);
        EXPECT_EQ(static_cast<Widget*>(object->getData(typeid(Widget)))->value, 7);
        object.reset();
        EXPECT_EQ(Widget::disposed, disposedBefore);
        EXPECT_EQ(ovrin::testing::liveObjects(), objectsBefore + 1);
    }
    EXPECT_EQ(Widget::disposed, disposedBefore + 1);
    EXPECT_EQ(ovrin::testing::liveObjects(), objectsBefore);

    auto record = std::make_unique<Widget>();
    ovrin::testing::FaultScope fault(1);
    EXPECT_EQ(hostErrorOf([&] { omWrapData(record.get(), &classes.widget); }), "injected fault: omWrapData");
    record->value = 3;  // a failed wrap leaves the record with the caller
}

TEST_F(Host, ObjectArraysAndScalarsHoldReferencesToTheirElements) {
    int const disposedBefore = Widget::disposed;
    matrix::unique_array array = matrix::from_ovrin(omCreateOCOSMatrix(1, 2, classes.widget.identity()));
    EXPECT_EQ(oxGetClassID(array.get()), oxOBJECT_CLASS);
    EXPECT_EQ(ovrin::testing::className(array.get()), "test.Widget");
    ocos::COSInterfacePtr object = wrap(classes.widget, Widget{5});
    omSetArrayElement(array.get(), 1, object);
    EXPECT_EQ(referenceCount(object.get()), 2);
    EXPECT_EQ(omGetArrayElement(array.get(), 1).get(), object.get());
    EXPECT_EQ(omGetUnderlyingArray(array.get()), array.get());
    EXPECT_EQ(omGetNumberOfElementsInUnderlyingArray(array.get()), 2u);
    omSetArrayElement(array.get(), 1, wrap(classes.widget, Widget{2}));
    EXPECT_EQ(referenceCount(object.get()), 1) << "a replaced element is released";
    EXPECT_EQ(widgetValue(array.get(), 1), 2);
    {
        Handle const scalar(omCreateOCOSScalar(object), false);
        EXPECT_EQ(oxGetNumberOfElements(scalar.get()), 1u);
        EXPECT_EQ(referenceCount(object.get()), 2);
    }
    EXPECT_EQ(referenceCount(object.get()), 1);
    array.reset();
    EXPECT_EQ(Widget::disposed, disposedBefore + 1);
    matrix::unique_array empty = matrix::from_ovrin(omCreateOCOSMatrix(1, 0, classes.widget.identity()));
    EXPECT_EQ(oxGetM(empty.get()), 1u);
    EXPECT_EQ(omGetNumberOfElementsInUnderlyingArray(empty.get()), 0u);
}

TEST_F(Host, EnumerationObjectsKeepTheirOwnCopyOfTheNumbersAndRecordClassesADefaultRecord) {
    HostArrayPtr argument = numericArray({3});
    Handle object = construct(classes.colour.identity(), {argument.get()});
    static_cast<std::uint32_t*>(oxGetData(argument.get()))[0] = 99;
    EXPECT_EQ(ovrin::testing::className(object.get()), "test.Colour");
    EXPECT_EQ(oxGetNumberOfElements(object.get()), 1u);
    EXPECT_EQ(oxGetClassID(omGetUnderlyingArray(object.get())), oxUINT32_CLASS);
    EXPECT_EQ(testvalues::hostNumber(object.get()), 3u);

    Handle pair = construct(classes.colour.identity(), {numericArray({1, 2}).get()});
    EXPECT_EQ(omGetNumberOfElementsInUnderlyingArray(pair.get()), 2u);
    EXPECT_EQ(oxGetN(omGetUnderlyingArray(pair.get())), 2u);

    ocosConvertArrayToInternalInPlace(const_cast<oxArray_tag*>(object.get()), false);
    EXPECT_TRUE(oxIsInternal(object.get()));
    EXPECT_FALSE(oxIsInternal(omGetUnderlyingArray(object.get())));
    ocosConvertArrayToInternalInPlace(const_cast<oxArray_tag*>(pair.get()), true);
    EXPECT_TRUE(oxIsInternal(omGetUnderlyingArray(pair.get()))) << "a deep conversion reaches the numbers";

    EXPECT_EQ(widgetValue(construct(classes.widget.identity(), {}).get(), 0), 42);
}

TEST_F(Host, MisuseIsAHostErrorNamingWhatWasExpectedAndWhatWasFound) {
    matrix::unique_array widgets = matrix::from_ovrin(omCreateOCOSMatrix(1, 2, classes.widget.identity()));
    HostArrayPtr const strings = testvalues::stringArray({u"a", u"b"});
    HostArrayPtr const uint32s = numericArray({1});
    HostArrayPtr const doubles =
        testvalues::adopt(matrix::detail::do_create_uninitnumeric(1, 1, oxDOUBLE_CLASS, false));
    ocos::COSInterfacePtr const widget = wrap(classes.widget);
    ocos::COSInterfacePtr const gadget = wrap<Gadget>(classes.gadget);
    Handle const colour = construct(classes.colour.identity(), {numericArray({1}).get()});
    auto* const w = widgets.get();
    Widget record;
    struct Case {
        std::function<void()> call;
        char const* message;
    };
    Case const cases[] = {
        {[] { matrix::detail::do_create_uninitnumeric(1, 1, oxSTRING_CLASS, false); },
         "do_create_uninitnumeric: expected a numeric class (double, int32 or uint32), found class id 2"},
        {[&] { oxGetStringElement(strings.get(), 2); },
         "oxGetStringElement: expected an index below 2, found index 2 of a 1-by-2 string array"},
        {[&] { oxGetStringElement(uint32s.get(), 0); },
         "oxGetStringElement: expected a string array, found a 1-by-1 uint32 array"},
        {[&] { oxGetData(strings.get()); }, "oxGetData: expected a numeric array, found a 1-by-2 string array"},
        {[] { oxGetClassID(nullptr); }, "oxGetClassID: expected an array, found null"},
        {[] { ocos::internal::makeInterned(""); }, "makeInterned: expected a non-empty class name, found an empty one"},
        {[] { ocos::COSClass::getClass(ocos::internal::makeInterned("test.Nobody")); },
         "COSClass::getClass: expected a registered class, found unknown class 'test.Nobody'"},
        {[] { ocos::COSClass::getClass(ocos::internal::nullValue()); },
         "COSClass::getClass: expected a registered class, found the null identity"},
        {[] { ocos::COSClass::define({"test.Broken", nullptr, nullptr, nullptr, false}); },
         "COSClass::define: expected a native type and a dispose function for record class 'test.Broken', found no "
         "native type"},
        {[&] { widget->getData(typeid(Gadget)); },
         "COSInterface::getData: expected a record of class 'test.Gadget', found a record of class 'test.Widget'"},
        {[&] { widget->getData(typeid(Unregistered)); },
         "COSInterface::getData: expected a record of unregistered native type (anonymous namespace)::Unregistered, "
         "found a record of class 'test.Widget'"},
        {[&] { omWrapData(nullptr, &classes.widget); }, "omWrapData: expected a record, found null"},
        {[&] { omWrapData(&record, &classes.colour); }, "omWrapData: expected a record class, found enumeration class "
                                                   "'test.Colour'"},
        {[&] { omGetArrayElement(w, 1); }, "omGetArrayElement: expected an object at index 1, found an empty element "
                                           "of a 1-by-2 object array of class test.Widget"},
        {[&] { omGetArrayElement(w, 9); }, "omGetArrayElement: expected an index below 2, found index 9 of a 1-by-2 "
                                           "object array of class test.Widget"},
        {[&] { omSetArrayElement(w, 0, gadget); }, "omSetArrayElement: expected an object of class 'test.Widget', "
                                                   "found an object of class 'test.Gadget'"},
        {[&] { omSetArrayElement(w, 0, {}); }, "omSetArrayElement: expected a host object, found null"},
        {[&] { omGetArrayElement(strings.get(), 0); },
         "omGetArrayElement: expected an object array of records, found a 1-by-2 string array"},
        {[&] { omGetArrayElement(colour.get(), 0); }, "omGetArrayElement: expected an object array of records, found "
                                                      "a 1-by-1 enumeration object of class test.Colour"},
        {[&] { omCreateOCOSMatrix(1, 1, classes.colour.identity()); },
         "omCreateOCOSMatrix: expected a record class, found enumeration class 'test.Colour'"},
        {[] { omCreateOCOSScalar({}); }, "omCreateOCOSScalar: expected a host object, found null"},
        {[&] { construct(classes.colour.identity(), {doubles.get()}); },
         "omConstructObjectWithClient: expected a real uint32 array for enumeration class 'test.Colour', found a "
         "1-by-1 double array"},
        {[&] { construct(classes.colour.identity(), {}); }, "omConstructObjectWithClient: expected one uint32 array "
                                                            "argument for enumeration class 'test.Colour', found 0 "
                                                            "argument(s)"},
        {[&] { omConstructObjectWithClient(classes.colour.identity(), 0, nullptr, nullptr); },
         "omConstructObjectWithClient: expected the public client, found null"},
        {[&] { construct(classes.gadget.identity(), {}); },
         "omConstructObjectWithClient: expected record class 'test.Gadget' to have a default record, found none"},
        {[&] { construct(classes.widget.identity(), {colour.get()}); },
         "omConstructObjectWithClient: expected no arguments for record class 'test.Widget', found 1"},
        {[&] { ocosConvertArrayToInternalInPlace(const_cast<oxArray_tag*>(uint32s.get()), true); },
         "ocosConvertArrayToInternalInPlace: expected an object array, found a 1-by-1 uint32 array"},
    };
    for (Case const& c : cases) EXPECT_EQ(hostErrorOf(c.call), c.message);
    std::size_t const huge = std::size_t(1) << 40;
    EXPECT_NE(hostErrorOf([&] { oxCreateStringArray(huge, huge); }), testvalues::noError) << "not an overflow";
}

TEST_F(Host, AnArmedFaultFiresOnceOnTheNthFallibleCallOfItsOwnThread) {
    matrix::unique_array array = matrix::from_ovrin(oxCreateStringArray(1, 1));
    std::uint64_t const start = ovrin::testing::hostCalls();
    ovrin::testing::FaultScope fault(2);
    oxGetClassID(array.get());  // queries and reference counting are not fallible calls
    oxGetM(array.get());
    oxGetN(array.get());
    oxGetNumberOfElements(array.get());
    oxGetArrayScope(array.get());
    oxIsInternal(array.get());
    oxIsComplex(array.get());
    Handle{array.get()};
    EXPECT_EQ(ovrin::testing::hostCalls(), start);
    std::string otherThread;
    std::thread([&] {
        EXPECT_FALSE(ovrin::testing::faultPending());
        otherThread = hostErrorOf([] { matrix::unique_array a = matrix::from_ovrin(oxCreateStringArray(1, 1)); });
    }).join();
    EXPECT_EQ(otherThread, testvalues::noError);
    oxGetStringElement(array.get(), 0);
    EXPECT_EQ(hostErrorOf([&] { oxSetStringElement(array.get(), 0, u"x"); }), "injected fault: oxSetStringElement");
    EXPECT_FALSE(ovrin::testing::faultPending());
    oxSetStringElement(array.get(), 0, u"x");
    EXPECT_EQ(ovrin::testing::hostCalls(), start + 3);
}

namespace msg = foundation::core::msg;
namespace except = foundation::core::except;

/// An entry the catalog does not hold.
struct MissingKey : msg::MessageKey {
    MissingKey() : MessageKey{{}, "Test:nowhere", "Missing"} {}
};

/// A user exception with a fixed message and no catalog entry.
class PlainUserError : public except::IUserException {
public:
    explicit PlainUserError(std::u16string text) : text_(std::move(text)) {}
    IException* clone() const override { return new PlainUserError(*this); }
    void rethrow() const override { throw *this; }
    std::u16string ToUstringImpl() const override { return text_; }

private:
    std::u16string text_;
};

TEST(MessageCatalog, IdentifiersJoinCatalogAndKeyAndEntriesItLacksOrArgumentsItTakesNotAreHostErrors) {
    component_Ovrin::catalog_class::key_RequireScalar withArgument;
    EXPECT_EQ(except::IMsgIDException::get_error_id(withArgument), "Ovrin:class:RequireScalar");
    EXPECT_EQ(msg::catalogIdentifier("Ovrin:class", "RequireScalar"), "Ovrin:class:RequireScalar");
    EXPECT_EQ(hostErrorOf([] { msg::catalogMessage(MissingKey()); }),
              "catalogMessage: expected an entry of the message catalog, found 'Test:nowhere:Missing'");
    withArgument.arguments.emplace_back(7L);
    EXPECT_EQ(hostErrorOf([&] { msg::catalogMessage(withArgument); }),
              "catalogMessage: expected 0 argument(s) for 'Ovrin:class:RequireScalar', found 1");
}

TEST(UserException, WhatIsTheUtf8FormOfTheUnicodeMessageOrAFixedTextWhenItCannotBeFormed) {
    EXPECT_STREQ(PlainUserError(u"caf\u00e9 \U0001F600").what(), "caf\xc3\xa9 \xf0\x9f\x98\x80");
    EXPECT_STREQ(PlainUserError(std::u16string(1, char16_t(0xDC00))).what(),
                 "foundation exception (its message could not be formed)");
}

TEST(UserException, ConvertStrRoundTripsValidTextAndRefusesInvalidText) {
    PlainUserError const error(u"");
    std::u16string const text = u"\u00e9\u4e2d\U0001F600";
    EXPECT_EQ(error.convert_str(error.convert_str(text)), text);
    EXPECT_EQ(error.convert_str(std::string("plain")), u"plain");
    EXPECT_THROW(error.convert_str(std::u16string(1, char16_t(0xD800))), ovrin::HostError);
    EXPECT_THROW(error.convert_str(std::string("\xff")), ovrin::HostError);
}


#if !defined(NDEBUG) && GTEST_HAS_DEATH_TEST
TEST(HostDeathTest, DestroyingAnArrayOthersStillReferenceIsAnAssertion) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            oxArray_tag* const array = oxCreateStringArray(1, 1);
            intrusive_ptr_add_ref(array);
            matrix::destroyArray(array);
        },
        "others still reference");
}
#endif

}  // namespace
