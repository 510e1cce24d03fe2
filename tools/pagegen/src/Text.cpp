#include "Text.hpp"

#include <array>
#include <string_view>

namespace pagegen {

namespace {

using namespace std::string_view_literals;

constexpr std::array onsets = {"b"sv,  "c"sv,  "d"sv,  "f"sv,  "g"sv,  "h"sv,  "k"sv,  "l"sv,  "m"sv,
                               "n"sv,  "p"sv,  "r"sv,  "s"sv,  "t"sv,  "v"sv,  "z"sv,  "br"sv, "cl"sv,
                               "dr"sv, "fl"sv, "gr"sv, "pl"sv, "st"sv, "tr"sv, "sh"sv, "ch"sv, ""sv};
constexpr std::array vowels = {"a"sv, "e"sv, "i"sv, "o"sv, "u"sv, "a"sv, "e"sv, "o"sv, "ai"sv, "ea"sv, "ou"sv};
constexpr std::array codas = {""sv, ""sv, ""sv, "n"sv, "r"sv, "s"sv, "t"sv, "l"sv, "m"sv, "x"sv, "nd"sv, "rt"sv};

constexpr std::array baseTypes = {"int"sv,    "float"sv, "bool"sv,       "str"sv,      "None"sv,
                                  "array"sv,  "dict"sv,  "array_like"sv, "callable"sv, "scalar"sv,
                                  "object"sv, "bytes"sv, "path"sv,       "iterator"sv};
constexpr std::array typeForms = {"{}"sv, "{}"sv, "{}"sv, "sequence of {}"sv, "tuple of {}"sv, "list of {}"sv};

constexpr std::array exotic = {
    "数组"sv,           // CJK
    "配列の要素"sv,     // CJK with kana
    "λ-form"sv,         // Greek
    "Ωmega"sv,          // Greek capital
    "cafe\u0301"sv,     // combining acute accent
    "n\u0303o"sv,       // combining tilde
    "\U0001F9EE"sv,     // abacus emoji, beyond the BMP
    "\U0001F4C8up"sv,   // chart emoji
    "stra\u00dfe"sv,    // precomposed sharp s
    "\u2211sum"sv,      // n-ary summation
};

}  // namespace

std::string Text::word() {
    std::string result;
    std::size_t const syllables = random_.between(1, 3) + (random_.chance(300'000) ? 1 : 0);
    for (std::size_t i = 0; i < syllables; ++i) {
        result += onsets[random_.below(onsets.size())];
        result += vowels[random_.below(vowels.size())];
        if (i + 1 == syllables || random_.chance(250'000)) result += codas[random_.below(codas.size())];
    }
    return result;
}

std::string Text::identifier() { return random_.chance(250'000) ? word() + "_" + word() : word(); }

std::string Text::className() {
    std::string name = word();
    name[0] = static_cast<char>(name[0] - 'a' + 'A');
    return name;
}

std::string Text::typeName() {
    std::string_view const form = typeForms[random_.below(typeForms.size())];
    std::string_view const base = baseTypes[random_.below(baseTypes.size())];
    std::string result(form);
    return result.replace(result.find("{}"), 2, base);
}

std::string Text::exoticWord() { return std::string(exotic[random_.below(exotic.size())]); }

std::string Text::sentence(std::size_t words) {
    bool const foreign = random_.chance(nonAscii_);
    std::size_t const foreignAt = random_.below(words);
    std::string result;
    for (std::size_t i = 0; i < words; ++i) {
        if (i > 0) result += random_.chance(80'000) ? ", " : " ";
        if (foreign && i == foreignAt) {
            result += exoticWord();
        } else if (random_.chance(60'000)) {
            result += "`" + identifier() + "`";
        } else {
            result += word();
        }
    }
    if (!result.empty() && result[0] >= 'a' && result[0] <= 'z') result[0] = static_cast<char>(result[0] - 'a' + 'A');
    return result + ".";
}

std::string Text::sentences(std::size_t chars) {
    std::string result;
    do {
        if (!result.empty()) result += ' ';
        result += sentence(random_.between(4, 16));
    } while (result.size() < chars);
    return result;
}

std::string Text::description(std::size_t chars, std::function<std::pair<std::string, std::string>()> const& link,
                              std::string const& stem) {
    constexpr std::size_t width = 75;
    std::string result;
    std::size_t figures = 0;
    auto const newParagraph = [&] {
        if (!result.empty()) result += "\n\n";
    };
    while (result.size() < chars) {
        std::size_t const kind = random_.below(20);
        newParagraph();
        if (kind < 2) {  // a fenced example session
            std::size_t const lines = random_.between(1, 4);
            result += "```python\n";
            for (std::size_t i = 0; i < lines; ++i) result += (i == 0 ? ">>> " : "... ") + codeLine(word()) + "\n";
            result += "```";
        } else if (kind < 4) {  // a bulleted list whose items continue on indented lines
            std::size_t const items = random_.between(2, 4);
            for (std::size_t i = 0; i < items; ++i) {
                if (i > 0) result += '\n';
                result += "- " + sentence(random_.between(5, 9));
                if (random_.chance(500'000)) result += "\n  " + sentence(random_.between(4, 8));
            }
        } else if (kind == 4 && random_.chance(400'000)) {  // a table of names and meanings
            std::size_t const rows = random_.between(2, 4);
            result += "| Name | Meaning |\n|:-----|:--------|";
            for (std::size_t i = 0; i < rows; ++i) result += "\n| `" + identifier() + "` | " + sentence(random_.between(3, 7)) + " |";
        } else if (kind == 5 && random_.chance(300'000)) {  // a figure
            result += "![" + sentence(random_.between(3, 6)) + "](images/" + stem + "-" + std::to_string(++figures) + ".png)";
        } else {  // a paragraph broken into lines, now and then with emphasis and a link
            std::string text = sentences(random_.between(60, 400));
            if (random_.chance(300'000)) {
                std::size_t const space = text.find(' ', text.size() / 3);
                std::size_t const next = space == std::string::npos ? space : text.find(' ', space + 1);
                if (next != std::string::npos && text.find_first_of("`*.", space + 1) > next)
                    text = text.substr(0, space + 1) + "*" + text.substr(space + 1, next - space - 1) + "*" + text.substr(next);
            }
            if (link && random_.chance(400'000)) {
                auto const [name, href] = link();
                if (!href.empty()) text += " See [" + name + "](" + href + ").";
            }
            std::size_t column = 0;
            std::size_t start = 0;
            while (start < text.size()) {
                std::size_t end = text.find(' ', start);
                if (end == std::string::npos) end = text.size();
                std::size_t const length = end - start;
                if (column > 0 && column + 1 + length > width) {
                    result += '\n';
                    column = 0;
                } else if (column > 0) {
                    result += ' ';
                    ++column;
                }
                result.append(text, start, length);
                column += length;
                start = end + 1;
            }
        }
    }
    return result;
}

std::string Text::codeLine(std::string const& callee) {
    std::string call = callee + "(" + word();
    std::size_t const more = random_.below(3);
    for (std::size_t i = 0; i < more; ++i)
        call += random_.chance(500'000) ? ", " + std::to_string(random_.below(100)) : ", " + word() + "=" + word();
    call += ")";
    return random_.chance(500'000) ? word() + " = " + call : call;
}

std::string Text::version() {
    return std::to_string(random_.between(0, 3)) + "." + std::to_string(random_.below(30)) + "." +
           std::to_string(random_.below(5));
}

}  // namespace pagegen
