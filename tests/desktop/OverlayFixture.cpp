#include "OverlayFixture.h"

#include "ScreenPicture.h"
#include "Screenshot.h"

#include <QDir>
#include <QFile>

OverlayTest::~OverlayTest()
{
    qunsetenv("TMPDIR");
}

OverlayTest::OverlayTest(const DesktopSession::Options& options) : m_session(options)
{
    QDir().mkpath(m_session.path("pictures"));
    qputenv("TMPDIR", QFile::encodeName(m_session.path("pictures")));
    m_session.run("xsetroot", {"-solid", "#C0C0C0"});
    m_session.waitUntil("the grey", [this] { return cornerGrey() == grey; });
}

QStringList OverlayTest::files() const
{
    return QDir(m_session.path("pictures")).entryList(QDir::Files | QDir::Hidden);
}

QImage OverlayTest::screen()
{
    QImage image = ScreenPicture::of(Screenshot::create()->takeScreen());
    EXPECT_FALSE(image.isNull());
    return image;
}

bool OverlayTest::isDimmed()
{
    return cornerGrey() < grey;
}

void OverlayTest::waitForOverlay()
{
    m_session.waitUntil("the overlay", [this] { return isDimmed(); });
}

void OverlayTest::moveTo(int x, int y)
{
    m_session.xdotool({"mousemove", QString::number(x), QString::number(y)});
}

void OverlayTest::drag(QPoint from, QPoint to)
{
    moveTo(from.x(), from.y());
    m_session.xdotool({"mousedown", "1"});
    moveTo((from.x() + to.x()) / 2, (from.y() + to.y()) / 2);
    moveTo(to.x(), to.y());
}

QByteArray OverlayTest::focused()
{
    return m_session.xdotool({"getwindowfocus"});
}

int OverlayTest::cornerGrey()
{
    return qGray(screen().pixel(0, screen().height() - 1));
}
