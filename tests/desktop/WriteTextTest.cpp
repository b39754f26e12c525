#include "SelectionFixture.h"

#include <QClipboard>

namespace {

class WriteTextTest : public SelectionFixture
{
protected:
    void write(const std::string& text)
    {
        m_ports.pasteboard->clear();
        m_ports.pasteboard->writeText(text);
    }
};

TEST_F(WriteTextTest, TextIsOfferedUnderEveryNameThatProgramsAskFor)
{
    write("naïve ÿ");
    for (const char* target : {"UTF8_STRING", "text/plain;charset=utf-8", "TEXT"})
        EXPECT_EQ(clipboard(target), "naïve ÿ") << target;
    EXPECT_EQ(clipboard("STRING"), "na\xEFve \xFF");
    EXPECT_EQ(m_ports.pasteboard->plainText(std::chrono::seconds(1)), "naïve ÿ");
}

TEST_F(WriteTextTest, TextThatLatin1LacksIsNotOfferedInIt)
{
    for (const char* text : {"Ā", "中文", "👩", "\uFEFFa"}) {
        write(text);
        EXPECT_EQ(clipboard(), text);
        EXPECT_FALSE(clipboard("TARGETS").contains("\nSTRING\n")) << text;
    }
}

TEST_F(WriteTextTest, AnEmptyTextIsATextToo)
{
    write("");
    EXPECT_TRUE(clipboard("TARGETS").contains("UTF8_STRING"));
}

TEST_F(WriteTextTest, QtProgramsPasteIt)
{
    write("naïve 👩");
    EXPECT_EQ(QApplication::clipboard()->text(), QString::fromUtf8("naïve 👩"));
}

} // namespace
