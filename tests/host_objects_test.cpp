// The stand-in host's object system: interning, the class registry, host
// objects and their records, object arrays, enumeration and record
// construction, honest failures, fault injection and use from many threads.
#include "support/LiveCounts.hpp"

#include <ovrin/array.hpp>
#include <ovrin/error.hpp>
#include <ovrin/ocos.hpp>
#include <ovrin/testing.hpp>

#include <boost/intrusive_ptr.hpp>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using ovrin::HostError;
using ovrin::testing::referenceCount;
using Handle = boost::intrusive_ptr<oxArray_tag const>;

struct Widget {
    int value = 42;
    static inline std::atomic<int> disposed{0};
};
struct Gadget {
    std::string label;
};
struct Unregistered {};

template <class T>
void dispose(void* record) noexcept {
    if constexpr (std::is_same_v<T, Widget>) ++Widget::disposed;
    delete static_cast<T*>(record);
}

void* makeWidget() { return new Widget; }

/// The test classes; registering again returns the classes already there.
struct TestClasses {
    ocos::COSClass& widget = ocos::COSClass::define(
        {"test.Widget", &typeid(Widget), &dispose<Widget>, &makeWidget, false});
    ocos::COSClass& gadget = ocos::COSClass::define({"test.Gadget", &typeid(Gadget), &dispose<Gadget>, nullptr, false});
    ocos::COSClass& colour = ocos::COSClass::define({"test.Colour", nullptr, nullptr, nullptr, true});
};

template <class Call>
std::string hostErrorOf(Call&& call) {
    try {
        call();
    } catch (HostError const& e) {
        return e.what();
    }
    return "no error";
}

/// A host object owning a new Widget of `value`.
ocos::COSInterfacePtr wrapWidget(ocos::COSClass& cls, int value) {
    auto record = std::make_unique<Widget>(Widget{value});
    ocos::COSInterfacePtr object = omWrapData(record.get(), &cls);
    record.release();
    return object;
}

/// A 1-by-N uint32 array holding `numbers`.
matrix::unique_array numbers(std::vector<std::uint32_t> const& values) {
    matrix::unique_array array =
        matrix::from_ovrin(matrix::detail::do_create_uninitnumeric(1, values.size(), oxUINT32_CLASS, false));
    auto* data = static_cast<std::uint32_t*>(oxGetData(array.get()));
    for (std::size_t i = 0; i < values.size(); ++i) data[i] = values[i];
    return array;
}

Handle construct(ocos::ClassIdentity cls, std::vector<oxArray_tag const*> const& args) {
    return Handle(omConstructObjectWithClient(cls, static_cast<int>(args.size()), args.data(), COSGetPublicClient()),
                  false);
}

class HostObjects : public LiveCountTest {
protected:
    TestClasses classes;
};

TEST_F(HostObjects, EqualTextsInternToTheSamePointer) {
    std::string const text = "test.Widget";
    EXPECT_EQ(ocos::internal::makeInterned("test.Widget"), ocos::internal::makeInterned(text));
    EXPECT_NE(ocos::internal::makeInterned("test.Widget"), ocos::internal::makeInterned("test.widget"));
    EXPECT_EQ(ocos::internal::nameOf(ocos::internal::makeInterned(text)), "test.Widget");
    EXPECT_EQ(ocos::internal::nameOf(ocos::internal::nullValue()), "");
}

TEST_F(HostObjects, InterningFromManyThreadsAgrees) {
    std::vector<ocos::ClassIdentity> seen(8);
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < seen.size(); ++t)
        threads.emplace_back([&seen, t] {
            for (int i = 0; i < 100; ++i) seen[t] = ocos::internal::makeInterned("test.interned." + std::to_string(i));
        });
    for (std::thread& thread : threads) thread.join();
    for (ocos::ClassIdentity identity : seen) EXPECT_EQ(identity, seen.front());
}

