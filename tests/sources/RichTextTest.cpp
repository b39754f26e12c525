#include "RichText.h"

#include "AppError.h"
#include "RegularFile.h"
#include "Utf8.h"
#include "WhiteSpace.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using RichText::plainText;
using namespace std::string_view_literals;

constexpr const char* unreadable = "Could not read the rich-text document.";
constexpr const char* wrongKind = "This is not a rich-text document.";

/// What is in the group of a document.
std::string textOf(std::string_view content)
{
    return plainText("{\\rtf1\\ansi " + std::string(content) + "}");
}

template <typename Function>
std::string messageOf(Function function)
{
    try {
        function();
    } catch (const AppError& error) {
        return error.message();
    }
    return "no error";
}

class RichTextFileTest : public testing::Test
{
protected:
    std::filesystem::path write(const std::string& name, std::string_view bytes) const
    {
        std::filesystem::path file = folder / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
        return file;
    }

    static std::string messageOfReading(const std::filesystem::path& file)
    {
        return messageOf([&] { RichText::read(file); });
    }

    const QTemporaryDir temporary;
    const std::filesystem::path folder = temporary.path().toStdString();
};

TEST(RichTextTest, ParagraphsLinesPagesAndSectionsEndInLineFeeds)
{
    EXPECT_EQ(textOf("a\\par b\\line c\\page d\\sect e\\column f\\lbr3 g"), "a\nb\nc\nd\ne\nf\ng");
    EXPECT_EQ(textOf("a\\\nb\\\r\nc\\\rd"), "a\nb\nc\nd");
}

TEST(RichTextTest, WhatTheFileSaysOfItsEndStays)
{
    EXPECT_EQ(textOf("a\\par"), "a\n");
    EXPECT_EQ(textOf("a"), "a");
    EXPECT_EQ(textOf(" a \\par\\par "), " a \n\n");
    EXPECT_EQ(plainText("{\\rtf1}"), "");
    EXPECT_EQ(plainText("{\\rtf}"), "");
}

TEST(RichTextTest, LineEndsOfTheFileMeanNothing)
{
    EXPECT_EQ(textOf("on\r\ne wo\nrd\\b\nnext"), "one wordnext");
}

TEST(RichTextTest, AWordTakesOneSpaceWithIt)
{
    EXPECT_EQ(textOf("a\\b b\\b0  c\\i-1d\\i1e"), "ab cde");
    EXPECT_EQ(textOf("a\\unknownword b\\unknown-12345678901234567890 c"), "abc");
}

TEST(RichTextTest, SpecialCharactersAreTheirUnicodeOnes)
{
    EXPECT_EQ(textOf("\\lquote\\rquote\\ldblquote\\rdblquote\\endash\\emdash\\bullet"),
              "\u2018\u2019\u201C\u201D\u2013\u2014\u2022");
    EXPECT_EQ(textOf("\\emspace\\enspace\\qmspace\\zwj\\zwnj\\zwbo\\zwnbo\\ltrmark\\rtlmark"),
              "\u2003\u2002\u2005\u200D\u200C\u200B\u2060\u200E\u200F");
    EXPECT_EQ(textOf("a\\~b\\-c\\_d"), "a\u00A0b\u00ADc\u2011d");
    EXPECT_EQ(textOf("\\{\\\\\\}\\tab\\\t\t"), "{\\}\t\t\t");
}

TEST(RichTextTest, SymbolsWithoutACharacterAreLeftOut)
{
    EXPECT_EQ(textOf("a\\|b\\:c\\'zzd\\'4"), "abczzd4");
}

TEST(RichTextTest, CellsEndInTabsAndRowsInLineFeeds)
{
    EXPECT_EQ(textOf("\\trowd\\cellx9\\intbl a\\cell b\\cell\\row \\trowd c\\cell\\cell\\row"),
              "a\tb\nc\t\n");
    EXPECT_EQ(textOf("{\\trowd a\\cell}{\\row}\\row"), "a\n\n");
}

TEST(RichTextTest, ATableInACellIsShownOnce)
{
    EXPECT_EQ(textOf("a\\nestcell b\\nestcell{\\*\\nesttableprops\\trowd\\cellx9\\nestrow}"
                     "{\\nonesttables\\par not shown}c\\cell d\\cell\\row"),
              "a\tb\nc\td\n");
}

