// The page that `refpage show` shows when given no file (sample/refpage.check.json).
#pragma once

#include <string_view>

namespace refpage {

/// The sample page's JSON text; static storage.
std::string_view samplePage() noexcept;

}  // namespace refpage
