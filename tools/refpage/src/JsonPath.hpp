// The JSON pointer of the value being read, kept as one string that grows and
// shrinks with the walk.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace refpage {

/// Appends "/" and `key` to `path`, escaping "~" and "/" as a JSON pointer does.
inline void appendPathKey(std::string& path, std::string_view key) {
    path += '/';
    for (char const c : key) {
        if (c == '~')
            path += "~0";
        else if (c == '/')
            path += "~1";
        else
            path += c;
    }
}

/// Appends one segment to `path` for its lifetime.
class PathSegment {
public:
    PathSegment(std::string& path, std::string_view key) : path_(path), size_(path.size()) {
        appendPathKey(path_, key);
    }
    PathSegment(std::string& path, std::size_t index) : path_(path), size_(path.size()) {
        path_ += '/';
        path_ += std::to_string(index);
    }
    PathSegment(PathSegment const&) = delete;
    PathSegment& operator=(PathSegment const&) = delete;
    ~PathSegment() { path_.resize(size_); }

private:
    std::string& path_;
    std::size_t size_;
};

}  // namespace refpage