TEST(RichTextTest, WhatIsNotTextIsLeftOut)
{
    for (const char* group : {"{\\fonttbl{\\f0\\fswiss Arial;}}",
                              "{\\colortbl;\\red0\\green0\\blue0;}",
                              "{\\stylesheet{\\s0 Normal;}}",
                              "{\\info{\\title T}{\\author A}}",
                              "{\\pict 00ff}",
                              "{\\header h}",
                              "{\\headerl h}",
                              "{\\footer{\\b f}}",
                              "{\\footerf f}",
                              "{\\footnote n}",
                              "{\\*\\annotation c\\par}",
                              "{\\*\\generator x}",
                              "{\\*\\unheard of{\\par}}",
                              "{\\*\\shppict{\\pict 00}}",
                              "{\\nonshppict{\\pict 00}}",
                              "{\\listtable{\\list x}}",
                              "{\\xe{index}}",
                              "{\\shp{\\*\\shpinst{\\sp{\\sn a}{\\sv b}}}}",
                              "{\\filetbl{\\file x}}",
                              "{\\*\\bkmkstart mark}",
                              "{\\revtbl{Unknown;}}",
                              "{\\*\\b old}"})
        EXPECT_EQ(textOf(std::string("a") + group + "b"), "ab") << group;
}

TEST(RichTextTest, TheMarkOfAnOptionalGroupIsForTheNextWordOnly)
{
    EXPECT_EQ(textOf("a{\\*\\unheard b}c"), "ac");
    EXPECT_EQ(textOf("a{\\*{\\unheard b}}c"), "abc");
    EXPECT_EQ(textOf("a{{\\*}\\unheard b}c"), "abc");
    EXPECT_EQ(textOf("a{\\*\\~\\unheard b}c"), "a\u00A0bc");
    EXPECT_EQ(textOf("a{\\*b\\unheard c}d"), "abcd");
    EXPECT_EQ(textOf("a{\\~\\unheard b}c"), "a\u00A0bc");
}

TEST(RichTextTest, TheMarkOfAnOptionalGroupCountsOnlyAtItsBeginning)
{
    EXPECT_EQ(textOf("{\\f0\\*\\cs7 styled words}"), "styled words");
    EXPECT_EQ(textOf("a{b\\*\\unheard c}d"), "abcd");
    EXPECT_EQ(textOf("a{\\~\\*\\unheard c}d"), "a\u00A0cd");
    EXPECT_EQ(textOf("a{{b}\\*\\unheard c}d"), "abcd");
    EXPECT_EQ(textOf("a\\*\\unheard b"), "ab");
    EXPECT_EQ(textOf("a{\r\n\\*\\unheard b}c"), "ac");
    EXPECT_EQ(textOf("a{\\f0\\*\\pict 00}c"), "ac");
}

TEST(RichTextTest, ListMarkersAreShown)
{
    EXPECT_EQ(textOf("{\\listtext\\pard 1.\\tab}one\\par{\\pntext\\u8226 *\\tab}"
                     "{\\*\\pn\\pnlvlblt{\\pntxtb x}}two"),
              "1.\tone\n\u2022\ttwo");
}

TEST(RichTextTest, AListMarkerHasNoControlCharacters)
{
    EXPECT_EQ(textOf("{\\listtext\\'02\\'00.\\'07)\x01\x1B\x7F\t\\tab}one"), ".)\t\tone");
    EXPECT_EQ(textOf("{\\pntext{\\f1\\u1 ?\\u27 ?\\u155 ?\\u8226 ?}\\tab}\\u7 ?two"),
              "\u2022\t\atwo");
}

TEST(RichTextTest, TheResultsOfFieldsAndObjectsAreShown)
{
    EXPECT_EQ(textOf("a {\\field{\\*\\fldinst HYPERLINK \"https://example.com\"}{\\fldrslt{\\ul "
                     "link}}} b"),
              "a link b");
    EXPECT_EQ(textOf("{\\field{\\fldinst{PAGE}}{\\*\\fldrslt 7}}"), "7");
    EXPECT_EQ(
        textOf("{\\object\\objemb{\\*\\objclass Sheet}{\\*\\objdata 00ff}{\\result{1\\par}}}"),
        "1\n");
}

