#include "HTMLText.h"

#include "ReaderTextBySteps.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace {

using HTMLText::decodeEntities;
using HTMLText::largestMatch;
using HTMLText::readerText;

const std::string sentence = "This sentence has more than thirty characters.";
const std::string secondSentence = "And this one, too, is long enough to be kept.";

std::string paragraph(const std::string& text)
{
    return "<p>" + text + "</p>";
}

std::string body(const std::string& text)
{
    return "<body>" + paragraph(text) + "</body>";
}

TEST(HTMLTextTest, TheArticleIsPreferredToTheMainElementAndThatToTheBody)
{
    const std::string main = "<main>" + paragraph(secondSentence) + "</main>";
    const std::string article = "<article>" + paragraph(sentence) + "</article>";
    const std::string rest = paragraph("What stands in the rest of the body of this page.");
    EXPECT_EQ(readerText("<body>" + rest + main + article + "</body>"), sentence);
    EXPECT_EQ(readerText("<body>" + rest + main + "</body>"), secondSentence);
    EXPECT_EQ(readerText(secondSentence + "<body>" + paragraph(sentence) + "</body>"), sentence);
    EXPECT_EQ(readerText(paragraph(sentence)), sentence);
}

TEST(HTMLTextTest, TheLongerOfTwoArticlesIsTaken)
{
    EXPECT_EQ(readerText("<article>" + sentence + "</article><article>" + sentence +
                         " And more.</article>"),
              sentence + " And more.");
}

TEST(HTMLTextTest, OfElementsOfEqualLengthInCharactersTheFirstIsTaken)
{
    EXPECT_EQ(largestMatch("<main>abc</main><main>xyz</main>", "main"), "abc");
    // Three characters each, though the second has more bytes, and then four.
    EXPECT_EQ(largestMatch("<main>abc</main><main>äöü</main>", "main"), "abc");
    EXPECT_EQ(largestMatch("<main>abc</main><main>äöüß</main>", "main"), "äöüß");
}

TEST(HTMLTextTest, AnElementEndsAtTheFirstClosingTagOfItsName)
{
    EXPECT_EQ(largestMatch("<main>a<main>b</main>c</main>", "main"), "a<main>b");
    EXPECT_EQ(largestMatch("<main class='x'\n>a\nb</MAIN>", "main"), "a\nb");
    EXPECT_EQ(largestMatch("<main></main>", "main"), "");
}

TEST(HTMLTextTest, WithoutACompleteElementThereIsNoMatch)
{
    for (const char* html :
         {"", "<main>", "</main>", "<main></mai>", "<main</main>", "<mains></mains>",
          "<mainé></main>", "<main_></main>", "< main></main>"})
        EXPECT_EQ(largestMatch(html, "main"), std::nullopt) << html;
    EXPECT_EQ(largestMatch("<a(b>x</a(b>", "a(b"), "x");
}

TEST(HTMLTextTest, TagsAreTheSameInEitherCase)
{
    EXPECT_EQ(readerText("<BODY><P>" + sentence + "</P><P>" + secondSentence + "</p></BODY>"),
              sentence + "\n\n" + secondSentence);
}

TEST(HTMLTextTest, ScriptsOverManyLinesAreRemovedWhole)
{
    EXPECT_EQ(readerText("<SCRIPT type='text/javascript'>\nlet text = '" + sentence +
                         "';\n// <p>\n</script>" + paragraph(secondSentence)),
              secondSentence);
}

TEST(HTMLTextTest, ElementsThatHoldNoArticleTextAreRemoved)
{
    for (const std::string name : {"script", "style", "noscript", "svg", "nav", "header", "footer",
                                   "aside", "form", "iframe", "button"})
        EXPECT_EQ(readerText("<" + name + " id=1>" + sentence + "</" + name + ">" +
                             paragraph(secondSentence)),
                  secondSentence)
            << name;
}

TEST(HTMLTextTest, ARemovedElementsNameMustBeAWholeWord)
{
    EXPECT_EQ(readerText("<navigation>" + sentence + "</nav>"), sentence);
    EXPECT_EQ(readerText("<navé>" + sentence + "</nav>"), sentence);
    EXPECT_EQ(readerText("<nav\u0301>" + sentence + "</nav>"), sentence);
    EXPECT_EQ(readerText("<nav-bar>" + sentence + "</nav>"), "");
    EXPECT_EQ(readerText("<nav\u2003x>" + sentence + "</nav>"), "");
}

