#include "InlineMarkdown.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// What `text` shows, with its looks written as tags: "a *b*" is "a <i>b</i>".
static std::string shown(const char* text)
{
    std::string result;
    for (const InlineMarkdown::Run& run : InlineMarkdown::parse(QString::fromUtf8(text))) {
        std::string inner = run.text.toStdString();
        if (run.code)
            inner = "<c>" + inner + "</c>";
        if (run.italic)
            inner = "<i>" + inner + "</i>";
        if (run.bold)
            inner = "<b>" + inner + "</b>";
        if (!run.link.isEmpty())
            inner = "<a " + run.link.toStdString() + ">" + inner + "</a>";
        result += inner;
    }
    return result;
}

TEST(InlineMarkdown, PlainTextStaysAsItIs)
{
    EXPECT_EQ(shown(""), "");
    EXPECT_EQ(shown("## Notes"), "## Notes");
    EXPECT_EQ(shown("  two\n\n\tlines  \n"), "  two\n\n\tlines  \n");
    EXPECT_EQ(shown("1. \u65E5\u672C \U0001F600"), "1. \u65E5\u672C \U0001F600");
}

TEST(InlineMarkdown, NoBlockBeginsAtTheBeginningOfALine)
{
    for (const std::string block : {"# a",
                                    "## a ##",
                                    "a\n===",
                                    "a\n---",
                                    "---",
                                    "* * *",
                                    "___",
                                    "- a",
                                    "+ a",
                                    "* a",
                                    "1. a",
                                    "1) a",
                                    "> a",
                                    "    a",
                                    "\ta",
                                    "~~~\na\n~~~",
                                    "<div>\na\n</div>",
                                    "<!-- a -->\nb",
                                    "[a]: b",
                                    "[a]: b 'c'\n\n[a] [a][] [b][a]",
                                    "| a |\n|---|"}) {
        EXPECT_EQ(shown(block.c_str()), block);
        EXPECT_EQ(shown(("a\n" + block).c_str()), "a\n" + block);
        EXPECT_EQ(shown(("a\n\n" + block).c_str()), "a\n\n" + block);
        EXPECT_EQ(shown(("a\r\n" + block).c_str()), "a\r\n" + block);
        EXPECT_EQ(shown(("\n" + block + "\n").c_str()), "\n" + block + "\n");
    }
    EXPECT_EQ(shown("# *a*\n- *b*"), "# <i>a</i>\n- <i>b</i>");
    EXPECT_EQ(shown("```\na\n```"), "<c>\na\n</c>");
}

TEST(InlineMarkdown, WhiteSpaceAndLineBreaksStayAsTheyAre)
{
    for (const std::string space :
         {" ",      "  ",     "\t",     "\n",           "\n\n\n", " \n ",   "  \n",
          "\r",     "\r\n",   "\n\r",   " \r\n\t",      "\f",     "\v",     "\n\f\r\v",
          "\n\v\n", "\u0085", "\u00A0", "\u00A0\u00A0", "\u2028", "\u2029", "\u3000"}) {
        EXPECT_EQ(shown(space.c_str()), space);
        EXPECT_EQ(shown((space + "a" + space + "b" + space).c_str()),
                  space + "a" + space + "b" + space);
        EXPECT_EQ(shown((space + "*a" + space + "b*" + space).c_str()),
                  space + "<i>a" + space + "b</i>" + space);
        EXPECT_EQ(shown(("`a" + space + "b`").c_str()), "<c>a" + space + "b</c>");
        EXPECT_EQ(shown(("[a" + space + "b](c)").c_str()), "<a c>a" + space + "b</a>");
        EXPECT_EQ(shown(("a *b*" + space + "**c** d").c_str()),
                  "a <i>b</i>" + space + "<b>c</b> d");
    }
    EXPECT_EQ(shown("a\uFEFF *\uFEFFb*"), "a\uFEFF <i>\uFEFFb</i>");
    EXPECT_EQ(shown("&#12;&#11;a&#12;&#11;&#11;&#11;&#11;&#11;&#12;"), "\n\va\n\v\v\v\v\v\n");
}