TEST_F(HostObjects, DefiningANameAgainReturnsTheClassAlreadyThere) {
    ocos::COSClass& again = ocos::COSClass::define({"test.Widget", &typeid(Gadget), &dispose<Gadget>, nullptr, false});
    EXPECT_EQ(&again, &classes.widget);
    EXPECT_EQ(again.definition().nativeType, &typeid(Widget));
    EXPECT_EQ(ocos::COSClass::getClass(ocos::internal::makeInterned("test.Widget")), &classes.widget);
    EXPECT_EQ(classes.widget.name(), "test.Widget");
    EXPECT_TRUE(classes.colour.isEnumeration());
}

TEST_F(HostObjects, RecordClassWithoutNativeTypeIsRejected) {
    EXPECT_EQ(hostErrorOf([] { ocos::COSClass::define({"test.Broken", nullptr, nullptr, nullptr, false}); }),
              "COSClass::define: expected a native type and a dispose function for record class 'test.Broken', "
              "found no native type");
}

TEST_F(HostObjects, UnknownAndNullClassesAreNamedInTheError) {
    EXPECT_EQ(hostErrorOf([] { ocos::COSClass::getClass(ocos::internal::makeInterned("test.Nobody")); }),
              "COSClass::getClass: expected a registered class, found unknown class 'test.Nobody'");
    EXPECT_EQ(hostErrorOf([] { ocos::COSClass::getClass(ocos::internal::nullValue()); }),
              "COSClass::getClass: expected a registered class, found the null identity");
    EXPECT_EQ(hostErrorOf([] { ocos::internal::makeInterned(""); }),
              "makeInterned: expected a non-empty class name, found an empty one");
}

TEST_F(HostObjects, LastReferenceToAWrappedRecordDisposesOfIt) {
    int const disposedBefore = Widget::disposed;
    std::size_t const objectsBefore = ovrin::testing::liveObjects();
    {
        ocos::COSInterfacePtr object = wrapWidget(classes.widget, 7);
        EXPECT_EQ(ovrin::testing::liveObjects(), objectsBefore + 1);
        ocos::COSInterfacePtr copy = object;
        EXPECT_EQ(referenceCount(object.get()), 2);
        EXPECT_EQ(&object->getClass(), &classes.widget);
        EXPECT_EQ(static_cast<Widget*>(object->getData(typeid(Widget)))->value, 7);
        object.reset();
        EXPECT_EQ(Widget::disposed, disposedBefore);
        EXPECT_EQ(referenceCount(copy.get()), 1);
    }
    EXPECT_EQ(Widget::disposed, disposedBefore + 1);
    EXPECT_EQ(ovrin::testing::liveObjects(), objectsBefore);
}

TEST_F(HostObjects, DataOfTheWrongNativeTypeNamesBothClasses) {
    ocos::COSInterfacePtr object = wrapWidget(classes.widget, 1);
    EXPECT_EQ(hostErrorOf([&] { object->getData(typeid(Gadget)); }),
              "COSInterface::getData: expected a record of class 'test.Gadget', found a record of class 'test.Widget'");
    EXPECT_EQ(hostErrorOf([&] { object->getData(typeid(Unregistered)); }),
              "COSInterface::getData: expected a record of unregistered native type (anonymous namespace)::Unregistered, "
              "found a record of class 'test.Widget'");
}

TEST_F(HostObjects, FailedWrapLeavesTheRecordWithTheCaller) {
    auto record = std::make_unique<Widget>();
    EXPECT_EQ(hostErrorOf([&] { omWrapData(record.get(), &classes.colour); }),
              "omWrapData: expected a record class, found enumeration class 'test.Colour'");
    EXPECT_EQ(hostErrorOf([&] { omWrapData(nullptr, &classes.widget); }), "omWrapData: expected a record, found null");
    ovrin::testing::FaultScope fault(1);
    EXPECT_EQ(hostErrorOf([&] { omWrapData(record.get(), &classes.widget); }), "injected fault: omWrapData");
    record->value = 3;  // still ours: not disposed of
}

