#include <refpage/format/Digest.hpp>

#include "RecordViews.hpp"

namespace refpage {

std::size_t valuesDigest(oxArray_tag const* page) {
    std::size_t digest = 0;
    digestValues(hostRecord(page), digest);
    return digest;
}

std::size_t valuesDigest(PageNode const& root) {
    std::size_t digest = 0;
    digestValues(NodeRecord(root), digest);
    return digest;
}

}  // namespace refpage
