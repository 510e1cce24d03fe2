// The JSON value type of the page format: objects keep their key order.
#pragma once

#include <nlohmann/json.hpp>

namespace refpage {

using Json = nlohmann::ordered_json;

}  // namespace refpage
