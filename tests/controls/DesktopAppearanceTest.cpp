#include "DesktopAppearance.h"

#include "SettingsPortal.h"
#include "Theme.h"

#include <QApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace {

const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString gnomeGroup = QStringLiteral("org.gnome.desktop.interface");

/// A bus of the test's own.
class Bus
{
public:
    Bus()
    {
        m_process.start(QStringLiteral("dbus-daemon"),
                        {QStringLiteral("--session"), QStringLiteral("--nofork"),
                         QStringLiteral("--print-address=1")});
        if (m_process.waitForReadyRead())
            m_address = QString::fromUtf8(m_process.readLine().trimmed());
    }
    ~Bus()
    {
        for (const QString& name : m_names)
            QDBusConnection::disconnectFromBus(name);
        m_process.kill();
        m_process.waitForFinished();
    }
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;

    QDBusConnection connect(const QString& name)
    {
        m_names.append(name);
        return QDBusConnection::connectToBus(m_address, name);
    }

private:
    QProcess m_process;
    QString m_address;
    QStringList m_names;
};

/// Gives the application another palette for as long as it lives.
class ApplicationPalette
{
public:
    ApplicationPalette(const QColor& window, const QColor& text, const QColor& highlight)
    {
        QPalette palette = m_before;
        palette.setColor(QPalette::Window, window);
        palette.setColor(QPalette::WindowText, text);
        palette.setColor(QPalette::Highlight, highlight);
        QApplication::setPalette(palette);
    }
    ~ApplicationPalette() { QApplication::setPalette(m_before); }
    ApplicationPalette(const ApplicationPalette&) = delete;
    ApplicationPalette& operator=(const ApplicationPalette&) = delete;

private:
    QPalette m_before = QApplication::palette();
};

QDBusConnection noBus()
{
    return QDBusConnection(QStringLiteral("none"));
}

} // namespace

TEST(DesktopAppearance, WithoutAPortalThePaletteDecides)
{
    Theme theme;
    const DesktopAppearance desktop(theme, noBus());
    EXPECT_FALSE(theme.appearance().isDark);
    EXPECT_FALSE(theme.appearance().isHighContrast);
    EXPECT_FALSE(theme.appearance().isMotionReduced);
    EXPECT_FALSE(theme.appearance().highlight.isValid());
    {
        const ApplicationPalette dark(0x303030, 0xE0E0E0, 0x00AA44);
        EXPECT_TRUE(theme.appearance().isDark);
        EXPECT_EQ(theme.appearance().highlight, QColor(0x00AA44));
    }
    EXPECT_FALSE(theme.appearance().isDark);
}

TEST(DesktopAppearance, BlackAndWhiteIsHighContrast)
{
    Theme theme;
    const DesktopAppearance desktop(theme, noBus());
    const ApplicationPalette palette(Qt::black, Qt::white, Qt::yellow);
    EXPECT_TRUE(theme.appearance().isHighContrast);
    EXPECT_TRUE(theme.appearance().isDark);
    EXPECT_EQ(theme[ColorRole::window], QColor(Qt::black));
}

TEST(DesktopAppearance, ThePortalDecidesWhereItHasAPreference)
{
    Bus bus;
    SettingsPortal portal(
        bus.connect(QStringLiteral("portal")),
        {{appearanceGroup,
          {{QStringLiteral("color-scheme"), 1U},
           {QStringLiteral("contrast"), 1U},
           {QStringLiteral("accent-color"), QVariant::fromValue(SettingsPortal::Rgb{1, 0, 0})}}},
         {gnomeGroup, {{QStringLiteral("enable-animations"), false}}}});
    Theme theme;
    QSignalSpy changes(&theme, &Theme::changed);
    const DesktopAppearance desktop(theme, bus.connect(QStringLiteral("program")));
    ASSERT_TRUE(changes.wait());
    EXPECT_TRUE(theme.appearance().isDark);
    EXPECT_TRUE(theme.appearance().isHighContrast);
    EXPECT_TRUE(theme.appearance().isMotionReduced);
    EXPECT_EQ(theme.appearance().highlight.rgb(), QColor(Qt::red).rgb());
    EXPECT_EQ(theme.fadeDuration(), 0);
}

TEST(DesktopAppearance, TheThemeFollowsThePortal)
{
    Bus bus;
    SettingsPortal portal(bus.connect(QStringLiteral("portal")),
                          {{appearanceGroup, {{QStringLiteral("color-scheme"), 1U}}}});
    Theme theme;
    QSignalSpy changes(&theme, &Theme::changed);
    const DesktopAppearance desktop(theme, bus.connect(QStringLiteral("program")));
    ASSERT_TRUE(changes.wait());
    EXPECT_TRUE(theme.appearance().isDark);

    portal.change(appearanceGroup, QStringLiteral("color-scheme"), 2U);
    ASSERT_TRUE(changes.wait());
    EXPECT_FALSE(theme.appearance().isDark);

    const ApplicationPalette dark(0x303030, 0xE0E0E0, 0x00AA44);
    EXPECT_FALSE(theme.appearance().isDark) << "light is preferred, whatever the palette";
    portal.change(appearanceGroup, QStringLiteral("color-scheme"), 0U);
    ASSERT_TRUE(changes.wait());
    EXPECT_TRUE(theme.appearance().isDark) << "no preference";
}

TEST(DesktopAppearance, OddSettingsAreIgnored)
{
    Bus bus;
    SettingsPortal portal(
        bus.connect(QStringLiteral("portal")),
        {{appearanceGroup,
          {{QStringLiteral("color-scheme"), QStringLiteral("dark")},
           {QStringLiteral("accent-color"), QVariant::fromValue(SettingsPortal::Rgb{-1, 2, 0})},
           {QStringLiteral("reduced-motion"), 1U}}}});
    Theme theme;
    QSignalSpy changes(&theme, &Theme::changed);
    const DesktopAppearance desktop(theme, bus.connect(QStringLiteral("program")));
    ASSERT_TRUE(changes.wait());
    EXPECT_TRUE(theme.appearance().isMotionReduced);
    EXPECT_FALSE(theme.appearance().isDark);
    EXPECT_FALSE(theme.appearance().highlight.isValid());
}

TEST(DesktopAppearance, AChangeOfTheApplicationsFontIsAnnounced)
{
    Theme theme;
    const DesktopAppearance desktop(theme, noBus());
    QSignalSpy changes(&theme, &Theme::changed);
    const QFont before = QApplication::font();
    QFont other = before;
    other.setFamily(QStringLiteral("DejaVu Serif"));
    QApplication::setFont(other);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(theme.font(TextStyle::caption).family(), QStringLiteral("DejaVu Serif"));
    QApplication::setFont(before);
}