TEST(InlineMarkdown, LineBreaksAreWhiteSpaceBesideEmphasis)
{
    for (const std::string lineBreak : {"\n", "\r", "\r\n", "\f"}) {
        EXPECT_EQ(shown(("a" + lineBreak + "*(b)*" + lineBreak + "c").c_str()),
                  "a" + lineBreak + "<i>(b)</i>" + lineBreak + "c");
        EXPECT_EQ(shown(("a *" + lineBreak + "b*").c_str()), "a *" + lineBreak + "b*");
        EXPECT_EQ(shown(("*a" + lineBreak + "* b").c_str()), "*a" + lineBreak + "* b");
    }
    EXPECT_EQ(shown("*(a)*\\\n*(b)*"), "<i>(a)</i>\n<i>(b)</i>");
}

TEST(InlineMarkdown, AsterisksMakeEmphasisWhereTheyTouchAWord)
{
    EXPECT_EQ(shown("*a b*"), "<i>a b</i>");
    EXPECT_EQ(shown("a * b*"), "a * b*");
    EXPECT_EQ(shown("a*\"b\"*"), "a*\"b\"*");
    EXPECT_EQ(shown("*\u00A0a*"), "*\u00A0a*");
    EXPECT_EQ(shown("a*b*c"), "a<i>b</i>c");
    EXPECT_EQ(shown("5*6*78"), "5<i>6</i>78");
    EXPECT_EQ(shown("*a b *"), "*a b *");
    EXPECT_EQ(shown("*(*a*)*"), "<i>(a)</i>");
    EXPECT_EQ(shown("*a\nb*"), "<i>a\nb</i>");
    EXPECT_EQ(shown("2 * 3 * 4"), "2 * 3 * 4");
}

TEST(InlineMarkdown, UnderscoresMakeNoEmphasisInsideOfWords)
{
    EXPECT_EQ(shown("_a b_"), "<i>a b</i>");
    EXPECT_EQ(shown("snake_case_name"), "snake_case_name");
    EXPECT_EQ(shown("\u043F_\u0440_\u0441"), "\u043F_\u0440_\u0441");
    EXPECT_EQ(shown("a-_(b)_"), "a-<i>(b)</i>");
    EXPECT_EQ(shown("_a*"), "_a*");
    EXPECT_EQ(shown("__init__"), "<b>init</b>");
    EXPECT_EQ(shown("x__init__y"), "x__init__y");
}

TEST(InlineMarkdown, TwoCharactersMakeStrongEmphasis)
{
    EXPECT_EQ(shown("**a b**"), "<b>a b</b>");
    EXPECT_EQ(shown("__a b__"), "<b>a b</b>");
    EXPECT_EQ(shown("a**b**"), "a<b>b</b>");
    EXPECT_EQ(shown("** a**"), "** a**");
    EXPECT_EQ(shown("**a **b"), "**a **b");
}

TEST(InlineMarkdown, EmphasisNests)
{
    EXPECT_EQ(shown("***a***"), "<b><i>a</i></b>");
    EXPECT_EQ(shown("**a *b* c**"), "<b>a </b><b><i>b</i></b><b> c</b>");
    EXPECT_EQ(shown("*a **b** c*"), "<i>a </i><b><i>b</i></b><i> c</i>");
    EXPECT_EQ(shown("***a** b*"), "<b><i>a</i></b><i> b</i>");
    EXPECT_EQ(shown("***a* b**"), "<b><i>a</i></b><b> b</b>");
    EXPECT_EQ(shown("*a**b**c*"), "<i>a</i><b><i>b</i></b><i>c</i>");
    EXPECT_EQ(shown("_a __b__ c_"), "<i>a </i><b><i>b</i></b><i> c</i>");
}

TEST(InlineMarkdown, TheRuleOfThreeKeepsRunsApart)
{
    EXPECT_EQ(shown("*a**b*"), "<i>a**b</i>");
    EXPECT_EQ(shown("**a*b**"), "<b>a*b</b>");
    EXPECT_EQ(shown("a***b***c"), "a<b><i>b</i></b>c");
    EXPECT_EQ(shown("a******b*********c"), "a<b>b</b>***c");
}