TEST(HTMLTextTest, OfNestedElementsOfOneNameTheRestOfTheOuterOneStays)
{
    EXPECT_EQ(readerText("<nav>a<nav>b</nav>" + sentence + "</nav>"), sentence);
}

TEST(HTMLTextTest, CommentsAreRemovedBeforeTheTitleIsSought)
{
    EXPECT_EQ(readerText("<!-- <title>No</title>\n --><title>Yes</title>" + body(sentence)),
              "Yes\n\n" + sentence);
    EXPECT_EQ(readerText("<!-- never closed " + sentence), "<!-- never closed " + sentence);
}

TEST(HTMLTextTest, TheTitleIsKeptWhateverItsLength)
{
    EXPECT_EQ(readerText("<title lang=en>\n Home &amp; garden </title>" + body(sentence)),
              "Home & garden\n\n" + sentence);
    EXPECT_EQ(readerText("<title>Home</title>" + body("")), "Home\n\n");
    EXPECT_EQ(readerText("<title> </title>" + body(sentence)), sentence);
    // Tags within are not stripped, and only the first title counts.
    EXPECT_EQ(readerText(body("") + "<title><b>Home</b></title><svg><title>Icon</title></svg>"),
              "<b>Home</b>\n\n");
}

TEST(HTMLTextTest, ALineOf29CharactersIsDroppedAndOneOf30IsKept)
{
    const std::string characters29 = "äöü ABCDEFGHIJKLMNOPQRSTUVWXY";
    EXPECT_EQ(readerText(paragraph(characters29)), "");
    EXPECT_EQ(readerText(paragraph(characters29 + "Z")), characters29 + "Z");
    // A family is one character.
    EXPECT_EQ(readerText(paragraph(characters29 + "👨‍👩‍👧")),
              characters29 + "👨‍👩‍👧");
    EXPECT_EQ(readerText(paragraph(" \t\u00A0" + characters29 + "  \u3000")), "");
}

TEST(HTMLTextTest, EveryBlockEndAndLineBreakEndsALine)
{
    for (const std::string end :
         {"</p>", "</h1>", "</h6>", "</li>", "</div>", "</tr>", "</blockquote>", "</section>",
          "</SECTION>", "<br>", "<br/>", "<BR />", "<br\u00A0\n/>"})
        EXPECT_EQ(readerText(sentence + end + secondSentence), sentence + "\n\n" + secondSentence)
            << end;
    for (const std::string other : {"</h7>", "</span>", "</td>", "<br clear=all>", "</p >"})
        EXPECT_EQ(readerText(sentence + other + secondSentence), sentence + secondSentence)
            << other;
}

TEST(HTMLTextTest, ACarriageReturnAtTheEndOfALineStays)
{
    EXPECT_EQ(readerText(sentence + "\r\n" + secondSentence), sentence + "\r\n\n" + secondSentence);
}

TEST(HTMLTextTest, TagsAreStrippedBeforeReferencesAreDecoded)
{
    EXPECT_EQ(readerText("<p>Write &lt;b&gt;bold&lt;/b&gt; to get a <b>bold</b> word.</p>"),
              "Write <b>bold</b> to get a bold word.");
}

TEST(HTMLTextTest, WhatLooksLikeATagAcrossLinesIsStripped)
{
    EXPECT_EQ(HTMLText::withoutTags("a<b\nc>d<>e<f"), "ad<>e<f");
    EXPECT_EQ(HTMLText::withoutTags("1 < 2 and 3 > 2"), "1  2");
}

TEST(HTMLTextTest, NamedReferencesAreDecoded)
{
    EXPECT_EQ(decodeEntities("&nbsp;&amp;&lt;&gt;&quot;&#39;&apos;&rsquo;&lsquo;&ldquo;&rdquo;"
                             "&mdash;&ndash;&hellip;"),
              " &<>\"''\u2019\u2018\u201C\u201D\u2014\u2013\u2026");
}

TEST(HTMLTextTest, OtherNamedReferencesStay)
{
    for (const char* text : {"&copy;", "&NBSP;", "&Amp;", "&amp", "&;", "&", "& amp;"})
        EXPECT_EQ(decodeEntities(text), text);
}

