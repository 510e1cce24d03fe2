// Text records: string properties over their members, equality by full length
// and code units in field order, and member-wise copies.
#include <reference/property/AppThumbnail.hpp>
#include <reference/property/Example.hpp>
#include <reference/property/HeaderInfo.hpp>
#include <reference/property/RecordProducer.hpp>
#include <reference/property/SeeAlso.hpp>

#include <gtest/gtest.h>

#include <string>

using namespace reference::property;
using namespace std::string_literals;

namespace {

Example makeExample(std::u16string const& url, std::u16string const& openCommand, std::u16string const& title) {
    Example example;
    example.setUrlProperty(&url);
    example.setOpenCommandProperty(&openCommand);
    example.setTitleProperty(&title);
    return example;
}

SeeAlso makeSeeAlso(std::u16string const& url, std::u16string const& name) {
    SeeAlso link;
    link.setUrlProperty(&url);
    link.setNameProperty(&name);
    return link;
}

}  // namespace

TEST(TextRecords, PropertyGettersReturnTheNativeMembers) {
    AppThumbnail const thumbnail;
    EXPECT_EQ(&thumbnail.getAltProperty(), &thumbnail.getAlt());
    EXPECT_EQ(&thumbnail.getFileRefProperty(), &thumbnail.getFileRef());
    SeeAlso const link;
    EXPECT_EQ(&link.getUrlProperty(), &link.getUrl());
    EXPECT_EQ(&link.getNameProperty(), &link.getName());
    Example const example;
    EXPECT_EQ(&example.getUrlProperty(), &example.getUrl());
    EXPECT_EQ(&example.getOpenCommandProperty(), &example.getOpenCommand());
    EXPECT_EQ(&example.getTitleProperty(), &example.getTitle());
    HeaderInfo const header;
    EXPECT_EQ(&header.getProductNameProperty(), &header.getProductName());
    EXPECT_EQ(&header.getHelpFolderProperty(), &header.getHelpFolder());
    EXPECT_EQ(&header.getHelpLocationProperty(), &header.getHelpLocation());
}

TEST(TextEquality, StringsCompareByFullLengthAndEveryCodeUnit) {
    std::u16string const withZero = u"ab\0c"s;
    std::u16string const otherAfterZero = u"ab\0d"s;
    EXPECT_EQ(makeExample(u"", u"", withZero), makeExample(u"", u"", withZero));
    EXPECT_FALSE(makeExample(u"", u"", withZero) == makeExample(u"", u"", otherAfterZero));
    EXPECT_FALSE(makeExample(u"", u"", withZero) == makeExample(u"", u"", u"ab"));
    EXPECT_FALSE(makeExample(u"", u"", u"Title") == makeExample(u"", u"", u"title"));
    EXPECT_FALSE(makeExample(u"", u"", u"title") == makeExample(u"", u"", u"title\u00e9"));
    EXPECT_FALSE(makeExample(u"", u"", u"\xffff") == makeExample(u"", u"", u"\x0001"));
}

TEST(TextEquality, EveryFieldTakesPart) {
    Example const example = makeExample(u"u", u"o", u"t");
    EXPECT_FALSE(example == makeExample(u"U", u"o", u"t"));
    EXPECT_FALSE(example == makeExample(u"u", u"O", u"t"));
    EXPECT_FALSE(example == makeExample(u"u", u"o", u"T"));
    EXPECT_FALSE(makeSeeAlso(u"a", u"n") == makeSeeAlso(u"b", u"n"));
    EXPECT_FALSE(makeSeeAlso(u"a", u"n") == makeSeeAlso(u"a", u"m"));

    AppThumbnail left, right;
    EXPECT_EQ(left, right);
    std::u16string const alt = u"alt";
    right.setAltProperty(&alt);
    EXPECT_FALSE(left == right);
}

TEST(TextCopies, CopiesEqualTheirSourceAndOwnTheirText) {
    Example const example = makeExample(u"u", u"o", u"t");
    Example copy = example.copy();
    EXPECT_EQ(copy, example);
    std::u16string const changed = u"changed";
    copy.setTitleProperty(&changed);
    EXPECT_EQ(example.getTitle(), u"t");

    SeeAlso const link = makeSeeAlso(u"url", u"name");
    EXPECT_EQ(link.getUrl(), u"url");
    EXPECT_EQ(link.copy(), link);
    AppThumbnail thumbnail;
    std::u16string const file = u"thumb.png";
    thumbnail.setFileRefProperty(&file);
    EXPECT_EQ(thumbnail.copy(), thumbnail);
}

TEST(HeaderInfoRecord, BaseCodeSurvivesHostSettersAndCopies) {
    HeaderInfo header = RecordProducer::makeHeaderInfo(u"product", u"BASE", u"folder", u"location");
    std::u16string const product = u"other product", folder = u"other folder", location = u"other location";
    header.setProductNameProperty(&product);
    header.setHelpFolderProperty(&folder);
    header.setHelpLocationProperty(&location);
    EXPECT_EQ(header.getBaseCode(), u"BASE");

    HeaderInfo const copy = header.copy();
    EXPECT_EQ(copy.getProductName(), product);
    EXPECT_EQ(copy.getBaseCode(), u"BASE");
    EXPECT_EQ(copy.getHelpFolder(), folder);
    EXPECT_EQ(copy.getHelpLocation(), location);
}
