#include "OverlayFixture.h"

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

std::filesystem::path OverlayTest::file(const char* name) const
{
    return m_session.path("pictures").toStdString() + "/" + name;
}

QStringList OverlayTest::files() const
{
    return QDir(m_session.path("pictures")).entryList(QDir::Files | QDir::Hidden);
}

QImage OverlayTest::screen()
{
    EXPECT_TRUE(Screenshot::create()->takeScreen(file("screen.png")));
    QImage image(QString::fromStdString(file("screen.png").string()), "png");
    std::filesystem::remove(file("screen.png"));
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
