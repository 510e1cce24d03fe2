#include "PageContent.hpp"

#include "Text.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <set>
#include <string_view>

namespace pagegen {

namespace {

using Json = nlohmann::ordered_json;
using namespace std::string_view_literals;

/// Size factors in percent of an average page, with their weights per thousand pages: a long tail
/// of large pages, as real reference pages have.
constexpr std::array<std::pair<std::size_t, std::size_t>, 8> sizeFactors = {
    {{40, 200}, {60, 250}, {85, 250}, {125, 150}, {170, 90}, {250, 40}, {420, 15}, {700, 5}}};

/// The size of a Shape::Largest page, in percent of an average page; lists take their mean lengths at it.
constexpr std::size_t largestFactor = 450;

constexpr std::array deprecatedKeys = {"announce"sv, "warn"sv, "error"sv, "delete"sv, "deny"sv};
constexpr std::array allDeprecationKeys = {"current"sv, "announce"sv, "warn"sv, "error"sv, "delete"sv, "deny"sv};
constexpr std::array allSyntaxKeys = {"usage"sv, "createobject"sv, "n/a"sv};
constexpr std::array methodTypes = {"instancemethod"sv, "instancemethod"sv, "instancemethod"sv, "staticmethod"sv};

class PageBuilder {
public:
    PageBuilder(PageContext const& context, Random random)
        : c_(context), random_(random), text_(random_, context.nonAscii), leaf_(leafOf(context.self.name)) {
        if (c_.shape == Shape::Largest) {
            factor_ = largestFactor;
        } else {
            std::size_t draw = random_.below(1000);
            for (auto const& [factor, weight] : sizeFactors) {
                factor_ = factor;
                if (draw < weight) break;
                draw -= weight;
            }
        }
    }

