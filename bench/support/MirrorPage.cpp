#include "support/MirrorPage.hpp"

namespace bench {
namespace {

using namespace reference::property;

template <class Text>
Text textOf(std::u16string const& source) {
    if constexpr (std::is_same_v<Text, BlockText>) {
        return BlockText{source};
    } else {
        return source;
    }
}

template <class Text>
std::vector<Text> textsOf(std::vector<std::u16string> const& source) {
    std::vector<Text> texts;
    texts.reserve(source.size());
    for (auto const& text : source) {
        texts.push_back(textOf<Text>(text));
    }
    return texts;
}

template <class Text>
MirrorObjectInfo<Text> infoOf(ObjectInfo const& info) {
    return {textOf<Text>(info.getName()), textOf<Text>(info.getPurpose()), textsOf<Text>(info.getValues()),
            textOf<Text>(info.getHref())};
}

template <class Text, class Record>
MirrorDefaulted<Text> defaultedOf(Record const& record) {
    return {textOf<Text>(record.getDefaultValue()), infoOf<Text>(record)};
}

template <class Mirror, class Source, class Convert>
std::vector<Mirror> mapAll(std::vector<Source> const& source, Convert convert) {
    std::vector<Mirror> result;
    result.reserve(source.size());
    for (auto const& element : source) {
        result.push_back(convert(element));
    }
    return result;
}

template <class Text>
MirrorPage<Text> mirror(RefItem const& page) {
    MirrorPage<Text> result;
    result.href = textOf<Text>(page.getHref());
    result.refEntities = mapAll<MirrorRefEntity<Text>>(page.getRefEntities(), [](RefEntity const& entity) {
        return MirrorRefEntity<Text>{entity.getRefEntityType(), textOf<Text>(entity.getName()),
                                     entity.getFunctionType()};
    });
    result.packageName = textOf<Text>(page.getPackageName());
    result.purpose = textOf<Text>(page.getPurpose());
    result.introducedIn = textOf<Text>(page.getIntroduced());
    result.description = textOf<Text>(page.getDescription());
    result.appThumbnail = {textOf<Text>(page.getAppThumbnail().getFileRef()),
                           textOf<Text>(page.getAppThumbnail().getAlt())};
    result.deprecationStatus = page.getDeprecationStatus();
    result.syntaxGroups = mapAll<MirrorSyntaxGroup<Text>>(page.getSyntaxGroups(), [](SyntaxGroup const& group) {
        return MirrorSyntaxGroup<Text>{textOf<Text>(group.getTitle()), group.getSyntaxType(),
                                       textsOf<Text>(group.getSyntaxes())};
    });
    result.inputGroups = mapAll<MirrorInputGroup<Text>>(page.getInputGroups(), [](InputGroup const& group) {
        return MirrorInputGroup<Text>{
            textOf<Text>(group.getTitle()), mapAll<MirrorInput<Text>>(group.getInputs(), [](Input const& input) {
                return MirrorInput<Text>{input.getSyntaxType(), input.isNameValuePair(),
                                         textOf<Text>(input.getDefaultValue()), infoOf<Text>(input)};
            })};
    });
    result.outputs = mapAll<MirrorOutput<Text>>(page.getOutputs(), [](Output const& output) {
        return MirrorOutput<Text>{output.getSyntaxType(), infoOf<Text>(output)};
    });
    result.classPropertyGroups =
        mapAll<MirrorClassPropertyGroup<Text>>(page.getClassPropertyGroups(), [](ClassPropertyGroup const& group) {
            return MirrorClassPropertyGroup<Text>{
                textOf<Text>(group.getTitle()),
                mapAll<MirrorDefaulted<Text>>(group.getClassProperties(), defaultedOf<Text, ClassProperty>)};
        });
    result.seeAlso = mapAll<MirrorPair<Text>>(page.getSeeAlsoInfo(), [](SeeAlso const& link) {
        return MirrorPair<Text>{textOf<Text>(link.getUrl()), textOf<Text>(link.getName())};
    });
    result.examples = mapAll<MirrorExample<Text>>(page.getExamples(), [](Example const& example) {
        return MirrorExample<Text>{textOf<Text>(example.getUrl()), textOf<Text>(example.getOpenCommand()),
                                   textOf<Text>(example.getTitle())};
    });
    result.parameters = mapAll<MirrorDefaulted<Text>>(page.getParameters(), defaultedOf<Text, Parameter>);
    return result;
}

struct SizeCounter {
    PageSize size;
    void operator()(std::u16string const& text) {
        ++size.strings;
        size.codeUnits += text.size();
    }
    void operator()(std::vector<std::u16string> const& texts) {
        for (auto const& text : texts) {
            (*this)(text);
        }
    }
    void operator()(MirrorObjectInfo<std::u16string> const& info) {
        (*this)(info.name);
        (*this)(info.purpose);
        (*this)(info.values);
        (*this)(info.href);
    }
};

}  // namespace

MirrorPage<std::u16string> mirrorOf(RefItem const& page) { return mirror<std::u16string>(page); }
MirrorPage<BlockText> blockMirrorOf(RefItem const& page) { return mirror<BlockText>(page); }

PageSize sizeOf(RefItem const& page) {
    MirrorPage<std::u16string> const m = mirrorOf(page);
    SizeCounter count;
    for (auto const* text : {&m.href, &m.packageName, &m.purpose, &m.introducedIn, &m.description,
                             &m.appThumbnail.first, &m.appThumbnail.second}) {
        count(*text);
    }
    for (auto const& entity : m.refEntities) count(entity.name);
    for (auto const& group : m.syntaxGroups) {
        count(group.title);
        count(group.syntaxes);
    }
    for (auto const& group : m.inputGroups) {
        count(group.title);
        for (auto const& input : group.inputs) {
            count(input.defaultValue);
            count(input.info);
        }
    }
    for (auto const& output : m.outputs) count(output.info);
    for (auto const& group : m.classPropertyGroups) {
        count(group.title);
        for (auto const& property : group.classProperties) {
            count(property.defaultValue);
            count(property.info);
        }
    }
    for (auto const& link : m.seeAlso) {
        count(link.first);
        count(link.second);
    }
    for (auto const& example : m.examples) {
        count(example.url);
        count(example.openCommand);
        count(example.title);
    }
    for (auto const& parameter : m.parameters) {
        count(parameter.defaultValue);
        count(parameter.info);
    }
    return count.size;
}

}  // namespace bench