TEST(InlineMarkdown, WhatHasNoPartnerStaysText)
{
    EXPECT_EQ(shown("**bold"), "**bold");
    EXPECT_EQ(shown("**a*"), "*<i>a</i>");
    EXPECT_EQ(shown("*a**"), "<i>a</i>*");
    EXPECT_EQ(shown("a**"), "a**");
    EXPECT_EQ(shown("****"), "****");
    EXPECT_EQ(shown("*a _b* c_"), "<i>a _b</i> c_");
    EXPECT_EQ(shown("**a [b** c]"), "<b>a [b</b> c]");
}

TEST(InlineMarkdown, BackticksMakeCode)
{
    EXPECT_EQ(shown("`a`"), "<c>a</c>");
    EXPECT_EQ(shown("`` a ` b ``"), "<c>a ` b</c>");
    EXPECT_EQ(shown("` `` `"), "<c>``</c>");
    EXPECT_EQ(shown("`  a  `"), "<c> a </c>");
    EXPECT_EQ(shown("` a`"), "<c> a</c>");
    EXPECT_EQ(shown("`  `"), "<c>  </c>");
    EXPECT_EQ(shown("`a\nb`"), "<c>a\nb</c>");
    EXPECT_EQ(shown("*a `b*`"), "*a <c>b*</c>");
    EXPECT_EQ(shown("`a\\`b`"), "<c>a\\</c>b`");
    EXPECT_EQ(shown("`&amp;`"), "<c>&amp;</c>");
    EXPECT_EQ(shown("**`a`**"), "<b><c>a</c></b>");
}

TEST(InlineMarkdown, BackticksWithoutPartnersStayText)
{
    EXPECT_EQ(shown("```a``"), "```a``");
    EXPECT_EQ(shown("`a"), "`a");
    EXPECT_EQ(shown("`a``b``"), "`a<c>b</c>");
    EXPECT_EQ(shown("\\`a`"), "`a`");
}

TEST(InlineMarkdown, LinksLeadToTheirAddress)
{
    EXPECT_EQ(shown("[a](b)"), "<a b>a</a>");
    EXPECT_EQ(shown("[a](/b \"title\") c"), "<a /b>a</a> c");
    EXPECT_EQ(shown("[a](/b 'it''s')"), "[a](/b 'it''s')");
    EXPECT_EQ(shown("[a]( /b\n(title) )"), "<a /b>a</a>");
    EXPECT_EQ(shown("[a](\r\n/b\r\n'title'\f)"), "<a /b>a</a>");
    EXPECT_EQ(shown("[a](<b c>)"), "<a b c>a</a>");
    EXPECT_EQ(shown("[a](<b)c>)"), "<a b)c>a</a>");
    EXPECT_EQ(shown("[a](b(c)(d))"), "<a b(c)(d)>a</a>");
    EXPECT_EQ(shown("[a](b\\)c)"), "<a b)c>a</a>");
    EXPECT_EQ(shown("[a](b&amp;c&auml;)"), "<a b&c\u00E4>a</a>");
    EXPECT_EQ(shown("[a]()"), "a");
    EXPECT_EQ(shown("[*a* `b`](c)"), "<a c><i>a</i></a><a c> </a><a c><c>b</c></a>");
    EXPECT_EQ(shown("**[a](b)**"), "<a b><b>a</b></a>");
    EXPECT_EQ(shown("[a [b] c](d)"), "<a d>a [b] c</a>");
}

TEST(InlineMarkdown, WhatIsNoLinkStaysText)
{
    EXPECT_EQ(shown("[a] (b)"), "[a] (b)");
    EXPECT_EQ(shown("[a][b]"), "[a][b]");
    EXPECT_EQ(shown("[a](b c)"), "[a](b c)");
    EXPECT_EQ(shown("[a](b\"title\")"), "<a b\"title\">a</a>");
    EXPECT_EQ(shown("[a](b(c)"), "[a](b(c)");
    EXPECT_EQ(shown("[a](b"), "[a](b");
    EXPECT_EQ(shown("a](b)"), "a](b)");
    EXPECT_EQ(shown("\\[a](b)"), "[a](b)");
    EXPECT_EQ(shown("- [ ] a"), "- [ ] a");
}