    std::string build() {
        Json page;
        page["Href"] = c_.self.href;
        page["RefEntities"] = entities();
        page["PackageName"] = c_.package;
        page["Purpose"] = text_.sentence(random_.between(4, 9));
        page["IntroducedIn"] = full() || random_.chance(80'000) ? text_.version() : "";
        page["Description"] = !full() && random_.chance(150'000)
                                  ? std::string()
                                  : text_.description(scaled(random_.between(60, 640)),
                                                      [this] {
                                                          Link const target = link();
                                                          return std::pair(target.name, target.href);
                                                      },
                                                      leaf_);
        bool const thumbnail = full() || random_.chance(30'000);
        page["AppThumbnail"] = {{"FileRef", thumbnail ? "images/" + leaf_ + ".png" : ""},
                                {"Alt", thumbnail ? text_.sentence(random_.between(3, 7)) : ""}};
        page["DeprecationStatus"] = deprecation();
        drawParameters();
        page["SyntaxGroups"] = syntaxGroups();
        page["InputGroups"] = inputGroups();
        page["Outputs"] = outputs();
        page["ClassPropertyGroups"] = classPropertyGroups();
        page["SeeAlso"] = seeAlso();
        page["Examples"] = examples();
        page["Parameters"] = parameters();
        return page.dump(1) + "\n";
    }

private:
    /// One parameter of the documented callable.
    struct Param {
        std::string name;
        std::string defaultValue;  ///< empty when the parameter has none
        bool keyword = false;      ///< goes in the name-value group
    };

    static std::string leafOf(std::string const& name) {
        std::size_t const dot = name.rfind('.');
        return dot == std::string::npos ? name : name.substr(dot + 1);
    }

    bool full() const noexcept { return c_.shape != Shape::Drawn; }
    std::size_t scaled(std::size_t n) const noexcept { return n * factor_ / 100; }

    /// A list length: geometric around `meanHundredths`, scaled with the page; at least 2 when full,
    /// and the scaled mean itself for the largest shape.
    std::size_t count(std::size_t meanHundredths, std::size_t most) {
        if (c_.shape == Shape::Largest) return std::max<std::size_t>(scaled(meanHundredths) / 100, 2);
        std::size_t const n = random_.count(scaled(meanHundredths), std::max<std::size_t>(scaled(most), 1));
        return full() ? std::max<std::size_t>(n, 2) : n;
    }

    std::string syntaxKey() const {
        switch (c_.self.kind) {
            case Kind::Class: return "createobject";
            case Kind::Object: return "n/a";
            default: return "usage";
        }
    }

    std::string drawSyntaxKey() {
        return full() ? std::string(allSyntaxKeys[random_.below(allSyntaxKeys.size())]) : syntaxKey();
    }

    Json entities() {
        auto const entity = [&](std::string_view type, std::string_view function) {
            return Json{{"Name", c_.self.name}, {"RefEntityType", type}, {"FunctionType", function}};
        };
        Json list = Json::array();
        switch (c_.self.kind) {
            case Kind::Function: list.push_back(entity("function", "simple")); break;
            case Kind::Class:
                list.push_back(entity("class", "n/a"));
                list.push_back(entity("constructor", "constructor"));
                break;
            case Kind::Method: list.push_back(entity("method", methodTypes[random_.below(methodTypes.size())])); break;
            case Kind::Object: list.push_back(entity("object", "n/a")); break;
        }
        if (full() && list.size() < 2) list.push_back(entity("property", "staticmethod"));
        return list;
    }

    std::string deprecation() {
        if (full()) return std::string(allDeprecationKeys[random_.below(allDeprecationKeys.size())]);
        return c_.self.deprecated ? std::string(deprecatedKeys[random_.below(deprecatedKeys.size())]) : "current";
    }

    /// A link to another page: one of the targets other than this page, a made-up page when there
    /// are no targets, or (by share) a page that does not exist; now and then with a #fragment.
    Link link() {
        Link target;
        if (random_.chance(c_.brokenLinks) || c_.targets.empty()) {
            target.name = c_.package + "." + (c_.targets.empty() ? "" : "missing_") + text_.identifier();
            target.href = "reference/generated/" + target.name + ".html";
        } else {
            std::size_t index = random_.below(c_.targets.size());
            if (c_.targets[index].href == c_.self.href && c_.targets.size() > 1) index = (index + 1) % c_.targets.size();
            target = c_.targets[index];
        }
        if (random_.chance(150'000)) target.href += "#" + text_.identifier();
        return target;
    }

    std::string valueText(std::size_t meanChars) {
        std::size_t chars = random_.between(meanChars / 5, meanChars * 8 / 5);
        if (random_.chance(40'000)) chars *= 4;  // now and then a long one
        return text_.sentences(chars);
    }

    Json values(std::size_t meanHundredths, std::size_t most) {
        Json list = Json::array();
        std::size_t const n = full()                     ? random_.between(1, 3)
                              : random_.chance(70'000) ? 0
                                                       : 1 + random_.count(meanHundredths, most - 1);
        for (std::size_t i = 0; i < n; ++i) list.push_back(text_.typeName());
        return list;
    }

    std::string defaultValue() {
        switch (random_.below(5)) {
            case 0: return "None";
            case 1: return std::to_string(random_.below(10));
            case 2: return "'" + text_.word() + "'";
            case 3: return "True";
            default: return "False";
        }
    }

    std::string ownFragment(std::string const& what) { return "#" + c_.self.name + "-" + what; }

    /// The documented callable's parameters; none for objects.
    void drawParameters() {
        if (c_.self.kind == Kind::Object && !full()) return;
        std::size_t const n = full() ? std::max<std::size_t>(count(300, 9), 4)
                              : random_.chance(130'000) ? 0
                                                        : 1 + count(190, 8);
        bool const keywords = full() || random_.chance(300'000);
        std::set<std::string> seen;
        for (std::size_t i = 0; i < n; ++i) {
            Param param{text_.identifier(), "", keywords && i >= (n + 1) / 2};
            if (!seen.insert(param.name).second) continue;
            if (param.keyword || random_.chance(250'000)) param.defaultValue = defaultValue();
            params_.push_back(std::move(param));
        }
    }

    Json syntaxGroups() {
        Json groups = Json::array();
        std::size_t const groupCount = full() ? 2 : 1;
        for (std::size_t g = 0; g < groupCount; ++g) {
            Json syntaxes = Json::array();
            std::string const callee = c_.self.kind == Kind::Method ? "obj." + leaf_ : leaf_;
            std::string arguments;
            for (std::size_t i = 0; i < params_.size(); ++i) {
                if (i > 0) arguments += ", ";
                arguments += params_[i].name;
                if (!params_[i].defaultValue.empty()) arguments += "=" + params_[i].defaultValue;
                if (i < 5 || i + 1 == params_.size()) syntaxes.push_back(callee + "(" + arguments + ")");
            }
            if (full() && syntaxes.empty()) syntaxes.push_back(callee + "()");
            groups.push_back(
                {{"Title", g == 0 ? "Syntax" : "Other Forms"}, {"SyntaxType", drawSyntaxKey()}, {"Syntaxes", syntaxes}});
        }
        return groups;
    }

    Json input(Param const& param) {
        return {{"Name", param.name},
                {"Purpose", valueText(105)},
                {"Values", values(40, 5)},
                {"Href", random_.chance(800'000) ? ownFragment(param.name) : link().href},
                {"SyntaxType", drawSyntaxKey()},
                {"DefaultValue", param.defaultValue.empty() && full() ? defaultValue() : param.defaultValue},
                {"IsNameValuePair", param.keyword}};
    }

    Json inputGroups() {
        Json groups = Json::array();
        Json positional = Json::array();
        Json keyword = Json::array();
        for (Param const& param : params_) (param.keyword ? keyword : positional).push_back(input(param));
        if (!positional.empty()) groups.push_back({{"Title", "Input Arguments"}, {"Inputs", positional}});
        if (!keyword.empty()) groups.push_back({{"Title", "Name-Value Arguments"}, {"Inputs", keyword}});
        return groups;
    }

    Json outputs() {
        Json list = Json::array();
        std::size_t const n = full() ? count(100, 4) : random_.chance(800'000) ? 1 + random_.count(8, 3) : 0;
        for (std::size_t i = 0; i < n; ++i) {
            std::string const name = i == 0 ? "out" : text_.identifier();
            list.push_back({{"Name", name},
                            {"Purpose", valueText(90)},
                            {"Values", values(20, 3)},
                            {"Href", ownFragment(name)},
                            {"SyntaxType", drawSyntaxKey()}});
        }
        return list;
    }

    /// Name, Purpose, Values, Href and DefaultValue: a class property or a name-value parameter.
    Json described(std::string const& fragmentKind) {
        std::string const name = text_.identifier();
        return {{"Name", name},
                {"Purpose", valueText(80)},
                {"Values", values(30, 3)},
                {"Href", ownFragment(fragmentKind + "-" + name)},
                {"DefaultValue", full() || random_.chance(300'000) ? defaultValue() : ""}};
    }

    Json classPropertyGroups() {
        Json groups = Json::array();
        bool const present = full() || (c_.self.kind == Kind::Class && random_.chance(400'000));
        if (!present) return groups;
        std::size_t const groupCount = full() ? 2 : 1;
        for (std::size_t g = 0; g < groupCount; ++g) {
            Json properties = Json::array();
            std::size_t const n = 1 + count(400, 4);
            for (std::size_t i = 0; i < n; ++i) properties.push_back(described("property"));
            groups.push_back({{"Title", g == 0 ? "Properties" : "Attributes"}, {"Properties", properties}});
        }
        return groups;
    }

    Json seeAlso() {
        Json list = Json::array();
        std::size_t const n = count(235, 12);
        for (std::size_t i = 0; i < n; ++i) {
            Link const target = link();
            list.push_back({{"Name", target.name}, {"Url", target.href}});
        }
        return list;
    }

    Json examples() {
        Json list = Json::array();
        std::size_t const n = count(146, 12);
        for (std::size_t i = 0; i < n; ++i) {
            list.push_back({{"Title", full() || random_.chance(600'000) ? text_.sentence(random_.between(4, 12)) : ""},
                            {"Url", c_.self.href + "#example-" + std::to_string(i + 1)},
                            {"OpenCommand", text_.codeLine(leaf_)}});
        }
        return list;
    }

    Json parameters() {
        Json list = Json::array();
        std::size_t const n = full() ? count(200, 6) : random_.chance(2'000) ? random_.between(1, 6) : 0;
        for (std::size_t i = 0; i < n; ++i) list.push_back(described("parameter"));
        return list;
    }

    PageContext const& c_;
    Random random_;
    Text text_;
    std::string leaf_;            ///< last component of the entity name
    std::size_t factor_ = 100;    ///< size in percent of an average page
    std::vector<Param> params_;   ///< drawn once, shared by syntaxes and inputs
};

}  // namespace

std::string pageJson(PageContext const& context, Random random) { return PageBuilder(context, random).build(); }

}  // namespace pagegen