TEST_F(HostObjects, ObjectArrayStartsEmptyAndHoldsReferencesToItsElements) {
    Handle array(omCreateOCOSMatrix(1, 2, classes.widget.identity()), false);
    EXPECT_EQ(oxGetClassID(array.get()), oxOBJECT_CLASS);
    EXPECT_EQ(ovrin::testing::className(array.get()), "test.Widget");
    EXPECT_EQ(hostErrorOf([&] { omGetArrayElement(array.get(), 1); }),
              "omGetArrayElement: expected an object at index 1, found an empty element of a 1-by-2 object array of "
              "class test.Widget");
    ocos::COSInterfacePtr object = wrapWidget(classes.widget, 5);
    omSetArrayElement(const_cast<oxArray_tag*>(array.get()), 1, object);
    EXPECT_EQ(referenceCount(object.get()), 2);
    ocos::COSInterfacePtr element = omGetArrayElement(array.get(), 1);
    EXPECT_EQ(element.get(), object.get());
    EXPECT_EQ(referenceCount(object.get()), 3);
    EXPECT_EQ(omGetUnderlyingArray(array.get()), array.get());
    EXPECT_EQ(omGetNumberOfElementsInUnderlyingArray(array.get()), 2u);
}

TEST_F(HostObjects, ReplacingAnElementReleasesTheOldOne) {
    int const disposedBefore = Widget::disposed;
    matrix::unique_array array = matrix::from_ovrin(omCreateOCOSMatrix(1, 1, classes.widget.identity()));
    omSetArrayElement(array.get(), 0, wrapWidget(classes.widget, 1));
    omSetArrayElement(array.get(), 0, wrapWidget(classes.widget, 2));
    EXPECT_EQ(Widget::disposed, disposedBefore + 1);
    EXPECT_EQ(static_cast<Widget*>(omGetArrayElement(array.get(), 0)->getData(typeid(Widget)))->value, 2);
}

TEST_F(HostObjects, EmptyObjectArrayIsOneByZero) {
    matrix::unique_array array = matrix::from_ovrin(omCreateOCOSMatrix(1, 0, classes.widget.identity()));
    EXPECT_EQ(oxGetM(array.get()), 1u);
    EXPECT_EQ(oxGetN(array.get()), 0u);
    EXPECT_EQ(omGetNumberOfElementsInUnderlyingArray(array.get()), 0u);
}

TEST_F(HostObjects, ElementMisuseIsAHostErrorNamingWhatWasFound) {
    matrix::unique_array array = matrix::from_ovrin(omCreateOCOSMatrix(1, 2, classes.widget.identity()));
    auto gadget = std::make_unique<Gadget>();
    ocos::COSInterfacePtr other = omWrapData(gadget.get(), &classes.gadget);
    gadget.release();
    EXPECT_EQ(hostErrorOf([&] { omSetArrayElement(array.get(), 0, other); }),
              "omSetArrayElement: expected an object of class 'test.Widget', found an object of class 'test.Gadget'");
    EXPECT_EQ(hostErrorOf([&] { omSetArrayElement(array.get(), 2, wrapWidget(classes.widget, 1)); }),
              "omSetArrayElement: expected an index below 2, found index 2 of a 1-by-2 object array of class "
              "test.Widget");
    EXPECT_EQ(hostErrorOf([&] { omGetArrayElement(array.get(), 9); }),
              "omGetArrayElement: expected an index below 2, found index 9 of a 1-by-2 object array of class "
              "test.Widget");
    EXPECT_EQ(hostErrorOf([&] { omSetArrayElement(array.get(), 0, ocos::COSInterfacePtr()); }),
              "omSetArrayElement: expected a host object, found null");
    matrix::unique_array strings = matrix::from_ovrin(oxCreateStringArray(1, 1));
    EXPECT_EQ(hostErrorOf([&] { omGetArrayElement(strings.get(), 0); }),
              "omGetArrayElement: expected an object array of records, found a 1-by-1 string array");
    EXPECT_EQ(hostErrorOf([&] { omCreateOCOSMatrix(1, 1, classes.colour.identity()); }),
              "omCreateOCOSMatrix: expected a record class, found enumeration class 'test.Colour'");
}

