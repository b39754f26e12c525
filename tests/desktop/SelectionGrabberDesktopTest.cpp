#include "SelectionFixture.h"

#include <QFile>
#include <QImage>

namespace {

using SelectionGrabberDesktopTest = SelectionFixture;

TEST_F(SelectionGrabberDesktopTest, TheSelectionOfAnApplicationComesByPrimary)
{
    putOnClipboard("earlier");
    const std::uint64_t count = m_ports.pasteboard->changeCount();
    startApp({"--editor", " a naïve 👩 text \n"});
    selectAll("naïve");
    EXPECT_EQ(grab(), "a naïve 👩 text");
    EXPECT_EQ(m_ports.pasteboard->changeCount(), count);
}

TEST_F(SelectionGrabberDesktopTest, AWordSurroundedByBlanksComesBareFromAGtkEditor)
{
    putOnClipboard("earlier");
    const std::uint64_t count = m_ports.pasteboard->changeCount();
    QFile file(m_session.path("note.txt"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("  word \n");
    file.close();
    m_session.start("mousepad", {"--disable-server", file.fileName()});
    waitUntilInFront(m_session.waitForWindow({"--name", "Mousepad$"}));
    selectAll("word");
    EXPECT_EQ(grab(), "word");
    EXPECT_EQ(m_ports.pasteboard->changeCount(), count);
    EXPECT_EQ(clipboard(), "earlier");
}

TEST_F(SelectionGrabberDesktopTest, AnApplicationThatCopiesAfter200MillisecondsIsWaitedFor)
{
    putOnClipboard("earlier");
    startApp({"--copies", " copied \n", "--delay", "200"});
    EXPECT_EQ(grab(), "copied");
    EXPECT_GE(m_milliseconds, 200);
    EXPECT_EQ(clipboard(), "earlier");
    EXPECT_GT(m_turns, 10);
}

TEST_F(SelectionGrabberDesktopTest, AnApplicationThatCopiesAfter350MillisecondsIsNot)
{
    putOnClipboard("earlier");
    startApp({"--copies", "late", "--delay", "350"});
    EXPECT_EQ(grab(), std::nullopt);
    m_session.waitUntil("the late copy", [&] { return clipboard() == "late"; });
}

TEST_F(SelectionGrabberDesktopTest, AnApplicationThatDoesNotCopyLeavesTheClipboardAlone)
{
    putOnClipboard("earlier");
    const std::uint64_t count = m_ports.pasteboard->changeCount();
    startApp({"--editor", "nothing selected"});
    EXPECT_EQ(grab(), std::nullopt);
    EXPECT_GE(m_milliseconds, 300);
    EXPECT_EQ(m_ports.pasteboard->changeCount(), count);
    EXPECT_EQ(clipboard(), "earlier");
}

TEST_F(SelectionGrabberDesktopTest, AClipboardThatWasEmptyIsEmptyAgain)
{
    startApp({"--copies", "copied"});
    EXPECT_EQ(grab(), "copied");
    EXPECT_EQ(clipboard("TARGETS"), "");
    EXPECT_TRUE(m_ports.pasteboard->items(std::chrono::seconds(1)).empty());
}

TEST_F(SelectionGrabberDesktopTest, ACopyOfOnlyWhiteSpaceIsNothingAndTheClipboardIsPutBack)
{
    putOnClipboard("earlier");
    startApp({"--copies", " \n\t"});
    EXPECT_EQ(grab(), std::nullopt);
    EXPECT_EQ(clipboard(), "earlier");
}

TEST_F(SelectionGrabberDesktopTest, ACopyOfAPictureIsNothingAndTheClipboardIsPutBack)
{
    putOnClipboard("earlier");
    startApp({"--copies", "an image"});
    EXPECT_EQ(grab(), std::nullopt);
    EXPECT_EQ(clipboard(), "earlier");
}

TEST_F(SelectionGrabberDesktopTest, ThirtyMegabytesAndAPictureArePutBackByteForByte)
{
    QProcess& owner = startApp({"--owns", "30000000"}, "Owner");
    m_session.waitUntil("the owner", [&] { return clipboard("text/html") == "<b>bold</b>"; });
    const QList<QByteArray> targets = clipboard("TARGETS").split('\n');
    std::map<QByteArray, QByteArray> before;
    for (const char* target : {"UTF8_STRING", "text/html", "image/png", "image/bmp"}) {
        ASSERT_TRUE(targets.contains(target)) << target;
        before[target] = clipboard(target);
    }
    EXPECT_GE(before["UTF8_STRING"].size(), 30'000'000);
    EXPECT_EQ(QImage::fromData(before["image/png"]).size(), QSize(64, 48));
    startApp({"--copies", "copied"});
    EXPECT_EQ(grab(), "copied");
    m_session.end(owner);
    for (const auto& [target, data] : before)
        EXPECT_TRUE(clipboard(target) == data) << target.toStdString();
    // The owner's pictures in the X server have gone with it; the same text in other codings comes
    // back where the time suffices.
    const QList<QByteArray> others = {
        "",     "SAVE_TARGETS", "PIXMAP",     "BITMAP",
        "TEXT", "STRING",       "text/plain", "application/x-qt-image"};
    const QList<QByteArray> restored = clipboard("TARGETS").split('\n');
    for (const QByteArray& target : targets) {
        EXPECT_TRUE(others.contains(target) || restored.contains(target)) << target.toStdString();
    }
}

TEST_F(SelectionGrabberDesktopTest, TheOtherProgramsContentsAreThereAfterManyGrabs)
{
    putOnClipboard("earlier");
    startApp({"--copies", "copied"});
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(grab(), "copied");
        EXPECT_EQ(clipboard(), "earlier");
    }
}

TEST_F(SelectionGrabberDesktopTest, AFrozenOwnerOfTheClipboardIsNotWaitedFor)
{
    QProcess& owner = startApp({"--owns", "1000"}, "Owner");
    m_session.waitUntil("the owner", [&] { return clipboard("text/html") == "<b>bold</b>"; });
    startApp({"--copies", "copied"});
    stop(owner);
    EXPECT_EQ(grab(), "copied");
    EXPECT_LT(m_milliseconds, 900);
    EXPECT_GT(m_turns, 10);
    resume(owner);
}

TEST_F(SelectionGrabberDesktopTest, AFrozenApplicationInFrontIsNotWaitedFor)
{
    QProcess& application = startAccessibleApp({"--editor", "frozen"});
    selectAll("frozen");
    m_session.xdotool({"key", "ctrl+c"});
    m_session.waitUntil("the copy", [&] { return clipboard() == "frozen"; });
    stop(application);
    EXPECT_EQ(grab(), std::nullopt);
    EXPECT_LT(m_milliseconds, 900);
    EXPECT_GT(m_turns, 30);
    resume(application);
    // What the application did when it went on was to copy, as at any other time.
    m_session.waitUntil("the copy", [&] { return clipboard() == "frozen"; });
}

TEST_F(SelectionGrabberDesktopTest, WithoutAnythingInFrontThereIsNothing)
{
    putOnClipboard("earlier");
    EXPECT_EQ(grab(), std::nullopt);
    EXPECT_LT(m_milliseconds, 300);
    EXPECT_EQ(clipboard(), "earlier");
}

} // namespace
