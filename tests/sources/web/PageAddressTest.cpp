#include "PageAddress.h"

#include "AppError.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// The address as it would be requested, else the error.
std::string parsed(std::string_view typed)
{
    try {
        return PageAddress::parsed(typed).toEncoded().toStdString();
    } catch (const AppError& error) {
        return error.message();
    }
}

const std::string refused = "Enter a valid web address.";

TEST(PageAddressTest, ABareHostAndPathBecomesAnHttpsAddress)
{
    EXPECT_EQ(parsed("host/a"), "https://host/a");
    EXPECT_EQ(parsed("host.example"), "https://host.example");
    EXPECT_EQ(parsed("host.example:8080/a?b=c#d"), "https://host.example:8080/a?b=c#d");
    EXPECT_EQ(parsed("127.0.0.1"), "https://127.0.0.1");
    EXPECT_EQ(parsed("[::1]/a"), "https://[::1]/a");
}

TEST(PageAddressTest, AnAddressKeepsTheSchemeItNames)
{
    EXPECT_EQ(parsed("http://host/a"), "http://host/a");
    EXPECT_EQ(parsed("https://host/a"), "https://host/a");
}

TEST(PageAddressTest, WhiteSpaceAtBothEndsDoesNotMatter)
{
    EXPECT_EQ(parsed(" \t\r\n\u00A0\u2028host/a\u3000\n "), "https://host/a");
    EXPECT_EQ(parsed("\nhttp://host/\n"), "http://host/");
}

TEST(PageAddressTest, OtherSchemesAreRefused)
{
    for (const char* typed : {"ftp://host/file", "file:///etc/passwd", "mailto:x",
                              "javascript:alert(1)", "localhost:80/a://b", "httpsx://host/"})
        EXPECT_EQ(parsed(typed), refused) << typed;
}

TEST(PageAddressTest, TheSchemeIsComparedAsItIsTyped)
{
    EXPECT_EQ(parsed("HTTP://host/"), refused);
    EXPECT_EQ(parsed("Https://host/"), refused);
}

TEST(PageAddressTest, ASchemeAnywhereKeepsHttpsFromBeingAdded)
{
    EXPECT_EQ(parsed("example.com/?u=http://x"), refused);
    EXPECT_EQ(parsed("http:/host?u=://"), refused);
}

TEST(PageAddressTest, WhatNamesNoHostIsRefused)
{
    for (const char* typed : {"", " \n", "https://", "http:///a", "://", "/", "?", "#a", ":80",
                              "https://:80/", "http://?a", "https://user@/"})
        EXPECT_EQ(parsed(typed), refused) << typed;
}

TEST(PageAddressTest, WhatIsNoAddressIsRefused)
{
    for (const char* typed :
         {"two words", "https://two words/", "https://ho\nst/", "https://host:port/",
          "https://host:99999/", "https://[::1/", "https://a<b>/", "https://%/"})
        EXPECT_EQ(parsed(typed), refused) << typed;
    EXPECT_EQ(parsed(std::string_view("https://ho\0st/", 14)), refused);
}

TEST(PageAddressTest, CharactersOutsideAsciiAreEncoded)
{
    EXPECT_EQ(parsed("bücher.example/naïve text"),
              "https://xn--bcher-kva.example/na%C3%AFve%20text");
    EXPECT_EQ(parsed("http://例え.テスト/"), "http://xn--r8jz45g.xn--zckzah/");
}

TEST(PageAddressTest, AVeryLongAddressIsAnAddress)
{
    const std::string path(1 << 20, 'x');
    EXPECT_EQ(parsed("host/" + path), "https://host/" + path);
    EXPECT_EQ(parsed(path), refused);
}

} // namespace
