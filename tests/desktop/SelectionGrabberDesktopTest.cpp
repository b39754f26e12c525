#include "SelectionFixture.h"
#include "SelectionOwner.h"
#include "WatchedPasteboard.h"

#include <QFile>
#include <QImage>

#include <atomic>
#include <thread>

namespace {

class SelectionGrabberDesktopTest : public SelectionFixture
{
protected:
    /// Has a grab call `looked` with the number of each look at the clipboard's change count: the
    /// first is before the copy that it asks for, twelve may come after it.
    void watch(const std::function<void(int)>& looked)
    {
        m_ports.pasteboard = std::make_shared<WatchedPasteboard>(m_ports.pasteboard, looked);
    }

    /// That thread would have stood still, and have had one turn in the end.
    void expectThatTheMainThreadWentOn() const { EXPECT_GT(m_turns, 3); }
};

TEST_F(SelectionGrabberDesktopTest, AnApplicationThatTellsNothingIsMadeToCopy)
{
    startApp({"--editor", " a naïve 👩 text \n"});
    selectAll("naïve");
    expectGrabOver("earlier", "a naïve 👩 text");
}

TEST_F(SelectionGrabberDesktopTest, AWordSurroundedByBlanksComesBareFromAGtkEditor)
{
    putOnClipboard("earlier");
    QFile file(m_session.path("note.txt"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("  word \n");
    file.close();
    m_session.start("mousepad", {"--disable-server", file.fileName()});
    waitUntilInFront(m_session.waitForWindow({"--name", "Mousepad$"}));
    selectAll("word");
    expectGrabWithoutCopy("word");
    EXPECT_EQ(clipboard(), "earlier");
}

TEST_F(SelectionGrabberDesktopTest, AnApplicationThatTakesItsTimeToCopyIsWaitedFor)
{
    putOnClipboard("earlier");
    QProcess& application = startApp({"--copies", " copied \n"});
    stop(application);
    const std::shared_ptr<Pasteboard> pasteboard = m_ports.pasteboard;
    watch([&](int look) {
        if (look != 6)
            return;
        const std::uint64_t count = pasteboard->changeCount();
        resume(application);
        while (pasteboard->changeCount() == count)
            std::this_thread::yield(); // for as long as a busy machine takes
    });
    EXPECT_EQ(grab(), "copied");
    EXPECT_EQ(clipboard(), "earlier");
    expectThatTheMainThreadWentOn();
}

TEST_F(SelectionGrabberDesktopTest, AnApplicationThatCopiesAfterwardsIsNot)
{
    putOnClipboard("earlier");
    QProcess& application = startApp({"--copies", "late"});
    stop(application);
    EXPECT_EQ(grab(), std::nullopt);
    resume(application);
    m_session.waitUntil("the late copy", [&] { return clipboard() == "late"; });
}

TEST_F(SelectionGrabberDesktopTest, AnApplicationThatDoesNotCopyLeavesTheClipboardAlone)
{
    putOnClipboard("earlier");
    const std::uint64_t count = m_ports.pasteboard->changeCount();
    startApp({"--editor", "nothing selected"});
    std::atomic<int> looks = 0;
    watch([&looks](int look) { looks = look; });
    EXPECT_EQ(grab(), std::nullopt);
    EXPECT_EQ(looks, 13); // it had its time
    EXPECT_EQ(m_ports.pasteboard->changeCount(), count);
    EXPECT_EQ(clipboard(), "earlier");
}

TEST_F(SelectionGrabberDesktopTest, AClipboardThatWasEmptyIsEmptyAgain)
{
    startApp({"--copies", "copied"});
    EXPECT_EQ(grab(), "copied");
    EXPECT_EQ(clipboard("TARGETS"), "");
    EXPECT_TRUE(m_ports.pasteboard->snapshot(std::chrono::seconds(1)).items.empty());
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
    // The owner's pictures in the X server go with it.
    const QList<QByteArray> others = {"",
                                      "TARGETS",
                                      "TIMESTAMP",
                                      "MULTIPLE",
                                      "SAVE_TARGETS",
                                      "PIXMAP",
                                      "BITMAP",
                                      "application/x-qt-image"};
    for (const QByteArray& target : targets) {
        if (!others.contains(target))
            before[target] = clipboard(target);
    }
    EXPECT_GE(before.size(), 8U);
    EXPECT_GE(before["UTF8_STRING"].size(), 30'000'000);
    EXPECT_EQ(QImage::fromData(before["image/png"]).size(), QSize(64, 48));
    startApp({"--copies", "copied"});
    watch([](int) {});
    EXPECT_TRUE(succeeds([this] { return grab() == "copied"; }));
    m_session.end(owner);
    for (const auto& [target, data] : before)
        EXPECT_TRUE(clipboard(target) == data) << target.toStdString();
}

TEST_F(SelectionGrabberDesktopTest, TheOtherProgramsContentsAreThereAfterManyGrabs)
{
    putOnClipboard("earlier");
    startApp({"--copies", "copied"});
    for (int i = 0; i < 5; ++i)
        expectGrabOver("earlier", "copied");
}

TEST_F(SelectionGrabberDesktopTest, AFrozenOwnerOfTheClipboardIsNeitherWaitedForNorReplaced)
{
    QProcess& owner = startApp({"--owns", "1000"}, "Owner");
    m_session.waitUntil("the owner", [&] { return clipboard("text/html") == "<b>bold</b>"; });
    QProcess& application = startApp({"--copies", "copied"});
    stop(owner);
    EXPECT_EQ(grab(), std::nullopt);
    expectThatTheMainThreadWentOn();
    EXPECT_EQ(application.readAllStandardOutput(), "");
    resume(owner);
    EXPECT_EQ(clipboard("text/html"), "<b>bold</b>");
}

TEST_F(SelectionGrabberDesktopTest, AnOwnerThatIsTooSlowKeepsAllItHas)
{
    using namespace std::chrono_literals;
    SelectionOwner* owner = nullptr;
    const std::vector<std::string> targets = {"text/html", "image/png", "UTF8_STRING", "a", "b"};
    SelectionOwner slow([&](const std::string& target) -> SelectionOwner::Answer {
        if (target == "TARGETS")
            return {"ATOM", 32, owner->atoms(targets)};
        std::this_thread::sleep_for(200ms); // of which a busy machine can only make more
        return {target, 8, "data of " + target};
    });
    owner = &slow;
    QProcess& application = startApp({"--copies", "copied"});
    EXPECT_EQ(grab(), std::nullopt);
    EXPECT_EQ(application.readAllStandardOutput(), "");
    EXPECT_EQ(slow.asked().at(1), "UTF8_STRING");
    for (const std::string& target : targets)
        EXPECT_EQ(clipboard(QString::fromStdString(target)).toStdString(), "data of " + target);
}

TEST_F(SelectionGrabberDesktopTest, AFrozenApplicationInFrontIsNotWaitedFor)
{
    QProcess& application = startAccessibleApp({"--editor", "frozen"});
    selectAll("frozen");
    m_session.xdotool({"key", "ctrl+c"});
    m_session.waitUntil("the copy", [&] { return clipboard() == "frozen"; });
    stop(application);
    EXPECT_EQ(grab(), std::nullopt);
    expectThatTheMainThreadWentOn();
    resume(application);
    // What the application did when it went on was to copy, as at any other time.
    m_session.waitUntil("the copy", [&] { return clipboard() == "frozen"; });
}

TEST_F(SelectionGrabberDesktopTest, WithoutAnythingInFrontThereIsNothing)
{
    putOnClipboard("earlier");
    std::atomic<int> looks = 0;
    watch([&looks](int look) { looks = look; });
    EXPECT_EQ(grab(), std::nullopt);
    EXPECT_EQ(looks, 1); // nobody was asked, so there is nothing to wait for
    EXPECT_EQ(clipboard(), "earlier");
}

} // namespace
