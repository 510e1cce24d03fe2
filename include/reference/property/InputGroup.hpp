// A titled group of the inputs of a documented function.
#pragma once

#include <reference/property/Export.hpp>
#include <reference/property/HostArray.hpp>
#include <reference/property/Input.hpp>

#include <string>
#include <vector>

namespace reference::property {

class REFERENCE_PROPERTY_API InputGroup {
public:
    InputGroup() = default;
    /// Member-wise, as is assignment: the copy shares the source's cached Input array and the Input
    /// records inside it, so the source and such copies are used through the host by one thread at a time.
    InputGroup(InputGroup const&) = default;
    InputGroup(InputGroup&&) = default;
    InputGroup& operator=(InputGroup const&) = default;
    InputGroup& operator=(InputGroup&&) = default;
    ~InputGroup();

    std::u16string const& getTitle() const;
    std::vector<Input> const& getInputs() const;

    /// Host string property over title.
    std::u16string const& getTitleProperty() const;
    void setTitleProperty(std::u16string const* value);
    /// Host object-array property over inputs: a 1-by-N array of Input objects,
    /// built once and cached; borrowed until the property is set again or the group dies.
    oxArray_tag const* getInputsProperty() const;
    void setInputsProperty(oxArray_tag const* value);

    /// Compares title, then inputs (count, then in order); the cache is ignored.
    bool operator==(InputGroup const& other) const;
    /// Copies title and each input through Input::copy(); the copy's inputs cache is empty.
    /// It shares no record with the source, only cached arrays of numbers and texts that nothing
    /// changes in place, so the copy may be used through the host on another thread.
    InputGroup copy() const;

    static char const* getOCOSNamespaceName() noexcept;
    /// "InputGroup".
    static char const* getOCOSClassName() noexcept;

private:
    std::u16string title;              ///< heading of the group
    std::vector<Input> inputs;         ///< the inputs, in page order
    mutable HostArrayPtr inputsCache;  ///< host array of Input objects standing for inputs; empty until first get or set
};

}  // namespace reference::property
