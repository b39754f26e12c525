#include "ReaderFixture.h"

#include <QDir>
#include <QFile>

#include <functional>

namespace {

class DropTest : public ReaderFixture
{
protected:
    /// Opens the popover with its document tab.
    void openZone()
    {
        show();
        m_reader.perform(m_reader.find("radio button", "Document"), "Toggle");
        m_zone = m_reader.find("label", m_invitation).area.center();
    }

    /// Launches the application with its popover closed and the document tab behind it.
    void launchWithDocumentTab()
    {
        launchToRead();
        openZone();
        toggle();
        waitUntilHidden();
    }

    QString fileWith(const QString& name, const char* text)
    {
        QFile file(m_session.path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        return file.fileName();
    }

    /// Starts another application to drag from.
    std::uint32_t startSource(const QStringList& options)
    {
        m_source =
            &m_session.start(PITHWISE_DESKTOP_APP, QStringList{"--title", "Source"} + options);
        return m_session.waitForWindow({"--name", "^Source$"});
    }

    /// Presses the mouse at `start` and pulls.
    void pull(const QPoint& start)
    {
        moveTo(start);
        m_session.xdotool({"mousedown", "1"});
        moveTo(start + QPoint(20, 0));
        moveTo(start + QPoint(30, 10));
    }

    /// Begins to drag out of another application, which is in front then.
    void beginDrag(const QStringList& options)
    {
        const std::uint32_t window = startSource(options);
        waitUntilInFront(window);
        pull(areaOf(window).center());
        EXPECT_EQ(nextLine(*m_source), "dragging none");
    }

    /// Moves a window to where the popover is not.
    QRect moveAside(std::uint32_t window)
    {
        const QPoint place(40, 160);
        m_session.xdotool({"windowmove", QString::number(window), QString::number(place.x()),
                           QString::number(place.y())});
        m_session.waitUntil("the window to move", [&] {
            return (areaOf(window).topLeft() - place).manhattanLength() < 60;
        });
        return areaOf(window);
    }

    /// Where the first icon is in the view of a file manager's window: what is drawn on its ground
    /// first from above, right of the list of places.
    QPoint findIcon(const QRect& window)
    {
        QPoint icon;
        m_session.waitUntil("an icon", [&] {
            const QImage picture = screen();
            const QRgb ground = picture.pixel(window.center() + QPoint(100, 100));
            constexpr int places = 200; // as wide as they are, at most
            constexpr int bars = 90;    // above the view
            for (int y = window.top() + bars; y < window.center().y() && icon.isNull(); ++y) {
                for (int x = window.left() + places; x < window.left() + places + 100; ++x) {
                    if (picture.pixel(x, y) != ground)
                        icon = QPoint(x, y + 10);
                }
            }
            return !icon.isNull();
        });
        return icon;
    }

    /// Opens the popover, with what is dragged not over it yet.
    void open()
    {
        toggle();
        waitUntilShown();
        m_zone = m_reader.find("label", m_invitation).area.center();
    }

    /// Keeps what is dragged moving about `point` until `condition` holds. Its application asks
    /// about one place at a time and passes over those that it comes to before the answer: only
    /// with a hand that does not stand still it is sure to ask about the last one too.
    void dragAbout(const QPoint& point, const char* what, const std::function<bool()>& condition)
    {
        int step = 0;
        m_session.waitUntil(what, [&] {
            moveTo(point + QPoint(++step % 2, 0));
            return condition();
        });
    }

    /// The same until its application tells something, which is `line`.
    void dragUntilTold(const QPoint& point, const QByteArray& line)
    {
        dragAbout(point, line, [this] {
            m_source->waitForReadyRead(10);
            return m_source->canReadLine();
        });
        EXPECT_EQ(nextLine(*m_source), line);
    }

    void moveTo(const QPoint& point)
    {
        m_session.xdotool({"mousemove", QString::number(point.x()), QString::number(point.y())});
    }

    void release() { m_session.xdotool({"mouseup", "1"}); }

    /// Drags files from another application to the zone, where they are accepted.
    void drop(const QStringList& dragged)
    {
        beginDrag(dragged);
        open();
        dragUntilTold(m_zone, "over copy");
        release();
        EXPECT_EQ(nextLine(*m_source), "dropped copy");
    }

    /// What is on the screen at the zone's edge, left of its text.
    QRgb groundOfZone() { return screen().pixel(m_zone - QPoint(180, 0)); }

    QProcess* m_source = nullptr;    // of what is dragged
    QPoint m_zone;                   // where it can be dropped
    const QPoint m_below = {0, 300}; // from there to a place where it cannot
    const std::string m_invitation = "Drop a PDF, TXT, DOCX, RTF or image here";
};

TEST_F(DropTest, AFileThatWasDraggedBeforeThePopoverOpenedIsSummarized)
{
    launchWithDocumentTab();
    drop({"--drags", fileWith("notes.txt", "Three short words.")});
    m_reader.find("label", "notes.txt · 3 words");
    waitForSummary();
    EXPECT_TRUE(isShown());
}

TEST_F(DropTest, TheMouseAloneIsEnoughToDropAFile)
{
    launchToRead();
    const QRect source =
        moveAside(startSource({"--drags", fileWith("notes.txt", "Three short words.")}));
    openZone();
    pull(source.center());
    EXPECT_EQ(nextLine(*m_source), "dragging none");
    dragUntilTold(m_zone, "over copy");
    release();
    EXPECT_EQ(nextLine(*m_source), "dropped copy");
    m_reader.find("label", "notes.txt · 3 words");
    EXPECT_TRUE(isShown());
    click(source.center());
    waitUntilHidden();
}

TEST_F(DropTest, AFileOfTheFileManagerIsDroppedWithTheMouseAlone)
{
    launchToRead();
    const QString folder = m_session.path("documents");
    QDir().mkpath(folder);
    fileWith("documents/notes.txt", "Three short words.");
    m_session.start("pcmanfm", {"--no-desktop", folder});
    const QRect manager = moveAside(m_session.waitForWindow({"--class", "^[Pp]cmanfm$"}));
    const QPoint icon = findIcon(manager);
    openZone();
    const QRgb before = groundOfZone();
    pull(icon);
    dragAbout(m_zone, "the highlight", [&] { return groundOfZone() != before; });
    release();
    m_reader.find("label", "notes.txt · 3 words");
    waitForSummary();
    EXPECT_TRUE(isShown());
}

TEST_F(DropTest, OfSeveralFilesTheFirstIsSummarized)
{
    launchWithDocumentTab();
    drop({"--drags", fileWith("first.txt", "One."), "--drags", fileWith("b.txt", "Two 2.")});
    m_reader.find("label", "first.txt · 1 words");
}

TEST_F(DropTest, AFileThatCannotBeReadIsOneSentence)
{
    launchWithDocumentTab();
    drop({"--drags", fileWith("notes.pdf", "no PDF")});
    m_reader.find("text", "Could not open the PDF.");
    EXPECT_FALSE(m_reader.lookFor("push button", "Stop"));
}

TEST_F(DropTest, TextIsNotAccepted)
{
    launchWithDocumentTab();
    beginDrag({"--drags-text", "some text"});
    open();
    moveTo(m_zone - QPoint(40, 10));
    moveTo(m_zone);
    release();
    EXPECT_EQ(nextLine(*m_source), "dropped none");
    EXPECT_TRUE(isShown());
}

TEST_F(DropTest, AFileIsAcceptedNowhereElse)
{
    launchWithDocumentTab();
    beginDrag({"--drags", fileWith("notes.txt", "text")});
    open();
    dragUntilTold(m_zone, "over copy");
    dragUntilTold(m_zone + m_below, "over none");
    release();
    EXPECT_EQ(nextLine(*m_source), "dropped none");
    EXPECT_FALSE(m_reader.lookFor("label", "notes.txt · 1 words"));
}

TEST_F(DropTest, TheZoneIsHighlightedWhileAFileIsOverIt)
{
    launchWithDocumentTab();
    beginDrag({"--drags", fileWith("notes.txt", "text")});
    open();
    waitUntilInFront(popover());
    const QRgb before = groundOfZone();
    for (int i = 0; i < 2; ++i) {
        dragAbout(m_zone, "the highlight", [&] { return groundOfZone() != before; });
        dragAbout(m_zone + m_below, "its end", [&] { return groundOfZone() == before; });
    }
    release();
}

} // namespace
