// The paths of a site as a tree of segments, to tell in time linear in a path's
// length whether it is a file, a folder, or lies under a file. Internal to the site.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace refpage {

/// Paths compared exactly as given ('/'-separated; callers fold case first).
class PathTree {
public:
    /// Adds `path` as a file: its last segment is a file, the others folders.
    void addFile(std::string_view path);

    /// True when `path` was added as a file, or is a folder of one added (something is there).
    bool holds(std::string_view path) const;

    /// True when a folder of `path` (a proper prefix ending at a '/') was added as a file.
    bool liesUnderFile(std::string_view path) const;

private:
    struct Node {
        bool file = false;
    };
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    std::size_t child(std::size_t node, std::string_view segment) const;
    std::size_t addChild(std::size_t node, std::string_view segment);
    static std::string key(std::size_t node, std::string_view segment);

    std::vector<Node> nodes_{Node{}};                      ///< [0] is the root
    std::unordered_map<std::string, std::size_t> edges_;  ///< key(parent, segment) -> child
};

}  // namespace refpage
