#include <algorithm>
#include <refpage/support/TextPosition.hpp>

namespace refpage {

TextPosition Locator::at(std::size_t offset) noexcept {
    offset = std::min(offset, text_.size());
    if (offset < offset_) *this = Locator(text_);
    for (; offset_ < offset; ++offset_) {
        if (text_[offset_] == '\n') {
            ++line_;
            lineStart_ = offset_ + 1;
        }
    }
    return {line_, offset - lineStart_ + 1};
}

}  // namespace refpage
