#pragma once

#include "DesktopSession.h"
#include "Screenshot.h"

#include <QDir>
#include <QImage>

#include <gtest/gtest.h>

#include <filesystem>

/// A grey desktop, on which an overlay shows by being darker, and a user's hand.
class OverlayTest : public testing::Test
{
public:
    ~OverlayTest() override { qunsetenv("TMPDIR"); }

protected:
    static constexpr int grey = 0xC0;

    explicit OverlayTest(const DesktopSession::Options& options = {}) : m_session(options)
    {
        QDir().mkpath(m_session.path("pictures"));
        qputenv("TMPDIR", QFile::encodeName(m_session.path("pictures")));
        m_session.run("xsetroot", {"-solid", "#C0C0C0"});
        m_session.waitUntil("the grey", [this] { return cornerGrey() == grey; });
    }

    std::filesystem::path file(const char* name = "a.png") const
    {
        return m_session.path("pictures").toStdString() + "/" + name;
    }

    /// What lies in the folder for temporary files.
    QStringList files() const
    {
        return QDir(m_session.path("pictures")).entryList(QDir::Files | QDir::Hidden);
    }

    QImage screen()
    {
        EXPECT_TRUE(Screenshot::create()->takeScreen(file("screen.png")));
        QImage image(QString::fromStdString(file("screen.png").string()), "png");
        std::filesystem::remove(file("screen.png"));
        return image;
    }

    bool isDimmed() { return cornerGrey() < grey; }

    /// From then on the user could drag.
    void waitForOverlay()
    {
        m_session.waitUntil("the overlay", [this] { return isDimmed(); });
    }

    void moveTo(int x, int y)
    {
        m_session.xdotool({"mousemove", QString::number(x), QString::number(y)});
    }

    /// Without letting go.
    void drag(QPoint from, QPoint to)
    {
        moveTo(from.x(), from.y());
        m_session.xdotool({"mousedown", "1"});
        moveTo((from.x() + to.x()) / 2, (from.y() + to.y()) / 2);
        moveTo(to.x(), to.y());
    }

    QByteArray focused() { return m_session.xdotool({"getwindowfocus"}); }

    DesktopSession m_session;

private:
    int cornerGrey() { return qGray(screen().pixel(0, screen().height() - 1)); }
};
