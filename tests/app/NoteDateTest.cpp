#include "NoteDate.h"

#include "EnvironmentVariable.h"

#include <QTimeZone>

#include <gtest/gtest.h>

namespace {

const QDateTime moment(QDate(2026, 3, 9), QTime(7, 5, 59), QTimeZone::utc());

/// The moment's day and time for a user whose environment says `locale`.
class NoteDateTest : public testing::Test
{
protected:
    static std::string written(const QByteArray& locale)
    {
        const EnvironmentVariable all("LC_ALL", "");
        const EnvironmentVariable times("LC_TIME", locale);
        return NoteDate::day(moment) + " " + NoteDate::time(moment);
    }

    EnvironmentVariable m_zone{"TZ", "UTC"};
    EnvironmentVariable m_language{"LANG", "C"};
};

TEST_F(NoteDateTest, ManyLocalesWriteTheSame)
{
    for (const char* locale : {"C", "POSIX", "C.UTF-8", "", "en_US.UTF-8", "de_DE@euro", "de",
                               "zh_CN.UTF-8", "ja_JP.eucJP", "sr_RS@latin", "en_US_POSIX"})
        EXPECT_EQ(written(locale), "2026-03-09 07:05") << locale;
}

TEST_F(NoteDateTest, DigitsAreTheLocales)
{
    EXPECT_EQ(written("ar_EG.UTF-8"), "٢٠٢٦-٠٣-٠٩ ٠٧:٠٥");
    EXPECT_EQ(written("mr_IN"), "२०२६-०३-०९ ०७:०५");
    EXPECT_EQ(written("my_MM.UTF-8"), "၂၀၂၆-၀၃-၀၉ ၀၇:၀၅");
}

TEST_F(NoteDateTest, TheCalendarIsTheLocales)
{
    EXPECT_EQ(written("th_TH.UTF-8"), "2569-03-09 07:05");
    EXPECT_EQ(written("fa_IR"), "۱۴۰۴-۱۲-۱۸ ۰۷:۰۵");
}

TEST_F(NoteDateTest, NonsenseIsWrittenInAsciiDigits)
{
    for (const std::string& locale :
         {std::string("xx_YY"), std::string("../../etc"), std::string("\xFF\xFE"), std::string("@"),
          std::string("."), std::string(10'000, 'x'), std::string("a\nb")})
        EXPECT_EQ(written(QByteArray::fromStdString(locale)), "2026-03-09 07:05") << locale;
}

TEST_F(NoteDateTest, TheVariablesCountAsForTheSystem)
{
    const EnvironmentVariable all("LC_ALL", "");
    const EnvironmentVariable times("LC_TIME", "");
    EXPECT_EQ(NoteDate::day(moment), "2026-03-09");
    const EnvironmentVariable language("LANG", "th_TH");
    EXPECT_EQ(NoteDate::day(moment), "2569-03-09");
    const EnvironmentVariable farsi("LC_TIME", "mr_IN");
    EXPECT_EQ(NoteDate::day(moment), "२०२६-०३-०९");
    const EnvironmentVariable german("LC_ALL", "de_DE");
    EXPECT_EQ(NoteDate::day(moment), "2026-03-09");
}

TEST_F(NoteDateTest, DayAndTimeAreThoseOfTheUsersTimeZone)
{
    const EnvironmentVariable all("LC_ALL", "C");
    const QDateTime late(QDate(2026, 7, 31), QTime(23, 30), QTimeZone::utc());
    {
        const EnvironmentVariable zone("TZ", "Asia/Kathmandu");
        EXPECT_EQ(NoteDate::day(late) + " " + NoteDate::time(late), "2026-08-01 05:15");
    }
    {
        // In the user's summer time, though handed over in another zone.
        const EnvironmentVariable zone("TZ", "Europe/Berlin");
        EXPECT_EQ(NoteDate::time(late.toOffsetFromUtc(3600)), "01:30");
        EXPECT_EQ(NoteDate::time(moment), "08:05");
    }
    {
        const EnvironmentVariable zone("TZ", "AAA3:30BBB,M3.2.0,M11.1.0");
        EXPECT_EQ(NoteDate::time(late), "21:00");
    }
}

TEST_F(NoteDateTest, MidnightIsZeroHours)
{
    const EnvironmentVariable all("LC_ALL", "en_US.UTF-8");
    EXPECT_EQ(NoteDate::time(QDateTime(QDate(2026, 1, 1), QTime(0, 0), QTimeZone::utc())), "00:00");
}

} // namespace