TEST(HTMLTextTest, NumericReferencesAreDecodedInBothRadixes)
{
    EXPECT_EQ(decodeEntities("&#65;&#x42;"), "AB");
    EXPECT_EQ(decodeEntities("&#x1F600;&#128512;&#xe9;&#0000000000000000065;"), "😀😀éA");
    EXPECT_EQ(decodeEntities("&#x10FFFF;"), "\U0010FFFF");
}

TEST(HTMLTextTest, ImpossibleNumericReferencesDisappear)
{
    for (const char* text : {"&#xD800;", "&#xDFFF;", "&#99999999999;", "&#x110000;", "&#1f;",
                             "&#4294967296;", "&#4294967361;"})
        EXPECT_EQ(decodeEntities(std::string("a") + text + "b"), "ab") << text;
}

TEST(HTMLTextTest, WhatIsNotQuiteANumericReferenceStays)
{
    for (const char* text :
         {"&#X43;", "&#;", "&#x;", "&#65", "&#x41", "&#xg;", "&# 65;", "&#-1;", "&#xx41;"})
        EXPECT_EQ(decodeEntities(text), text);
    EXPECT_EQ(decodeEntities("&#6&#65;&#x&#65"), "&#6A&#x&#65");
}

TEST(HTMLTextTest, NoNameIsDecodedTwiceButNumbersReadWhatNamesHaveLeft)
{
    EXPECT_EQ(decodeEntities("&amp;lt;"), "&lt;");
    EXPECT_EQ(decodeEntities("&amp;amp;amp;"), "&amp;amp;");
    EXPECT_EQ(decodeEntities("&amp;#65;"), "A");
}

TEST(HTMLTextTest, AnEmptyPageHasNoText)
{
    EXPECT_EQ(readerText(""), "");
    EXPECT_EQ(readerText("<"), "");
    EXPECT_EQ(readerText(std::string(1, '\0')), "");
}

/// Tag soup of the pieces that matter, put together at random.
std::string soup(std::mt19937& random)
{
    static const std::vector<std::string> pieces = {"<",
                                                    ">",
                                                    "</",
                                                    "<!--",
                                                    "-->",
                                                    "<script",
                                                    "</script>",
                                                    "<nav ",
                                                    "</nav>",
                                                    "<NAV>",
                                                    "<ſvg>",
                                                    "</svg>",
                                                    "<button>",
                                                    "</button>",
                                                    "<title",
                                                    "</title>",
                                                    "<article",
                                                    "<article>",
                                                    "</article>",
                                                    "<main>",
                                                    "</main>",
                                                    "<body x>",
                                                    "</body>",
                                                    "</p>",
                                                    "<p>",
                                                    "</h3>",
                                                    "<br",
                                                    "/>",
                                                    "<br\u00A0>",
                                                    "&amp;",
                                                    "&lt;",
                                                    "&gt;",
                                                    "&#60;",
                                                    "&#x3e;",
                                                    "&#",
                                                    "&#xD800;",
                                                    "#65;",
                                                    ";",
                                                    "&nbsp;",
                                                    "\n",
                                                    "\r\n",
                                                    "\t",
                                                    " ",
                                                    "\u2003",
                                                    "\u00A0",
                                                    "é",
                                                    "e\u0301",
                                                    "👨‍👩‍👧",
                                                    "ⓐ",
                                                    "a line of thirty characters, is it",
                                                    "twenty-nine characters are 29",
                                                    "x",
                                                    "\u200D",
                                                    "_",
                                                    "</blocKquote>",
                                                    "</li>",
                                                    "<header>",
                                                    "</header>"};
    std::uniform_int_distribution<std::size_t> piece(0, pieces.size() - 1);
    std::string text;
    for (int count = std::uniform_int_distribution<int>(0, 60)(random); count > 0; --count)
        text += pieces[piece(random)];
    return text;
}

TEST(HTMLTextTest, TagSoupBecomesWhatTheStepsOneByOneWouldMakeOfIt)
{
    std::mt19937 random(1);
    for (int i = 0; i < 1000; ++i) {
        const std::string html = soup(random);
        ASSERT_EQ(readerText(html), ReaderTextBySteps::readerText(html)) << html;
        ASSERT_EQ(decodeEntities(html), ReaderTextBySteps::decodeEntities(html)) << html;
        ASSERT_EQ(HTMLText::withoutTags(html), ReaderTextBySteps::withoutTags(html)) << html;
    }
}

} // namespace
