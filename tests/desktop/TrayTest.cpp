#include "ApplicationFixture.h"

namespace {

class TrayTest : public ApplicationFixture
{
protected:
    TrayTest() = default;
    explicit TrayTest(const DesktopSession::Options& options) : ApplicationFixture(options) {}

    QProcess& startXEmbedPanel(const QPoint& place = {1200, 0})
    {
        m_icon = place + QPoint(12, 12);
        return startPanel(PITHWISE_XEMBED_PANEL,
                          {QString::number(place.x()), QString::number(place.y())});
    }

    /// The window that comes to be the icon, once it can be clicked.
    std::uint32_t nextIcon(QProcess& panel)
    {
        const QByteArray line = nextLine(panel);
        EXPECT_TRUE(line.startsWith("icon ")) << line.toStdString();
        const std::uint32_t icon = line.mid(5).toUInt();
        m_session.waitUntil("the icon to be there", [&] { return isViewable(icon); });
        return icon;
    }

    /// Ends a panel. Waits until the application knows: where the next one comes at once, Qt gives
    /// it an icon for the old one's end and another for its own arrival.
    void endXEmbedPanel(QProcess& panel, std::uint32_t icon)
    {
        m_session.end(panel);
        m_session.waitUntil("the icon's end", [&] { return !isViewable(icon); });
        EXPECT_TRUE(isAnswering());
    }

    bool isViewable(std::uint32_t window)
    {
        QProcess question;
        question.setProcessEnvironment(m_session.environment());
        question.start("xwininfo", {"-id", QString::number(window)});
        question.waitForFinished();
        return question.readAllStandardOutput().contains("Map State: IsViewable");
    }

    /// The place of the popover after a click on the icon of a panel at `place`.
    QRect openAtIcon(const QPoint& place, const QStringList& variables = {})
    {
        QProcess& panel = startXEmbedPanel(place);
        launch(variables);
        nextIcon(panel);
        click(m_icon);
        waitUntilShown();
        return areaOf(popover());
    }

    QProcess& startStatusNotifierPanel(const QStringList& arguments = {})
    {
        return startPanel(PITHWISE_STATUS_NOTIFIER_PANEL, arguments);
    }

    /// The bus name of the icon that comes.
    QString nextItem(QProcess& panel)
    {
        const QByteArray line = nextLine(panel);
        EXPECT_TRUE(line.startsWith("item ")) << line.toStdString();
        return line.mid(5);
    }

    void activate(const QString& item)
    {
        m_session.run("dbus-send",
                      {"--session", "--print-reply", "--dest=" + item, "/StatusNotifierItem",
                       "org.kde.StatusNotifierItem.Activate", "int32:0", "int32:0"});
    }

    QByteArray propertyOf(const QString& item, const QString& name)
    {
        return m_session.run("dbus-send",
                             {"--session", "--print-reply", "--dest=" + item, "/StatusNotifierItem",
                              "org.freedesktop.DBus.Properties.Get",
                              "string:org.kde.StatusNotifierItem", "string:" + name});
    }

    void movePointer(const QPoint& point)
    {
        m_session.xdotool({"mousemove", QString::number(point.x()), QString::number(point.y())});
    }