TEST_F(HostObjects, ScalarHoldsOneMoreReferenceToItsObject) {
    ocos::COSInterfacePtr object = wrapWidget(classes.widget, 9);
    {
        Handle scalar(omCreateOCOSScalar(object), false);
        EXPECT_EQ(oxGetNumberOfElements(scalar.get()), 1u);
        EXPECT_EQ(referenceCount(object.get()), 2);
        EXPECT_EQ(omGetArrayElement(scalar.get(), 0).get(), object.get());
    }
    EXPECT_EQ(referenceCount(object.get()), 1);
    EXPECT_EQ(hostErrorOf([] { omCreateOCOSScalar(ocos::COSInterfacePtr()); }),
              "omCreateOCOSScalar: expected a host object, found null");
}

TEST_F(HostObjects, EnumerationObjectKeepsItsOwnCopyOfOneNumber) {
    matrix::unique_array argument = numbers({3});
    Handle object = construct(classes.colour.identity(), {argument.get()});
    static_cast<std::uint32_t*>(oxGetData(argument.get()))[0] = 99;  // the object's copy is unaffected
    EXPECT_EQ(ovrin::testing::className(object.get()), "test.Colour");
    EXPECT_EQ(oxGetNumberOfElements(object.get()), 1u);
    oxArray_tag const* const underlying = omGetUnderlyingArray(object.get());
    EXPECT_NE(underlying, argument.get());
    EXPECT_EQ(oxGetClassID(underlying), oxUINT32_CLASS);
    EXPECT_EQ(omGetNumberOfElementsInUnderlyingArray(object.get()), 1u);
    EXPECT_EQ(static_cast<std::uint32_t const*>(oxGetData(underlying))[0], 3u);
}

TEST_F(HostObjects, EnumerationFromTwoNumbersIsANonScalarValue) {
    matrix::unique_array argument = numbers({1, 2});
    Handle object = construct(classes.colour.identity(), {argument.get()});
    EXPECT_EQ(omGetNumberOfElementsInUnderlyingArray(object.get()), 2u);
    oxArray_tag const* const underlying = omGetUnderlyingArray(object.get());
    EXPECT_EQ(oxGetM(underlying), 1u);
    EXPECT_EQ(oxGetN(underlying), 2u);
    EXPECT_EQ(static_cast<std::uint32_t const*>(oxGetData(underlying))[1], 2u);
    EXPECT_EQ(hostErrorOf([&] { omGetArrayElement(object.get(), 0); }),
              "omGetArrayElement: expected an object array of records, found a 1-by-1 enumeration object of class "
              "test.Colour");
}

TEST_F(HostObjects, EnumerationConstructionRejectsOtherArguments) {
    matrix::unique_array doubles =
        matrix::from_ovrin(matrix::detail::do_create_uninitnumeric(1, 1, oxDOUBLE_CLASS, false));
    EXPECT_EQ(hostErrorOf([&] { construct(classes.colour.identity(), {doubles.get()}); }),
              "omConstructObjectWithClient: expected a real uint32 array for enumeration class 'test.Colour', found a "
              "1-by-1 double array");
    EXPECT_EQ(hostErrorOf([&] { construct(classes.colour.identity(), {}); }),
              "omConstructObjectWithClient: expected one uint32 array argument for enumeration class 'test.Colour', "
              "found 0 argument(s)");
    EXPECT_EQ(hostErrorOf([&] { construct(classes.colour.identity(), {nullptr}); }),
              "omConstructObjectWithClient: expected one uint32 array argument for enumeration class 'test.Colour', "
              "found 1 argument(s) that is null");
    EXPECT_EQ(hostErrorOf([&] { omConstructObjectWithClient(classes.colour.identity(), 0, nullptr, nullptr); }),
              "omConstructObjectWithClient: expected the public client, found null");
}

TEST_F(HostObjects, RecordConstructionWrapsADefaultRecord) {
    Handle object = construct(classes.widget.identity(), {});
    EXPECT_EQ(oxGetNumberOfElements(object.get()), 1u);
    EXPECT_EQ(static_cast<Widget*>(omGetArrayElement(object.get(), 0)->getData(typeid(Widget)))->value, 42);
    EXPECT_EQ(hostErrorOf([&] { construct(classes.gadget.identity(), {}); }),
              "omConstructObjectWithClient: expected record class 'test.Gadget' to have a default record, found none");
    EXPECT_EQ(hostErrorOf([&] { construct(classes.widget.identity(), {object.get()}); }),
              "omConstructObjectWithClient: expected no arguments for record class 'test.Widget', found 1");
}

