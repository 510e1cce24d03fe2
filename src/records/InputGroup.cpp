#include <reference/property/InputGroup.hpp>

#include "bridge/ClassIdentity.hpp"
#include "bridge/CopyInPlace.hpp"
#include "bridge/ObjectArray.hpp"
#include "records/TextEquality.hpp"

#include <reference/utils/Properties.hpp>

namespace reference::property {

InputGroup::~InputGroup() = default;

std::u16string const& InputGroup::getTitle() const { return title; }
std::vector<Input> const& InputGroup::getInputs() const { return inputs; }

std::u16string const& InputGroup::getTitleProperty() const { return title; }
void InputGroup::setTitleProperty(std::u16string const* value) { utils::setStringProperty(title, value); }

oxArray_tag const* InputGroup::getInputsProperty() const { return bridge::accessObjectVector(inputsCache, inputs); }
void InputGroup::setInputsProperty(oxArray_tag const* value) { bridge::setObjectVector(value, inputsCache, inputs); }

bool InputGroup::operator==(InputGroup const& other) const {
    return records::sameText(title, other.getTitle()) && inputs == other.getInputs();
}

InputGroup InputGroup::copy() const {
    InputGroup result;
    result.title = title;
    result.inputs = bridge::copyEach(inputs);
    return result;
}

char const* InputGroup::getOCOSNamespaceName() noexcept { return bridge::hostNamespace; }
char const* InputGroup::getOCOSClassName() noexcept { return "InputGroup"; }

}  // namespace reference::property
