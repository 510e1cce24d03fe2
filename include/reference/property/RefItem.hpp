// One documentation reference page: the root of the record tree. Owns every
// record in it by value and shares none with other records or host objects.
#pragma once

#include <reference/property/AppThumbnail.hpp>
#include <reference/property/ClassPropertyGroup.hpp>
#include <reference/property/DeprecationStatus.hpp>
#include <reference/property/Example.hpp>
#include <reference/property/Export.hpp>
#include <reference/property/HostArray.hpp>
#include <reference/property/InputGroup.hpp>
#include <reference/property/Output.hpp>
#include <reference/property/Parameter.hpp>
#include <reference/property/RefEntity.hpp>
#include <reference/property/SeeAlso.hpp>
#include <reference/property/SyntaxGroup.hpp>

#include <string>
#include <vector>

namespace reference::property {

class REFERENCE_PROPERTY_API RefItem {
public:
    std::u16string const& getHref() const;
    std::vector<RefEntity> const& getRefEntities() const;
    std::u16string const& getPackageName() const;
    std::u16string const& getPurpose() const;
    std::u16string const& getIntroduced() const;
    std::u16string const& getDescription() const;
    /// Always present; empty strings until set.
    AppThumbnail const& getAppThumbnail() const;
    DeprecationStatus::Value getDeprecationStatus() const;
    std::vector<SyntaxGroup> const& getSyntaxGroups() const;
    std::vector<InputGroup> const& getInputGroups() const;
    std::vector<Output> const& getOutputs() const;
    std::vector<ClassPropertyGroup> const& getClassPropertyGroups() const;
    std::vector<SeeAlso> const& getSeeAlsoInfo() const;
    std::vector<Example> const& getExamples() const;
    std::vector<Parameter> const& getParameters() const;

    /// Host string properties.
    std::u16string const& getHrefProperty() const;
    void setHrefProperty(std::u16string const* value);
    std::u16string const& getPackageNameProperty() const;
    void setPackageNameProperty(std::u16string const* value);
    std::u16string const& getPurposeProperty() const;
    void setPurposeProperty(std::u16string const* value);
    std::u16string const& getIntroducedInProperty() const;
    void setIntroducedInProperty(std::u16string const* value);
    std::u16string const& getDescriptionProperty() const;
    void setDescriptionProperty(std::u16string const* value);

    /// Host enumeration property (see RefEntity for the rule).
    oxArray_tag const* getDeprecationStatusProperty() const;
    void setDeprecationStatusProperty(oxArray_tag const* value);

    /// Host object-array properties. A getter returns the cached 1-by-N array of host
    /// objects (the thumbnail: one scalar object), built from the field on first use and
    /// borrowed until the property is set again or the page dies. A setter ignores null,
    /// stores copies of the given records, then caches a fresh array built from them.
    oxArray_tag const* getRefEntitiesProperty() const;
    void setRefEntitiesProperty(oxArray_tag const* value);
    /// The setter takes element 0 of the array it is given.
    oxArray_tag const* getAppThumbnailProperty() const;
    void setAppThumbnailProperty(oxArray_tag const* value);
    oxArray_tag const* getSyntaxGroupsProperty() const;
    void setSyntaxGroupProperty(oxArray_tag const* value);
    oxArray_tag const* getInputGroupsProperty() const;
    void setInputGroupsProperty(oxArray_tag const* value);
    oxArray_tag const* getOutputsProperty() const;
    void setOutputsProperty(oxArray_tag const* value);
    oxArray_tag const* getClassPropertyGroupsProperty() const;
    void setClassPropertyGroupsProperty(oxArray_tag const* value);
    oxArray_tag const* getSeeAlsoProperty() const;
    void setSeeAlsoProperty(oxArray_tag const* value);
    oxArray_tag const* getExamplesProperty() const;
    void setExamplesProperty(oxArray_tag const* value);
    oxArray_tag const* getParametersProperty() const;
    void setParametersProperty(oxArray_tag const* value);

    /// Compares the fifteen fields in declaration order, stopping at the first difference.
    bool operator==(RefItem const& other) const;
    /// Deep copy through every element's own copy(); all ten cache slots of the result are empty.
    /// It shares no record with the source, only cached arrays of numbers and texts that nothing
    /// changes in place, so the copy may be used through the host on another thread.
    /// The implicit copy constructor and assignment are member-wise instead: they share the
    /// source's cached host arrays and the records inside them, so the source and such copies
    /// are used through the host by one thread at a time.
    RefItem copy() const;

private:
    std::u16string href;                                  ///< link target of the page
    std::vector<RefEntity> refEntities;                   ///< entities the page documents
    std::u16string packageName;                           ///< package of the documented item
    std::u16string purpose;                               ///< one-line purpose
    std::u16string introducedIn;                          ///< release in which the item was introduced
    std::u16string description;                           ///< description text
    AppThumbnail appThumbnail;                            ///< the page's thumbnail, always present
    DeprecationStatus::Value deprecationStatus = DeprecationStatus::getDefaultValue();  ///< deprecation state
    std::vector<SyntaxGroup> syntaxGroups;                ///< syntax groups, in page order
    std::vector<InputGroup> inputGroups;                  ///< groups of inputs
    std::vector<Output> outputs;                          ///< outputs
    std::vector<ClassPropertyGroup> classPropertyGroups;  ///< class-property groups
    std::vector<SeeAlso> seeAlso;                         ///< see-also links
    std::vector<Example> examples;                        ///< examples
    std::vector<Parameter> parameters;                    ///< name-value parameters

    // Host arrays standing for the fields above; each empty until its first get or set.
    mutable HostArrayPtr refEntitiesCache;
    mutable HostArrayPtr appThumbnailCache;
    mutable HostArrayPtr deprecationStatusCache;
    mutable HostArrayPtr syntaxGroupsCache;
    mutable HostArrayPtr inputGroupsCache;
    mutable HostArrayPtr outputsCache;
    mutable HostArrayPtr classPropertyGroupsCache;
    mutable HostArrayPtr seeAlsoCache;
    mutable HostArrayPtr examplesCache;
    mutable HostArrayPtr parametersCache;
};

}  // namespace reference::property
