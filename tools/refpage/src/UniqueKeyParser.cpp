#include "UniqueKeyParser.hpp"

#include <cstddef>
#include <utility>

#include "JsonPath.hpp"

namespace refpage {

namespace {

/// Builds the Json value from parser events, as the library's own builder does,
/// checking each key against the keys its object already holds.
class UniqueKeyBuilder {
public:
    using number_integer_t = Json::number_integer_t;
    using number_unsigned_t = Json::number_unsigned_t;
    using number_float_t = Json::number_float_t;
    using string_t = Json::string_t;
    using binary_t = Json::binary_t;

    explicit UniqueKeyBuilder(std::vector<DuplicateKey>& duplicates) : duplicates_(duplicates) {}

    Json& result() { return root_; }

    bool null() { return place(nullptr); }
    bool boolean(bool value) { return place(value); }
    bool number_integer(number_integer_t value) { return place(value); }
    bool number_unsigned(number_unsigned_t value) { return place(value); }
    bool number_float(number_float_t value, string_t const& /*text*/) { return place(value); }
    bool string(string_t& value) { return place(std::move(value)); }
    bool binary(binary_t& value) { return place(Json::binary(std::move(value))); }

    bool start_object(std::size_t /*size*/) {
        stack_.push_back(slot(Json::object()));
        return true;
    }
    bool key(string_t& key) {
        auto& members = stack_.back()->get_ref<Json::object_t&>();
        auto const [member, inserted] = members.emplace(key, nullptr);
        if (!inserted) duplicates_.push_back(DuplicateKey{pathTo(key), key});
        member_ = &member->second;
        return true;
    }
    bool end_object() {
        stack_.pop_back();
        return true;
    }
    bool start_array(std::size_t /*size*/) {
        stack_.push_back(slot(Json::array()));
        return true;
    }
    bool end_array() {
        stack_.pop_back();
        return true;
    }

    /// Rethrows the parser's exception with its own type, position included.
    template <class Exception>
    bool parse_error(std::size_t /*position*/, std::string const& /*token*/, Exception const& error) {
        throw error;
    }

private:
    /// Where the next value goes: the root, the end of the open array, or the member named last.
    Json* slot(Json&& value) {
        if (stack_.empty()) {
            root_ = std::move(value);
            return &root_;
        }
        Json& container = *stack_.back();
        if (container.is_array()) {
            container.push_back(std::move(value));
            return &container.back();
        }
        *member_ = std::move(value);
        return member_;
    }

    template <class Value>
    bool place(Value&& value) {
        slot(Json(std::forward<Value>(value)));
        return true;
    }

    /// The JSON pointer of `key` in the innermost open object; walks the open containers,
    /// which is cheap enough for the rare duplicate.
    std::string pathTo(std::string const& key) const {
        std::string path;
        for (std::size_t level = 0; level + 1 < stack_.size(); ++level) {
            Json const& container = *stack_[level];
            Json const* const child = stack_[level + 1];
            if (container.is_array()) {
                path += '/';
                path += std::to_string(container.size() - 1);
                continue;
            }
            for (auto const& [name, value] : container.get_ref<Json::object_t const&>()) {
                if (&value != child) continue;
                appendPathKey(path, name);
                break;
            }
        }
        appendPathKey(path, key);
        return path;
    }

    std::vector<DuplicateKey>& duplicates_;
    Json root_;
    std::vector<Json*> stack_;  ///< open objects and arrays, outermost first
    Json* member_ = nullptr;    ///< the member of the innermost open object named by its last key
};

}  // namespace

Json parseUniqueKeys(std::string_view text, std::vector<DuplicateKey>& duplicates) {
    UniqueKeyBuilder builder(duplicates);
    Json::sax_parse(text.begin(), text.end(), &builder);
    return std::move(builder.result());
}

}  // namespace refpage
