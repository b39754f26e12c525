#include "RecognitionLanguages.h"

#include "EnvironmentVariable.h"

#include <gtest/gtest.h>

namespace {

using Names = std::vector<std::string>;

class RecognitionLanguagesTest : public testing::Test
{
protected:
    // Empty ones count as not set.
    const EnvironmentVariable m_all{"LC_ALL", ""};
    const EnvironmentVariable m_characters{"LC_CTYPE", ""};
    const EnvironmentVariable m_messages{"LC_MESSAGES", ""};
    const EnvironmentVariable m_language{"LANG", ""};
};

TEST_F(RecognitionLanguagesTest, ALocaleHasTheNameOfItsLanguage)
{
    EXPECT_EQ(RecognitionLanguages::name("de"), "deu");
    EXPECT_EQ(RecognitionLanguages::name("de_AT"), "deu");
    EXPECT_EQ(RecognitionLanguages::name("fr_CA.UTF-8"), "fra");
    EXPECT_EQ(RecognitionLanguages::name("de_DE@euro"), "deu");
    EXPECT_EQ(RecognitionLanguages::name("en_GB.UTF-8"), "eng");
}

TEST_F(RecognitionLanguagesTest, WhatIsNoLanguageHasNoName)
{
    for (const char* locale : {"", "C", "POSIX", "C.UTF-8", "xx_XX", ".", "@", "../../etc", "a+b",
                               "\xFF\xFE", "\n", "/usr/share/locale"})
        EXPECT_EQ(RecognitionLanguages::name(locale), "") << locale;
    EXPECT_EQ(RecognitionLanguages::name(std::string(100000, 'd')), "");
    EXPECT_EQ(RecognitionLanguages::name("de_" + std::string(100000, 'D')), "deu");
}

TEST_F(RecognitionLanguagesTest, SomeNamesAreTesseractsOwn)
{
    EXPECT_EQ(RecognitionLanguages::name("zh_CN.UTF-8"), "chi_sim");
    EXPECT_EQ(RecognitionLanguages::name("zh_SG"), "chi_sim");
    EXPECT_EQ(RecognitionLanguages::name("zh_TW.UTF-8"), "chi_tra");
    EXPECT_EQ(RecognitionLanguages::name("zh_HK"), "chi_tra");
    EXPECT_EQ(RecognitionLanguages::name("nb_NO.UTF-8"), "nor");
    EXPECT_EQ(RecognitionLanguages::name("nn_NO.UTF-8"), "nor");
    EXPECT_EQ(RecognitionLanguages::name("sr_RS.UTF-8"), "srp");
    EXPECT_EQ(RecognitionLanguages::name("sr_RS.UTF-8@latin"), "srp_latn");
    EXPECT_EQ(RecognitionLanguages::name("sr_RS@latin"), "srp_latn");
    EXPECT_EQ(RecognitionLanguages::name("uz_UZ"), "uzb");
    EXPECT_EQ(RecognitionLanguages::name("uz_UZ@cyrillic"), "uzb_cyrl");
}

TEST_F(RecognitionLanguagesTest, WithoutALocaleItIsEnglish)
{
    EXPECT_EQ(RecognitionLanguages::wanted(), Names{"eng"});
    const EnvironmentVariable language("LANG", "en_US.UTF-8");
    EXPECT_EQ(RecognitionLanguages::wanted(), Names{"eng"});
}

TEST_F(RecognitionLanguagesTest, TheLanguageOfTheUserFollowsEnglish)
{
    const EnvironmentVariable language("LANG", "de_DE.UTF-8");
    EXPECT_EQ(RecognitionLanguages::wanted(), (Names{"eng", "deu"}));
}

TEST_F(RecognitionLanguagesTest, ACategoryGoesBeforeTheDefaultAndOneForAllBeforeBoth)
{
    const EnvironmentVariable language("LANG", "de_DE.UTF-8");
    const EnvironmentVariable messages("LC_MESSAGES", "en_US.UTF-8");
    EXPECT_EQ(RecognitionLanguages::wanted(), (Names{"eng", "deu"}));
    const EnvironmentVariable characters("LC_CTYPE", "fr_FR.UTF-8");
    EXPECT_EQ(RecognitionLanguages::wanted(), (Names{"eng", "fra"}));
    const EnvironmentVariable otherMessages("LC_MESSAGES", "nb_NO.UTF-8");
    EXPECT_EQ(RecognitionLanguages::wanted(), (Names{"eng", "fra", "nor"}));
    const EnvironmentVariable all("LC_ALL", "C");
    EXPECT_EQ(RecognitionLanguages::wanted(), Names{"eng"});
}

} // namespace
