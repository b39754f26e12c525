#include "LastingPasteboard.h"

#include "ClipboardManager.h"
#include "SelectionFixture.h"

#include <algorithm>

namespace {

constexpr std::chrono::seconds limit(5);

class LastingPasteboardTest : public SelectionFixture
{
protected:
    /// The plain text in what is left.
    Text leftover()
    {
        for (const Pasteboard::Item& item : m_pasteboard.leftover(limit)) {
            for (const Pasteboard::Representation& representation : item) {
                if (representation.type == "UTF8_STRING")
                    return representation.data;
            }
        }
        return std::nullopt;
    }

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

TEST_F(LastingPasteboardTest, EveryFormIsLeft)
{
    const Pasteboard::Item item = {{"image/png", std::string("\x89PNG\0\n", 6), ""},
                                   {"text/html", "<b>bold</b>", ""}};
    m_pasteboard.clear();
    m_pasteboard.write(item);
    const auto left = m_pasteboard.leftover(limit);
    ASSERT_EQ(left.size(), 1U);
    const auto has = [&](const Pasteboard::Representation& wanted) {
        return std::any_of(left[0].begin(), left[0].end(), [&](const auto& representation) {
            return representation.type == wanted.type && representation.data == wanted.data;
        });
    };
    EXPECT_TRUE(has(item[0]) && has(item[1]));
}

TEST_F(LastingPasteboardTest, NothingIsLeftWhenAnotherProgramHasCopiedTheSame)
{
    write("the same");
    putOnClipboard("the same");
    EXPECT_EQ(leftover(), std::nullopt);
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
    ClipboardManager manager(ClipboardManager::Manner::isFrozen);
    write("ours");
    EXPECT_EQ(leftover(), "ours"); // with the manager as frozen as ever
    EXPECT_THAT(manager.asked(), testing::Contains("UTF8_STRING"));
}

} // namespace