TEST(RichTextTest, HiddenAndDeletedTextIsLeftOut)
{
    EXPECT_EQ(textOf("a{\\v b\\par\\u8364 ?\\emdash\\cell\\row}c\\v d\\v0 e"), "ace");
    EXPECT_EQ(textOf("a{\\deleted b}c\\deleted d\\deleted0 e"), "ace");
    EXPECT_EQ(textOf("a\\v b\\plain c\\deleted d\\plain e"), "ace");
    EXPECT_EQ(textOf("a\\v1 b\\pard c"), "a");
}

TEST(RichTextTest, OfTwoAlternativesTheUnicodeOneIsRead)
{
    EXPECT_EQ(textOf("a{\\upr{b ?}{\\*\\ud{b \\u8364 ?}}}c"), "ab \u20ACc");
    EXPECT_EQ(textOf("{\\*\\ud{x}}"), "x");
}

TEST(RichTextTest, BinaryDataIsSteppedOver)
{
    EXPECT_EQ(textOf("a{\\pict\\bin5 }}{{\\}b"), "ab");
    EXPECT_EQ(textOf("a\\bin3 }}}b\\bin0 c\\bin d\\bin-5 e"), "abcde");
    EXPECT_EQ(textOf("a\\bin2147483647 b"), "a");
    EXPECT_EQ(textOf("a\\bin99999999999999999999 b"), "a");
}

TEST(RichTextTest, UnicodeStandsInPlaceOfWhatComesAfterIt)
{
    EXPECT_EQ(textOf("\\u8364 ?x\\u8364?x\\u8364\\'80x\\u8364\\emdash x\\u8364\\~x"),
              "\u20ACx\u20ACx\u20ACx\u20ACx\u20ACx");
    EXPECT_EQ(textOf("\\uc0\\u8364 x{\\uc2\\u20013\\'d6\\'d0x\\u20013ab x}\\u8364x"),
              "\u20ACx\u4E2Dx\u4E2D x\u20ACx");
    EXPECT_EQ(textOf("\\uc-3\\u65 x\\uc\\u66 xx"), "AxBx");
}

TEST(RichTextTest, WhatComesAfterUnicodeEndsAtABraceAndSparesParagraphs)
{
    EXPECT_EQ(textOf("{\\uc5\\u65 xy}ab{\\u66}{cd}"), "AabBcd");
    EXPECT_EQ(textOf("\\u65\\par\\u66\\tab\\u67\\b x?"), "A\nB\tC?");
}

