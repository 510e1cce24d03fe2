// The library's one error, as the host sees it: its message key, identifier and
// catalog text, copies, and the types it is caught by.
#include "support/HostTest.hpp"
#include "support/HostValues.hpp"

#include <reference/property/RefEntity.hpp>
#include <reference/property/RequireScalar.hpp>

#include <exception>
#include <memory>
#include <string>

using namespace reference::property;
using foundation::core::except::IException;
using foundation::core::except::IMsgIDException;

namespace {

std::string const catalogText = "Value must be a scalar: expected exactly one element.";

class RequireScalarError : public HostTest {
protected:
    /// The error as a setter throws it, given two elements.
    RequireScalar thrownBySetter() {
        RefEntity entity;
        HostArrayPtr const two =
            testvalues::enumObject("ovrin.internal.reference.property.FunctionType", {FunctionType::Simple, 0});
        try {
            entity.setFunctionTypeProperty(two.get());
        } catch (RequireScalar const& error) {
            return error;
        }
        throw std::logic_error("the setter did not throw RequireScalar");
    }
};

}  // namespace

TEST_F(RequireScalarError, CarriesItsCatalogKeyAndIdentifier) {
    RequireScalar const error = thrownBySetter();
    EXPECT_EQ(error.GetBaseMsgIDObj().catalog, "Ovrin:class");
    EXPECT_EQ(error.GetBaseMsgIDObj().key, "RequireScalar");
    EXPECT_TRUE(error.GetBaseMsgIDObj().arguments.empty());
    EXPECT_EQ(error.GetID(), "Ovrin:class:RequireScalar");
}

TEST_F(RequireScalarError, MessageComesFromTheHostCatalog) {
    RequireScalar const error = thrownBySetter();
    EXPECT_EQ(std::string(error.what()), catalogText);
    EXPECT_EQ(std::string(static_cast<std::exception const&>(error).what()), catalogText);
    EXPECT_EQ(error.GetUnicodeMessageTxt(), std::u16string(catalogText.begin(), catalogText.end()));
}

TEST_F(RequireScalarError, CloneAndRethrowKeepTheDynamicTypeAndKey) {
    RequireScalar const error = thrownBySetter();
    std::unique_ptr<IException> const clone(error.clone());
    auto const* const typed = dynamic_cast<RequireScalar const*>(clone.get());
    ASSERT_NE(typed, nullptr);
    EXPECT_EQ(typed->GetID(), error.GetID());
    EXPECT_EQ(typed->GetBaseMsgIDObj().key, "RequireScalar");

    try {
        clone->rethrow();
        FAIL() << "rethrow returned";
    } catch (RequireScalar const& rethrown) {
        EXPECT_EQ(rethrown.GetID(), "Ovrin:class:RequireScalar");
        EXPECT_NE(&rethrown, typed);
    }
}

TEST_F(RequireScalarError, IsCaughtByItsFoundationAndStandardBases) {
    RefEntity entity;
    HostArrayPtr const none = testvalues::enumObject("ovrin.internal.reference.property.RefEntityType", {});
    EXPECT_THROW(entity.setRefEntityTypeProperty(none.get()), IMsgIDException);
    EXPECT_THROW(entity.setRefEntityTypeProperty(none.get()), IException);
    EXPECT_THROW(entity.setRefEntityTypeProperty(none.get()), std::exception);
}
