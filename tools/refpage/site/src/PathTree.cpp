#include "PathTree.hpp"

#include <cstring>

namespace refpage {

namespace {

/// Calls `visit(segment, last)` for each '/'-separated segment of `path`, in order, until it returns false.
template <class Visit>
void forEachSegment(std::string_view path, Visit&& visit) {
    std::size_t start = 0;
    for (;;) {
        std::size_t const slash = path.find('/', start);
        bool const last = slash == std::string_view::npos;
        if (!visit(path.substr(start, last ? std::string_view::npos : slash - start), last) || last) return;
        start = slash + 1;
    }
}

}  // namespace

std::string PathTree::key(std::size_t node, std::string_view segment) {
    std::string joined(sizeof node, '\0');
    std::memcpy(joined.data(), &node, sizeof node);
    joined.append(segment);
    return joined;
}

std::size_t PathTree::child(std::size_t node, std::string_view segment) const {
    auto const found = edges_.find(key(node, segment));
    return found == edges_.end() ? none : found->second;
}

std::size_t PathTree::addChild(std::size_t node, std::string_view segment) {
    auto const [at, added] = edges_.emplace(key(node, segment), nodes_.size());
    if (added) nodes_.emplace_back();
    return at->second;
}

void PathTree::addFile(std::string_view path) {
    std::size_t node = 0;
    forEachSegment(path, [&](std::string_view segment, bool) {
        node = addChild(node, segment);
        return true;
    });
    nodes_[node].file = true;
}

bool PathTree::holds(std::string_view path) const {
    std::size_t node = 0;
    forEachSegment(path, [&](std::string_view segment, bool) {
        node = child(node, segment);
        return node != none;
    });
    return node != none;
}

bool PathTree::liesUnderFile(std::string_view path) const {
    std::size_t node = 0;
    bool under = false;
    forEachSegment(path, [&](std::string_view segment, bool last) {
        if (last) return false;
        node = child(node, segment);
        if (node == none) return false;
        under = nodes_[node].file;
        return !under;
    });
    return under;
}

}  // namespace refpage
