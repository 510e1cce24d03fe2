// Building a parsed page through the host, exactly as the host would: default
// records constructed through the host's public client, then every property
// assigned through its host setter.
#pragma once

#include <reference/property/HostArray.hpp>
#include <refpage/format/Document.hpp>
#include <cstddef>
#include <stdexcept>
#include <string>

namespace refpage {

/// A failure while building, with the JSON pointer and text offset of the value being assigned.
class PageBuildError : public std::runtime_error {
public:
    PageBuildError(std::string path, std::string const& message, std::size_t offset);
    std::string const& path() const noexcept { return path_; }
    std::size_t offset() const noexcept { return offset_; }  ///< of the value in the page text

private:
    std::string path_;
    std::size_t offset_;
};

/// The host object (a 1-by-1 object array, its one reference the caller's) of `node`'s
/// class with every assignment made. On failure throws PageBuildError; everything made
/// so far is released. Running out of memory is a PageBuildError saying "out of memory".
reference::property::HostArrayPtr buildRecord(PageNode const& node);

}  // namespace refpage