TEST_F(HostObjects, DeepInternalConversionReachesTheEnumerationNumbers) {
    matrix::unique_array argument = numbers({4});
    Handle shallow = construct(classes.colour.identity(), {argument.get()});
    Handle deep = construct(classes.colour.identity(), {argument.get()});
    ocosConvertArrayToInternalInPlace(const_cast<oxArray_tag*>(shallow.get()), false);
    ocosConvertArrayToInternalInPlace(const_cast<oxArray_tag*>(deep.get()), true);
    EXPECT_TRUE(oxIsInternal(shallow.get()));
    EXPECT_FALSE(oxIsInternal(omGetUnderlyingArray(shallow.get())));
    EXPECT_TRUE(oxIsInternal(deep.get()));
    EXPECT_TRUE(oxIsInternal(omGetUnderlyingArray(deep.get())));
    EXPECT_EQ(hostErrorOf([&] { ocosConvertArrayToInternalInPlace(argument.get(), true); }),
              "ocosConvertArrayToInternalInPlace: expected an object array, found a 1-by-1 uint32 array");
}

/// Builds a 1-by-2 array of widgets through every fallible kind of call, holding nothing afterwards.
void buildAndReadWidgetArray(TestClasses& classes) {
    ocos::ClassIdentity const identity = ocos::internal::makeInterned("test.Widget");
    matrix::unique_array array = matrix::from_ovrin(omCreateOCOSMatrix(1, 2, identity));
    for (std::size_t i = 0; i < 2; ++i) {
        auto record = std::make_unique<Widget>(Widget{static_cast<int>(i)});
        ocos::COSInterfacePtr object = omWrapData(record.get(), ocos::COSClass::getClass(identity));
        record.release();
        omSetArrayElement(array.get(), i, object);
    }
    ocosConvertArrayToInternalInPlace(array.get(), true);
    oxSetArrayScope(array.get(), 6);
    for (std::size_t i = 0; i < omGetNumberOfElementsInUnderlyingArray(array.get()); ++i)
        omGetArrayElement(array.get(), i)->getData(typeid(Widget));
    matrix::unique_array argument = numbers({1});
    construct(classes.colour.identity(), {argument.get()});
}

TEST_F(HostObjects, EveryInjectedFaultLeavesNothingAlive) {
    std::uint64_t const start = ovrin::testing::hostCalls();
    buildAndReadWidgetArray(classes);
    std::uint64_t const calls = ovrin::testing::hostCalls() - start;
    ASSERT_GT(calls, 10u);
    for (std::uint64_t n = 1; n <= calls; ++n) {
        std::size_t const arrays = ovrin::testing::liveArrays();
        std::size_t const objects = ovrin::testing::liveObjects();
        ovrin::testing::FaultScope fault(n);
        EXPECT_EQ(hostErrorOf([&] { buildAndReadWidgetArray(classes); }).rfind("injected fault: ", 0), 0u)
            << "call " << n;
        EXPECT_EQ(ovrin::testing::liveArrays(), arrays) << "call " << n;
        EXPECT_EQ(ovrin::testing::liveObjects(), objects) << "call " << n;
    }
}

TEST_F(HostObjects, ManyThreadsWithTheirOwnObjectsKeepCountsExact) {
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t)
        threads.emplace_back([this] {
            for (int i = 0; i < 100; ++i) buildAndReadWidgetArray(classes);
        });
    for (std::thread& thread : threads) thread.join();
}

TEST_F(HostObjects, ElementsOfOneSharedArrayMayBeReadFromManyThreads) {
    Handle array(omCreateOCOSMatrix(1, 1, classes.widget.identity()), false);
    ocos::COSInterfacePtr object = wrapWidget(classes.widget, 8);
    omSetArrayElement(const_cast<oxArray_tag*>(array.get()), 0, object);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&array] {
            for (int i = 0; i < 500; ++i) {
                Handle copy = array;
                omGetArrayElement(copy.get(), 0)->getData(typeid(Widget));
            }
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(referenceCount(object.get()), 2);
}

}  // namespace
