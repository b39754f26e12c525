#include "LastingPasteboard.h"

#include "ClipboardManager.h"
#include "SelectionFixture.h"

namespace {

class LastingPasteboardTest : public SelectionFixture
{
protected:
    Text leftover() { return m_pasteboard.leftover(std::chrono::milliseconds(500)); }

    void write(const std::string& text)
    {
        m_pasteboard.clear();
        m_pasteboard.writeText(text);
    }

    LastingPasteboard m_pasteboard{Pasteboard::create()};
};

TEST_F(LastingPasteboardTest, NothingIsLeftWhereNothingWasWritten)
{
    putOnClipboard("earlier");
    EXPECT_EQ(leftover(), std::nullopt);
}

TEST_F(LastingPasteboardTest, TheTextWrittenLastIsLeft)
{
    write("first");
    write("naïve 👩");
    EXPECT_EQ(clipboard().toStdString(), "naïve 👩");
    EXPECT_EQ(leftover(), "naïve 👩");
}

TEST_F(LastingPasteboardTest, NothingIsLeftWhenAnotherProgramHasCopied)
{
    write("ours");
    putOnClipboard("theirs");
    EXPECT_EQ(leftover(), std::nullopt);
}

TEST_F(LastingPasteboardTest, NothingIsLeftWhereItWasCleared)
{
    write("ours");
    m_pasteboard.clear();
    EXPECT_EQ(leftover(), std::nullopt);
}

TEST_F(LastingPasteboardTest, NothingIsLeftWhereAManagerTakesIt)
{
    const ClipboardManager manager;
    write("ours");
    EXPECT_EQ(leftover(), std::nullopt);
    EXPECT_EQ(clipboard(), "ours");
}

TEST_F(LastingPasteboardTest, AManagerThatHangsIsNotWaitedFor)
{
    const ClipboardManager manager(ClipboardManager::Manner::isFrozen);
    write("ours");
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(leftover(), "ours");
    EXPECT_LT(timer.elapsed(), 1'100);
}

} // namespace