// To CommonMark it would be no link, but here line breaks end nothing.
TEST(InlineMarkdown, ALineBreakInAngleBracketsIsPartOfTheAddress)
{
    EXPECT_EQ(shown("[a](<b\nc>)"), "<a b\nc>a</a>");
}

TEST(InlineMarkdown, ThereAreNoLinksInsideOfLinks)
{
    EXPECT_EQ(shown("[a [b](c) d](e)"), "[a <a c>b</a> d](e)");
    EXPECT_EQ(shown("[a *b [c](d)* e](f)"), "[a <i>b </i><a d><i>c</i></a> e](f)");
    EXPECT_EQ(shown("[a](b) [c](d)"), "<a b>a</a> <a d>c</a>");
}

// CommonMark has only the links in square brackets lose their meaning around another.
TEST(InlineMarkdown, AnAddressInsideOfALinkLeadsToItself)
{
    EXPECT_EQ(shown("[a <http://b> *c*](d)"),
              "<a d>a </a><a http://b>http://b</a><a d> </a><a d><i>c</i></a>");
}

TEST(InlineMarkdown, LinksBindMoreThanEmphasisAndLessThanCode)
{
    EXPECT_EQ(shown("*[a*](b)"), "*<a b>a*</a>");
    EXPECT_EQ(shown("[a `](b)`"), "[a <c>](b)</c>");
    EXPECT_EQ(shown("[a <b c=\"](d)\">"), "[a <b c=\"](d)\">");
    EXPECT_EQ(shown("*a [b*](c)*"), "<i>a </i><a c><i>b*</i></a>");
}

TEST(InlineMarkdown, AnImageShowsItsDescription)
{
    EXPECT_EQ(shown("![a *b*](c)"), "a <i>b</i>");
    EXPECT_EQ(shown("[![a](b)](c)"), "<a c>a</a>");
    EXPECT_EQ(shown("![a [b](c) d](e)"), "a <a c>b</a> d");
    EXPECT_EQ(shown("![a]"), "![a]");
    EXPECT_EQ(shown("!\\[a](b)"), "![a](b)");
}

TEST(InlineMarkdown, AddressesInAngleBracketsAreLinks)
{
    EXPECT_EQ(shown("<https://a.example/b?c=d&e>"),
              "<a https://a.example/b?c=d&e>https://a.example/b?c=d&e</a>");
    EXPECT_EQ(shown("<me@a.example>"), "<a mailto:me@a.example>me@a.example</a>");
    EXPECT_EQ(shown("<a+b-c:>"), "<a a+b-c:>a+b-c:</a>");
    EXPECT_EQ(shown("<https://a b>"), "<https://a b>");
    for (const std::string address :
         {"<https://a\nb>", "<https://a\r\nb>", "<https://a\rb>", "<https://a\fb>"})
        EXPECT_EQ(shown(address.c_str()), address);
    EXPECT_EQ(shown("<m:a>"), "<m:a>");
    EXPECT_EQ(shown("<me@-a>"), "<me@-a>");
    EXPECT_EQ(shown("<https://a\\>b>"), "<a https://a\\>https://a\\</a>b>");
    EXPECT_EQ(shown("https://a.example"), "https://a.example");
}

TEST(InlineMarkdown, RawHtmlIsShownAndNothingInsideOfItIsMarkdown)
{
    for (const char* html : {"<a href=\"*b*\">", "<b c='*d*' e=f *g*>", "</a *b*>", "<br/>",
                             "<!-- *a* -->", "<?php *a* ?>", "<!DOCTYPE *a*>", "<![CDATA[*a*]]>"}) {
        const std::string text = html;
        const bool isTag = text != "<b c='*d*' e=f *g*>" && text != "</a *b*>";
        if (isTag) {
            EXPECT_EQ(shown(html), text);
        } else {
            EXPECT_NE(shown(html), text);
        }
    }
    EXPECT_EQ(shown("<a\r\nb='*c*\r*d*'\f>"), "<a\r\nb='*c*\r*d*'\f>");
    EXPECT_EQ(shown("<i>*a*</i>"), "<i><i>a</i></i>");
    EXPECT_EQ(shown("a < b *c* > d"), "a < b <i>c</i> > d");
    EXPECT_EQ(shown("<!-- *a*"), "<!-- <i>a</i>");
    EXPECT_EQ(shown("<!--> *a* -->"), "<!--> <i>a</i> -->");
}

