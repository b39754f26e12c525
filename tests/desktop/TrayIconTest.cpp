#include "TrayIcon.h"

#include "SelectionFixture.h"
#include "Theme.h"

#include <QImage>
#include <QPixmap>
#include <QScreen>

namespace {

class TrayIconTest : public SelectionFixture
{
protected:
    TrayIconTest()
    {
        m_session.start(PITHWISE_XEMBED_PANEL, {"1200", "0"});
        m_icon.emplace(m_theme);
        waitFor([this] { return m_icon->geometry().isValid(); });
    }

    void waitFor(const std::function<bool()>& condition)
    {
        m_session.waitUntil("the icon", [&condition] {
            QCoreApplication::processEvents();
            return condition();
        });
    }

    /// The brightness in the middle of one of the two heads, from 0 to 255.
    int brightness() const
    {
        const QRect place = m_icon->geometry();
        const QImage image =
            QGuiApplication::primaryScreen()
                ->grabWindow(0, place.x(), place.y(), place.width(), place.height())
                .toImage();
        return qGray(image.pixel(image.width() * 9 / 32, image.height() * 5 / 8));
    }

    Theme m_theme;
    std::optional<TrayIcon> m_icon;
};

TEST_F(TrayIconTest, IsDarkInLightSurroundingsAndLightInDarkOnes)
{
    waitFor([this] { return brightness() > 0x20 && brightness() < 0x40; });
    Appearance dark;
    dark.isDark = true;
    m_theme.setAppearance(dark);
    waitFor([this] { return brightness() > 0xE0; });
    m_theme.setAppearance({});
    waitFor([this] { return brightness() > 0x20 && brightness() < 0x40; });
}

} // namespace