    QPoint m_icon; // where it can be clicked
};

class TrayOnTwoMonitorsTest : public TrayTest
{
protected:
    TrayOnTwoMonitorsTest()
        : TrayTest({.size = {1600, 900}, .monitors = {{0, 0, 800, 900}, {800, 0, 800, 900}}})
    {}
};

class TrayOnLowScreenTest : public TrayTest
{
protected:
    TrayOnLowScreenTest() : TrayTest({.size = {1024, 576}}) {}
};

class TrayOnCompositedDesktopTest : public TrayTest
{
protected:
    TrayOnCompositedDesktopTest()
        : TrayTest({.windowManager = DesktopSession::WindowManager::compositing})
    {}
};

TEST_F(TrayTest, TheIconClickedTwiceOpensAndCloses)
{
    QProcess& panel = startXEmbedPanel();
    launch();
    nextIcon(panel);
    click(m_icon);
    waitUntilShown();
    click(m_icon);
    waitUntilHidden();
}

TEST_F(TrayOnLowScreenTest, ThePopoverIsAsHighAsTheWorkArea)
{
    launch();
    EXPECT_EQ(run({"toggle"}), 0) << m_error;
    waitUntilShown();
    EXPECT_EQ(areaOf(popover()).height(), 576);
}

TEST_F(TrayTest, EachOfSeveralQuickClicksCounts)
{
    QProcess& panel = startXEmbedPanel();
    launch();
    nextIcon(panel);
    click(m_icon, 1, 3);
    waitUntilShown();
    ASSERT_TRUE(isAnswering());
    EXPECT_TRUE(isShown());
}

TEST_F(TrayTest, ThePopoverIsBelowTheIcon)
{
    const QRect area = openAtIcon({600, 0});
    EXPECT_EQ(area.size(), QSize(460, 640));
    EXPECT_NEAR(area.center().x(), m_icon.x(), 2);
    EXPECT_GE(area.top(), 24);
    EXPECT_LT(area.top(), 40);
}

TEST_F(TrayTest, ThePopoverIsWholeBesideAnIconInACorner)
{
    const QRect area = openAtIcon({1256, 876});
    EXPECT_EQ(area.right(), 1279);
    EXPECT_LT(area.bottom(), 876);
    EXPECT_GT(area.bottom(), 860);
}

TEST_F(TrayTest, ThePopoverIsWholeAlsoAtALargerScale)
{
    const QRect area = openAtIcon({900, 0}, {"QT_SCALE_FACTOR=1.5"});
    EXPECT_EQ(area.width(), 690);
    EXPECT_TRUE(QRect(0, 0, 1280, 900).contains(area)); // 960 would be its height
    EXPECT_GT(area.height(), 890);
}

TEST_F(TrayOnCompositedDesktopTest, ThePopoverHasRoomForItsShadow)
{
    const QRect area = openAtIcon({600, 0});
    EXPECT_GT(area.width(), 460);
    EXPECT_EQ(area.width() - 460, area.height() - 640);
    EXPECT_NEAR(area.center().x(), m_icon.x(), 2);
    click({area.left() + 1, area.bottom() - 300}); // the shadow is outside
    waitUntilHidden();
}

TEST_F(TrayTest, TheIconsWindowHasTheProgramsName)
{
    QProcess& panel = startXEmbedPanel();
    launch();
    EXPECT_EQ(m_session.property(nextIcon(panel), "_NET_WM_NAME"), "_NET_WM_NAME = \"Pithwise\"");
}

TEST_F(TrayTest, AnXEmbedHostMayComeLateAndRestart)
{
    launch();
    for (int i = 0; i < 2; ++i) {
        QProcess& panel = startXEmbedPanel();
        const std::uint32_t icon = nextIcon(panel);
        click(m_icon);
        waitUntilShown();
        click(m_icon);
        waitUntilHidden();
        panel.waitForReadyRead(1);
        EXPECT_EQ(panel.readAll(), ""); // another icon in its place
        endXEmbedPanel(panel, icon);
    }
}

TEST_F(TrayTest, AnXEmbedHostMayRestartWhileThePopoverIsShown)
{
    QProcess* panel = &startXEmbedPanel();
    launch();
    std::uint32_t icon = nextIcon(*panel);
    click(m_icon);
    waitUntilShown();
    for (int i = 0; i < 2; ++i) {
        endXEmbedPanel(*panel, icon);
        panel = &startXEmbedPanel();
        icon = nextIcon(*panel);
        EXPECT_TRUE(isShown());
    }
    click(m_icon);
    waitUntilHidden();
    click(m_icon);
    waitUntilShown();
}

TEST_F(TrayTest, AnIconOnTheBusActivatedTwiceOpensAndCloses)
{
    QProcess& panel = startStatusNotifierPanel();
    launch();
    const QString item = nextItem(panel);
    activate(item);
    waitUntilShown();
    activate(item);
    waitUntilHidden();
}

TEST_F(TrayTest, TheClickOnAnIconOnTheBusThatClosesDoesNotOpenAgain)
{
    QProcess& panel = startStatusNotifierPanel();
    launch();
    const QString item = nextItem(panel);
    activate(item);
    waitUntilShown();
    click({640, 890}); // on a panel, which passes it on
    waitUntilHidden();
    activate(item);
    ASSERT_TRUE(isAnswering());
    EXPECT_FALSE(isShown());
}

TEST_F(TrayTest, TheClickOnAnIconOnTheBusShowsAPopoverOfAnotherWorkspaceHere)
{
    QProcess& panel = startStatusNotifierPanel();
    launch();
    const QString item = nextItem(panel);
    activate(item);
    waitUntilShown();
    m_session.xdotool({"set_desktop", "1"});
    waitUntilHidden();
    click({640, 890}); // on a panel, which passes it on
    activate(item);
    waitUntilShown();
    waitUntilInFront(popover());
}

TEST_F(TrayTest, ThePopoverIsWhereAnIconOnTheBusWasClicked)
{
    QProcess& panel = startStatusNotifierPanel();
    launch();
    const QString item = nextItem(panel);
    movePointer({400, 10});
    activate(item);
    waitUntilShown();
    EXPECT_NEAR(areaOf(popover()).center().x(), 400, 2);
}

TEST_F(TrayTest, AnIconOnTheBusHasTheProgramsName)
{
    QProcess& panel = startStatusNotifierPanel();
    launch();
    const QString item = nextItem(panel);
    EXPECT_TRUE(propertyOf(item, "Title").contains("\"Pithwise\""));
    EXPECT_TRUE(propertyOf(item, "ToolTip").contains("\"Pithwise\""));
}

TEST_F(TrayTest, AHostOnTheBusMayComeLateAndRestart)
{
    launch();
    for (int i = 0; i < 2; ++i) {
        QProcess& panel = startStatusNotifierPanel();
        activate(nextItem(panel));
        waitUntilShown();
        EXPECT_EQ(run({"toggle"}), 0) << m_error;
        waitUntilHidden();
        m_session.end(panel);
    }
}

TEST_F(TrayTest, AHostOnTheBusMayRestartWhileThePopoverIsShown)
{
    QProcess* panel = &startStatusNotifierPanel();
    launch();
    QString item = nextItem(*panel);
    activate(item);
    waitUntilShown();
    for (int i = 0; i < 2; ++i) {
        m_session.end(*panel);
        panel = &startStatusNotifierPanel();
        item = nextItem(*panel);
        EXPECT_TRUE(isShown());
    }
    activate(item);
    waitUntilHidden();
    activate(item);
    waitUntilShown();
}

TEST_F(TrayTest, AHostOnTheBusMayComeAfterItsWatcher)
{
    QProcess& panel = startStatusNotifierPanel({"300"});
    launch();
    activate(nextItem(panel));
    waitUntilShown();
}

TEST_F(TrayOnTwoMonitorsTest, ThePopoverIsWholeOnTheMonitorOfTheIcon)
{
    QProcess& panel = startXEmbedPanel({776, 0});
    launch();
    nextIcon(panel);
    click(m_icon);
    waitUntilShown();
    EXPECT_EQ(areaOf(popover()).right(), 799);
}

TEST_F(TrayOnTwoMonitorsTest, WithoutAnIconThePopoverIsInTheCornerOfThePointersMonitor)
{
    launch();
    movePointer({100, 700});
    EXPECT_EQ(run({"toggle"}), 0);
    waitUntilShown();
    EXPECT_NEAR(areaOf(popover()).right(), 799, 5);
    EXPECT_EQ(run({"toggle"}), 0);
    waitUntilHidden();
    movePointer({1000, 700});
    EXPECT_EQ(run({"toggle"}), 0);
    waitUntilShown();
    EXPECT_NEAR(areaOf(popover()).right(), 1599, 5);
}

} // namespace