TEST(InlineMarkdown, BackslashesTakeTheMeaningFromPunctuation)
{
    EXPECT_EQ(shown("\\*a\\*"), "*a*");
    EXPECT_EQ(shown("\\\\*a*"), "\\<i>a</i>");
    EXPECT_EQ(shown("C:\\new \\\u00E9"), "C:\\new \\\u00E9");
    EXPECT_EQ(shown("a\\\nb\\"), "a\nb\\");
    EXPECT_EQ(shown("a\\\\\nb"), "a\\\nb");
    EXPECT_EQ(shown("a\\\\\\\nb"), "a\\\nb");
    EXPECT_EQ(shown("`a\\\nb` <a b='\\\n'>"), "<c>a\\\nb</c> <a b='\\\n'>");
    EXPECT_EQ(shown("\\!\\\"\\#\\~\\<b>"), "!\"#~<b>");
}

TEST(InlineMarkdown, CharacterReferencesStandForTheirCharacter)
{
    EXPECT_EQ(shown("&lt;a&gt; &amp;amp; &mdash;&nbsp;"), "<a> &amp; \u2014\u00A0");
    EXPECT_EQ(shown("&auml;&NewLine;&nGt;"), "\u00E4\n\u226B\u20D2");
    EXPECT_EQ(shown("&#42;a&#42; &#x1F600; &#0;"), "*a* \U0001F600 \uFFFD");
    EXPECT_EQ(shown("&amp &; &#; &#x; &#12345678; &unknown; &#xD800;"),
              "&amp &; &#; &#x; &#12345678; &unknown; \uFFFD");
}

TEST(InlineMarkdown, BrokenSurrogatesDoNoHarm)
{
    const QString text = QChar(0xD83D) + QStringLiteral("*a*") + QChar(0xDE00);
    const auto runs = InlineMarkdown::parse(text);
    ASSERT_EQ(runs.size(), 3u);
    EXPECT_EQ(runs[1].text, QStringLiteral("a"));
    EXPECT_TRUE(runs[1].italic);
}

TEST(InlineMarkdown, ANulIsShownAsTheReplacementCharacter)
{
    const auto runs = InlineMarkdown::parse(QStringView(u"a\0*b\0*", 6));
    ASSERT_EQ(runs.size(), 2u);
    EXPECT_EQ(runs[0].text, QStringLiteral("a\uFFFD"));
    EXPECT_EQ(runs[1].text, QStringLiteral("b\uFFFD"));
    EXPECT_TRUE(runs[1].italic);
}

TEST(InlineMarkdown, WhatNestsMayDoSoAsDeepAsTheTextIsLong)
{
    constexpr qsizetype depth = 20'000;
    const auto nested = [](const char* begin, const char* middle, const char* end) {
        return QString::fromUtf8(begin).repeated(depth) + QString::fromUtf8(middle) +
               QString::fromUtf8(end).repeated(depth);
    };
    const auto runs = [](const QString& text, bool isItalic) {
        return std::vector<InlineMarkdown::Run>{{text, false, isItalic, false, {}}};
    };
    EXPECT_EQ(InlineMarkdown::parse(nested("*a ", "", " b*")), runs(nested("a ", "", " b"), true));
    EXPECT_EQ(InlineMarkdown::parse(nested("![", "a", "](b)")), runs(QStringLiteral("a"), false));
    const QString brackets = nested("[", "a", "]");
    EXPECT_EQ(InlineMarkdown::parse(brackets), runs(brackets, false));
}

TEST(InlineMarkdown, RunsThatLookTheSameAreOne)
{
    const auto runs = InlineMarkdown::parse(u"a\\*b&amp;c [d] _e");
    ASSERT_EQ(runs.size(), 1u);
    EXPECT_EQ(runs[0].text, QStringLiteral("a*b&c [d] _e"));
}
