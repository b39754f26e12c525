#include "SelectionFixture.h"
#include "SelectionOwner.h"

namespace {

constexpr std::chrono::milliseconds limit(500);

class PasteboardTest : public SelectionFixture
{
protected:
    Pasteboard& pasteboard() { return *m_ports.pasteboard; }

    void write(const Pasteboard::Item& item)
    {
        pasteboard().clear();
        pasteboard().write(item);
    }

    const Pasteboard::Item m_item = {{"UTF8_STRING", "naïve", "UTF8_STRING 8"},
                                     {"TEXT", "na\xEFve", "STRING 8"},
                                     {"image/png", std::string("\x89PNG\0\xFF", 6), "image/png 8"},
                                     {"numbers", std::string(8, '\1'), "INTEGER 32"}};
};

TEST_F(PasteboardTest, AnEmptyClipboardHasNoItemsAndNoText)
{
    EXPECT_TRUE(pasteboard().snapshot(limit).items.empty());
    EXPECT_EQ(pasteboard().plainText(limit), std::nullopt);
}

TEST_F(PasteboardTest, WhatIsWrittenIsReadByOthersAndByItself)
{
    write(m_item);
    EXPECT_EQ(clipboard("UTF8_STRING"), "naïve");
    EXPECT_EQ(clipboard("TEXT"), "na\xEFve");
    EXPECT_EQ(clipboard("image/png").toStdString(), m_item[2].data);
    EXPECT_EQ(clipboard("unknown"), "");
    EXPECT_THAT(pasteboard().snapshot(limit).items, testing::ElementsAre(m_item));
    EXPECT_EQ(pasteboard().plainText(limit), "naïve");
}

TEST_F(PasteboardTest, ItemsAccumulateUntilTheClipboardIsCleared)
{
    write({m_item[0]});
    pasteboard().write({m_item[1], {"UTF8_STRING", "second", "UTF8_STRING 8"}});
    EXPECT_EQ(clipboard("UTF8_STRING"), "naïve");
    EXPECT_EQ(clipboard("TEXT"), "na\xEFve");
    pasteboard().clear();
    EXPECT_EQ(clipboard("TARGETS"), "");
    pasteboard().write({m_item[1]});
    EXPECT_EQ(clipboard("UTF8_STRING"), "");
}

TEST_F(PasteboardTest, AnItemWithoutDataIsWrittenAsAnEmptyOne)
{
    write({});
    EXPECT_EQ(clipboard("TARGETS").toStdString(), "TARGETS\nTIMESTAMP\nMULTIPLE\n");
    EXPECT_EQ(pasteboard().snapshot(limit).items, std::vector<Pasteboard::Item>(1));
}

TEST_F(PasteboardTest, EveryCopyCountsAlsoTheSameOwnersNext)
{
    const std::uint64_t first = pasteboard().changeCount();
    startApp({"--copies", "same"});
    m_session.xdotool({"key", "ctrl+c"});
    m_session.waitUntil("a change", [&] { return pasteboard().changeCount() != first; });
    m_session.waitUntil("the copy", [&] { return clipboard() == "same"; });
    const std::uint64_t second = pasteboard().changeCount();
    m_session.xdotool({"key", "ctrl+c"});
    m_session.waitUntil("a change", [&] { return pasteboard().changeCount() != second; });
}

TEST_F(PasteboardTest, AChangeCountsFromTheMomentOfItsMaking)
{
    for (int i = 0; i < 100; ++i) {
        const std::uint64_t count = pasteboard().changeCount();
        const SelectionOwner owner([](const std::string&) { return SelectionOwner::Answer{}; });
        ASSERT_NE(pasteboard().changeCount(), count) << i;
    }
}

TEST_F(PasteboardTest, ReadingIsNoChange)
{
    putOnClipboard("text");
    const std::uint64_t count = pasteboard().changeCount();
    EXPECT_FALSE(pasteboard().snapshot(limit).items.empty());
    EXPECT_EQ(pasteboard().plainText(limit), "text");
    EXPECT_EQ(pasteboard().changeCount(), count);
}

TEST_F(PasteboardTest, AnotherProgramsCopyEndsWhatWasOffered)
{
    write(m_item);
    putOnClipboard("another");
    EXPECT_EQ(pasteboard().plainText(limit), "another");
    write(m_item);
    EXPECT_EQ(clipboard(), "naïve");
}

TEST_F(PasteboardTest, AReaderThatVanishesInTheMiddleIsForgotten)
{
    write({{"UTF8_STRING", QByteArray(30'000'000, 'x').toStdString(), "UTF8_STRING 8"}});
    for (int i = 0; i < 3; ++i) {
        QProcess& reader = m_session.start(
            "sh", {"-c", "xclip -o -selection clipboard -t UTF8_STRING | head -c 1"});
        reader.waitForReadyRead();
        m_session.end(reader);
    }
    EXPECT_EQ(clipboard().size(), 30'000'000);
}

TEST_F(PasteboardTest, OnlyTargetsThatCarryDataAreAskedFor)
{
    SelectionOwner* named = nullptr;
    SelectionOwner owner([&](const std::string& target) -> SelectionOwner::Answer {
        if (target == "TARGETS")
            return {"ATOM", 32,
                    named->atoms({"TARGETS", "DELETE", "INSERT_SELECTION", "INSERT_PROPERTY",
                                  "MULTIPLE", "TIMESTAMP", "SAVE_TARGETS", "PIXMAP",
                                  "application/x-qt-image", "text/html", "refused", "text/html"})};
        return {target == "refused" ? "" : target, 8, "data of " + target};
    });
    named = &owner;
    EXPECT_THAT(
        pasteboard().snapshot(limit).items,
        testing::ElementsAre(Pasteboard::Item{{"text/html", "data of text/html", "text/html 8"}}));
    EXPECT_THAT(owner.asked(), testing::ElementsAre("TARGETS", "text/html", "refused"));
}

} // namespace