TEST(RichTextTest, UnicodeNumbersAreSigned)
{
    EXPECT_EQ(textOf("\\uc0\\u-30050\\u35486\\u-32768"), "\u8A9E\u8A9E\u8000");
    EXPECT_EQ(textOf("\\uc0\\u128512 \\u0\\u65"), "\U0001F600A");
    EXPECT_EQ(textOf("\\uc0\\u99999999 \\u-99999999 \\u1114112"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(textOf("a\\u b"), "ab");
}

TEST(RichTextTest, SurrogatesMakeOneCharacterAndAloneNone)
{
    EXPECT_EQ(textOf("\\u-10179\\'3f\\u-8704\\'3f"), "\U0001F600");
    EXPECT_EQ(textOf("\\uc0{\\u55357}{\\b\\u56832}"), "\U0001F600");
    EXPECT_EQ(textOf("\\uc0\\u55357 x\\u56832 y\\u55357\\u55357\\u56832"),
              "\uFFFDx\uFFFDy\uFFFD\U0001F600");
    EXPECT_EQ(textOf("\\uc0\\u55357\\par\\u55357\\row\\u55357"), "\uFFFD\n\uFFFD\n\uFFFD");
}

TEST(RichTextTest, BytesAreInTheCodePageOfTheDocument)
{
    EXPECT_EQ(textOf("\\'e4\xE4\\'80\\'C4"), "ää€Ä");
    EXPECT_EQ(textOf("\\'80"), "€");
    EXPECT_EQ(textOf("\\ansicpg1251\\'cf\\'f0"), "Пр");
    EXPECT_EQ(plainText("{\\rtf1\\mac\\'8a}"), "ä");
    EXPECT_EQ(plainText("{\\rtf1\\pc\\'84}"), "ä");
    EXPECT_EQ(plainText("{\\rtf1\\pca\\'9d}"), "Ø");
    EXPECT_EQ(textOf("\\ansicpg65001 \xC3\xA4\\'e2\\'82\\'ac"), "ä€");
    EXPECT_EQ(textOf("\\ansicpg4711\\'e4\\ansicpg0\\'e4\\ansicpg-1\\'e4"), "äää");
}

TEST(RichTextTest, BytesAreInTheCodePageOfTheFont)
{
    const std::string fonts = "\\deff1{\\fonttbl{\\f0\\fcharset0 A;}{\\f1\\fcharset204{\\*\\falt "
                              "B;}C;}\\f2\\fcharset238 D;{\\f3\\fcharset204\\cpg1253 E;}{\\f4 "
                              "F;}{\\f5\\fcharset77 G;}{\\f6\\fcharset99 H;}}";
    EXPECT_EQ(textOf(fonts + "\\'cf{\\f0\\'cf}{\\f2\\'cf}\\f3\\'cf\\plain\\'cf"), "ПÏĎΟП");
    EXPECT_EQ(textOf(fonts + "\\f4\\'cf\\f5\\'8a\\f6\\'cf\\f777\\'cf\\f-1\\'cf"), "ÏäÏÏП");
}

TEST(RichTextTest, AFontsNumberHas16Bits)
{
    const std::string fonts = "{\\fonttbl{\\f65535\\fcharset204 A;}{\\f65536\\fcharset204 B;}}";
    EXPECT_EQ(textOf(fonts + "\\f65535\\'cf\\f65536\\'cf"), "ПÏ");
}

TEST(RichTextTest, ACharacterMayHaveSeveralBytesHoweverTheyAreWritten)
{
    const std::string fonts = "{\\fonttbl{\\f0\\fcharset0 A;}{\\f1\\fcharset128 "
                              "B;}{\\f2\\fcharset134 C;}{\\f3\\fcharset129 "
                              "D;}{\\f4\\fcharset136 E;}{\\f5\\fcharset130 F;}{\\f6\\cpg54936 G;}}";
    EXPECT_EQ(textOf(fonts + "\\f1\\'93\\'fa\x96\\'7b\\'83A\\'83\r\n\\'5c\\'95\\\\\xB1"),
              "日本アソ表ｱ");
    EXPECT_EQ(textOf(fonts + "\\f2\\'d6\\'d0\\f3\\'c7\\'d1\\f4\\'a4\\'a4\\'a5\\\\"), "中한中功");
    EXPECT_EQ(textOf(fonts + "\\f5 a\\'d0\\'65\\'8b\xB1z\\f6\\'94\\'39\\'fc\\'36"),
              "a한김z\U0001F600");
}

TEST(RichTextTest, HalfACharacterIsReplaced)
{
    const std::string fonts =
        "{\\fonttbl{\\f1\\fcharset128 B;}{\\f5\\fcharset130 F;}{\\f0\\fcharset0 A;}}";
    EXPECT_EQ(textOf(fonts + "\\f1\\'93\\f0\\'fa"), "\uFFFDú");
    EXPECT_EQ(textOf(fonts + "\\f1 a\\'93\\par\\f5 b\\'d0\\par\\'ff\\'ffc"),
              "a\uFFFD\nb\uFFFD\n\uFFFD\uFFFDc");
    EXPECT_EQ(textOf("\\ansicpg65001 a\\'e2\\'82"), "a\uFFFD");
}

TEST(RichTextTest, SymbolFontsShowWhatTheyLookLike)
{
    const std::string fonts = "{\\fonttbl{\\f0\\fcharset0 Symbol;}{\\f1\\fcharset2 Symbol;}"
                              "{\\f2\\fcharset2 Wingdings;}{\\f3\\fcharset2 Letters;}}";
    EXPECT_EQ(textOf(fonts + "\\f1 a\\'b7 W\\u-3913?\\u-4000?\\'80\\'ff{\\u8364?}"), "α• Ω•‾··€");
    EXPECT_EQ(textOf(fonts + "\\f1\\'7e\\'7f\\'9f\\'a0\\'fe"), "∼··€⎭");
    EXPECT_EQ(textOf(fonts + "\\f2 \\'a7 J\\u-3929?\\u-8182?\\u8226?\\u-4064?\\u-4086?"),
              "• •••• •");
    EXPECT_EQ(textOf(fonts + "\\f0 a\\'b7\\f3 a\\'b7\\u-3913?"), "a·a·•");
}

TEST(RichTextTest, WhatOnlyASymbolFontCanShowIsAMarkWithoutOneToo)
{
    EXPECT_EQ(textOf("\\u-4064?\\u-4063?\\u-3841?\\u-3840?"), "\uF020••\uF100");
    EXPECT_EQ(textOf("{\\fonttbl{\\f2\\fcharset2 Wingdings;}}\\f2\\u-8192?\\u-1793?\\u-1792?"),
              "••\uF900");
}

TEST(RichTextTest, AttachmentsLeaveNothingBehind)
{
    EXPECT_EQ(textOf("a{{\\NeXTGraphic p.png \\width20 \\height20\n}\\'ac}b"), "ab");
    EXPECT_EQ(textOf("a{{\\NeXTGraphic p.png\n}\xAC}b\\'ac"), "ab¬");
    EXPECT_EQ(textOf("a{{\\NeXTGraphic p.png}x\\'ac}{\\pict}\\'ac"), "ax¬¬");
    EXPECT_EQ(textOf("a{{\\NeXTGraphic p.png}{\\'ac}}b"), "a¬b");
}

TEST(RichTextTest, UnbalancedBracesAreTolerated)
{
    EXPECT_EQ(plainText("{\\rtf1 a{b{c"), "abc");
    EXPECT_EQ(plainText("{\\rtf1 a{\\pict 00"), "a");
    EXPECT_EQ(plainText("{\\rtf1 a}}}"), "a");
    EXPECT_EQ(plainText("{\\rtf1 a\\"), "a");
    EXPECT_EQ(plainText("{\\rtf1 a\\'e"), "ae");
}

TEST(RichTextTest, TheDocumentEndsWithItsGroup)
{
    EXPECT_EQ(plainText("{\\rtf1 a}\0 b{\\rtf1 c}"sv), "a");
}

TEST(RichTextTest, AWordThatWouldSkipTheWholeDocumentIsIgnored)
{
    EXPECT_EQ(textOf("a\\header b\\*\\unheard c\\fonttbl d\\upr e"), "abcde");
}

TEST(RichTextTest, BytesOfZeroAreIgnored)
{
    EXPECT_EQ(plainText("{\\rtf1 a\0b\\'00c\\u65\\'00}"sv), "abcA");
}

TEST(RichTextTest, AMarkOrBlanksMayStandInFront)
{
    EXPECT_EQ(plainText("\xEF\xBB\xBF{\\rtf1 a}"), "a");
    EXPECT_EQ(plainText("\xEF\xBB\xBF \r\n\t{\\rtf1 a}"), "a");
}

TEST(RichTextTest, AnotherKindOfFileFailsWithASentence)
{
    for (const char* text :
         {"", "{", "{\\rt", "a", "{\\rtfx1 a}", "{ \\rtf1 a}", "\xFF\xFF", "%PDF", "PK\x03\x04",
          "x{\\rtf1 a}", "\xEF\xBB\xBF", "  ", "{\\rtfa}", "{\\rtfz}", "{\\rtfA}", "{\\rtfZ}"})
        EXPECT_EQ(messageOf([&] { plainText(text); }), wrongKind) << text;
}

TEST(RichTextTest, TheFirstWordEndsWithWhatIsNoLetter)
{
    EXPECT_EQ(plainText("{\\rtf@a}"), "@a");
    EXPECT_EQ(plainText("{\\rtf[a}"), "[a");
    EXPECT_EQ(plainText("{\\rtf`a}"), "`a");
    EXPECT_EQ(plainText("{\\rtf{a}}"), "a");
}

TEST(RichTextTest, AnyDepthIsTolerated)
{
    constexpr std::size_t depth = 1'000'000;
    std::string text = "{\\rtf1 a";
    text.append(depth, '{').append("b{\\*\\unheard c}");
    EXPECT_EQ(plainText(text), "ab");
    text.append(depth, '}');
    EXPECT_EQ(plainText(text + "d}e"), "abd");
    std::string skipped = "{\\rtf1{\\pict";
    skipped.append(depth, '{').append(depth, '}');
    EXPECT_EQ(plainText(skipped + "x}y}"), "y");
}

TEST(RichTextTest, EveryTruncationIsValidText)
{
    const std::string text =
        "{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset128 A;}}\\f0\\'93\\'fa\\u-10179?"
        "\\u-8704?{\\pict\\bin4 }}}}}{\\*\\x y}\\par \\cell\\row}";
    for (std::size_t length = 6; length <= text.size(); ++length)
        EXPECT_TRUE(Utf8::isValid(plainText(text.substr(0, length)))) << length;
}

TEST(RichTextTest, RandomDocumentsBecomeValidText)
{
    std::mt19937 random(11);
    const std::vector<std::string> pieces = {"{",
                                             "}",
                                             "\\",
                                             "\\'8",
                                             "\\'93",
                                             "\\'fa",
                                             "\xE4",
                                             "a",
                                             " ",
                                             "\\u55357",
                                             "\\u56832 ",
                                             "\\u-1?",
                                             "\\uc0",
                                             "\\uc3 ",
                                             "\\f0",
                                             "\\f1 ",
                                             "\\f2",
                                             "\\plain ",
                                             "\\v",
                                             "\\v0 ",
                                             "\\par\n",
                                             "\\cell",
                                             "\\row",
                                             "{\\*\\x ",
                                             "\\bin3 ",
                                             "{\\upr ",
                                             "{\\*\\ud ",
                                             "\\*",
                                             "\\cpg65001 ",
                                             "\\fcharset130",
                                             "{\\fonttbl",
                                             "\\ansicpg950 ",
                                             "{\\NeXTGraphic x}"};
    for (int round = 0; round < 20000; ++round) {
        std::string text = "{\\rtf1{\\fonttbl{\\f1\\fcharset128 A;}{\\f2\\fcharset2 Symbol;}}";
        for (std::size_t count = random() % 60; count > 0; --count)
            text += pieces[random() % pieces.size()];
        ASSERT_TRUE(Utf8::isValid(plainText(text))) << testing::PrintToString(text);
    }
}

TEST_F(RichTextFileTest, AFileAndAFolderAreTheSameWhateverTheirNamesAre)
{
    const std::string text = "{\\rtf1 a\\par}";
    EXPECT_EQ(RichText::read(write("file.rtf", text)), "a\n");
    EXPECT_EQ(RichText::read(write("file.rtfd", text)), "a\n");
    write("folder.rtfd/TXT.rtf", text);
    EXPECT_EQ(RichText::read(folder / "folder.rtfd"), "a\n");
    EXPECT_EQ(RichText::read(folder / "folder.rtfd/"), "a\n");
    write("folder.rtf/TXT.rtf", text);
    EXPECT_EQ(RichText::read(folder / "folder.rtf"), "a\n");
    EXPECT_EQ(RichText::read(write("two\nlines \U0001F600.rtf", text)), "a\n");
}

TEST_F(RichTextFileTest, WhatCannotBeReadFailsWithASentence)
{
    EXPECT_EQ(messageOfReading(folder / "missing.rtf"), unreadable);
    std::filesystem::create_directory(folder / "empty.rtfd");
    EXPECT_EQ(messageOfReading(folder / "empty.rtfd"), unreadable);
    std::filesystem::create_directories(folder / "odd.rtfd" / "TXT.rtf");
    EXPECT_EQ(messageOfReading(folder / "odd.rtfd"), unreadable);
    ASSERT_EQ(::mkfifo((folder / "pipe.rtf").c_str(), 0600), 0);
    EXPECT_EQ(messageOfReading(folder / "pipe.rtf"), unreadable);
    EXPECT_EQ(messageOfReading("/dev/zero"), unreadable);
    std::filesystem::create_symlink("loop.rtf", folder / "loop.rtf");
    EXPECT_EQ(messageOfReading(folder / "loop.rtf"), unreadable);
}

TEST_F(RichTextFileTest, AFileTooLargeFailsWithASentence)
{
    const std::filesystem::path file = write("large.rtf", "{\\rtf1 a}");
    std::filesystem::resize_file(file, RegularFile::mostBytes + 1);
    EXPECT_EQ(messageOfReading(file), unreadable);
}

TEST_F(RichTextFileTest, AFileWithoutPermissionFailsWhereTheSystemRefusesIt)
{
    const std::filesystem::path file = write("secret.rtf", "{\\rtf1 a}");
    ASSERT_EQ(::chmod(file.c_str(), 0), 0);
    const bool isAllowed = ::access(file.c_str(), R_OK) == 0; // for root
    EXPECT_EQ(messageOfReading(file), isAllowed ? "no error" : unreadable);
}

TEST_F(RichTextFileTest, AFileOfAnotherKindFailsWithASentence)
{
    EXPECT_EQ(messageOfReading(write("empty.rtf", "")), wrongKind);
    EXPECT_EQ(messageOfReading(write("byte.rtf", "{")), wrongKind);
    EXPECT_EQ(messageOfReading(write("text.rtf", "Just text.")), wrongKind);
    EXPECT_EQ(messageOfReading(write("bytes.rtf", std::string(1000, '\xFF'))), wrongKind);
    EXPECT_EQ(messageOfReading(write("folder.rtfd/TXT.rtf", "Just text.")), wrongKind);
}

/// Documents of word processors, and beside each its text as another reader has it.
class RichTextSampleTest : public testing::Test
{
protected:
    using Differences = std::vector<std::pair<std::string, std::string>>;

    static std::filesystem::path sample(const std::string& name)
    {
        return std::filesystem::path(PITHWISE_TEST_DATA) / name;
    }

    /// Readers lay tables and lists out differently, so that only the words count.
    static std::string words(std::string_view text)
    {
        std::string spaced;
        for (const char byte : text)
            spaced += byte == '\n' || byte == '\t' ? ' ' : byte;
        return WhiteSpace::normalised(spaced);
    }

    /// The other reader's words, but for the differences that are meant.
    static std::string otherWords(const std::string& name, const Differences& differences)
    {
        std::ifstream stream(sample(name), std::ios::binary);
        std::string text = words(std::string{std::istreambuf_iterator<char>(stream), {}});
        for (const auto& [theirs, ours] : differences) {
            const std::size_t at = text.find(theirs);
            EXPECT_NE(at, std::string::npos) << theirs;
            if (at != std::string::npos)
                text.replace(at, theirs.size(), ours);
        }
        return text;
    }
};

TEST_F(RichTextSampleTest, ADocumentOfLibreOfficeReadsAsItReadsItItself)
{
    EXPECT_EQ(words(RichText::read(sample("libreoffice.rtf"))),
              otherWords("libreoffice.txt",
                         {{"and hidden words", "and words"}, {"A note1 is", "A note is"}}));
}

TEST_F(RichTextSampleTest, ADocumentOfAbiWordReadsAsItReadsItItself)
{
    EXPECT_EQ(
        words(RichText::read(sample("abiword.rtf"))),
        otherWords("abiword.txt", {{"and hidden words", "and words"},
                                   {"A note The text of the footnote. is", "A note is"},
                                   {"below The text of a comment. the", "below the"},
                                   {" The header of every page The footer of every page", ""}}));
}

TEST_F(RichTextSampleTest, ADocumentInManyCodePagesReadsAsLibreOfficeReadsIt)
{
    EXPECT_EQ(words(RichText::read(sample("codepages.rtf"))), otherWords("codepages.txt", {}));
}

TEST_F(RichTextSampleTest, TheLinesOfADocumentAreItsParagraphsAndRows)
{
    const std::string text = RichText::read(sample("libreoffice.rtf"));
    EXPECT_NE(text.find("\nFruit\tWeight\tPrice\nPears\t3 kg\t4 €\n"), std::string::npos) << text;
    EXPECT_NE(text.find("\n 1.\tFirst things\n 2.\tSecond things\n"), std::string::npos) << text;
    EXPECT_TRUE(text.ends_with("\nThe end.\n")) << text;
}

TEST_F(RichTextSampleTest, AFolderWithAnAttachmentReadsAsItsText)
{
    EXPECT_EQ(RichText::read(sample("attachment.rtfd")), "A picture of the garden:\n\n"
                                                         "Grüße → 日本, \U0001F600\n"
                                                         "\t•\tA point.");
}

} // namespace
