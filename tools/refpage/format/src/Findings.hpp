// Problems found while reading a page, kept with their text offsets until the
// reading ends, then given lines and columns in one forward walk over the text.
#pragma once

#include <fmt/format.h>

#include <cstddef>
#include <limits>
#include <refpage/format/PageError.hpp>
#include <refpage/format/Parser.hpp>
#include <refpage/support/TextPosition.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace refpage {

/// A problem found while reading, before its position is known.
struct Finding {
    PageError error;
    std::size_t offset;
};

/// Errors or warnings of one page, at most maxReported of them kept.
class Findings {
public:
    static constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

    /// The index of the kept finding, or none when it was left out.
    std::size_t add(std::string_view source, std::string path, std::string message, std::size_t offset) {
        if (kept_.size() >= maxReported) {
            if (omitted_++ == 0) firstOmitted_ = offset;
            return none;
        }
        kept_.push_back(Finding{PageError{std::string(source), std::move(path), std::move(message)}, offset});
        return kept_.size() - 1;
    }
    std::vector<Finding>& kept() { return kept_; }
    /// True when the next finding will be left out.
    bool full() const { return kept_.size() >= maxReported; }
    void clear() {
        kept_.clear();
        omitted_ = 0;
    }

    /// The findings with their positions, and one more saying how many were left out.
    PageErrors resolve(std::string_view source, Locator& locator) {
        PageErrors errors;
        errors.reserve(kept_.size() + 1);
        for (Finding& finding : kept_) {
            TextPosition const position = locator.at(finding.offset);
            finding.error.line = position.line;
            finding.error.column = position.column;
            errors.push_back(std::move(finding.error));
        }
        if (omitted_ != 0) {
            TextPosition const position = locator.at(firstOmitted_);
            errors.push_back(PageError{std::string(source), {}, fmt::format("{} more not listed", omitted_),
                                       position.line, position.column});
        }
        return errors;
    }

private:
    std::vector<Finding> kept_;
    std::size_t omitted_ = 0;
    std::size_t firstOmitted_ = 0;
};

}  // namespace refpage
