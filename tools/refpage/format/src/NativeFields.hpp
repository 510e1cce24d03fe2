// The native getters of every record class, field by field under the host word
// of the property that reads the same field.
#pragma once

#include <reference/property/RefItem.hpp>

namespace refpage::native {

using namespace reference::property;

/// Each of these calls visit(word, value) for every field of the record, with what its
/// native getter returns (a reference borrowed from the record, or an enumeration value).
template <class Visit>
void visitFields(AppThumbnail const& r, Visit&& visit) {
    visit("FileRef", r.getFileRef());
    visit("Alt", r.getAlt());
}

template <class Visit>
void visitObjectInfo(ObjectInfo const& r, Visit&& visit) {
    visit("Name", r.getName());
    visit("Purpose", r.getPurpose());
    visit("Values", r.getValues());
    visit("Href", r.getHref());
}

template <class Visit>
void visitFields(Input const& r, Visit&& visit) {
    visitObjectInfo(r, visit);
    visit("SyntaxType", r.getSyntaxType());
    visit("DefaultValue", r.getDefaultValue());
    visit("IsNameValuePair", r.isNameValuePair());
}

template <class Visit>
void visitFields(Output const& r, Visit&& visit) {
    visitObjectInfo(r, visit);
    visit("SyntaxType", r.getSyntaxType());
}

template <class Visit>
void visitFields(Parameter const& r, Visit&& visit) {
    visitObjectInfo(r, visit);
    visit("DefaultValue", r.getDefaultValue());
}

template <class Visit>
void visitFields(ClassProperty const& r, Visit&& visit) {
    visitObjectInfo(r, visit);
    visit("DefaultValue", r.getDefaultValue());
}

template <class Visit>
void visitFields(RefEntity const& r, Visit&& visit) {
    visit("Name", r.getName());
    visit("RefEntityType", r.getRefEntityType());
    visit("FunctionType", r.getFunctionType());
}

template <class Visit>
void visitFields(SyntaxGroup const& r, Visit&& visit) {
    visit("Title", r.getTitle());
    visit("SyntaxType", r.getSyntaxType());
    visit("Syntaxes", r.getSyntaxes());
}

template <class Visit>
void visitFields(InputGroup const& r, Visit&& visit) {
    visit("Title", r.getTitle());
    visit("Inputs", r.getInputs());
}

template <class Visit>
void visitFields(ClassPropertyGroup const& r, Visit&& visit) {
    visit("Title", r.getTitle());
    visit("Properties", r.getClassProperties());
}

template <class Visit>
void visitFields(SeeAlso const& r, Visit&& visit) {
    visit("Name", r.getName());
    visit("Url", r.getUrl());
}

template <class Visit>
void visitFields(Example const& r, Visit&& visit) {
    visit("Title", r.getTitle());
    visit("Url", r.getUrl());
    visit("OpenCommand", r.getOpenCommand());
}

template <class Visit>
void visitFields(RefItem const& r, Visit&& visit) {
    visit("Href", r.getHref());
    visit("RefEntities", r.getRefEntities());
    visit("PackageName", r.getPackageName());
    visit("Purpose", r.getPurpose());
    visit("IntroducedIn", r.getIntroduced());
    visit("Description", r.getDescription());
    visit("AppThumbnail", r.getAppThumbnail());
    visit("DeprecationStatus", r.getDeprecationStatus());
    visit("SyntaxGroups", r.getSyntaxGroups());
    visit("InputGroups", r.getInputGroups());
    visit("Outputs", r.getOutputs());
    visit("ClassPropertyGroups", r.getClassPropertyGroups());
    visit("SeeAlso", r.getSeeAlsoInfo());
    visit("Examples", r.getExamples());
    visit("Parameters", r.getParameters());
}

}  // namespace refpage::native
