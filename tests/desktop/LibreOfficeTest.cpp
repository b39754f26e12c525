#include "SelectionFixture.h"

#include <QFile>

namespace {

/// A document in a word processor, which takes its time for everything.
class LibreOfficeTest : public SelectionFixture
{
protected:
    LibreOfficeTest()
    {
        startAccessibilityBus();
        QFile file(m_session.path("document.txt"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("A paragraph.\nAnother naïve 👩 one.\n");
        file.close();
        m_session.start("soffice", {"--writer", "--norestore", "--nologo", "--nofirststartwizard",
                                    "-env:UserInstallation=file://" + m_session.path("office"),
                                    file.fileName()});
        waitUntilInFront(m_session.waitForWindow({"--name", "document.txt"}));
    }

    void selectDocument()
    {
        m_session.waitUntil("the document to be selected", [this] {
            m_session.xdotool({"key", "ctrl+a"});
            return selection("primary").contains("Another");
        });
    }
};

TEST_F(LibreOfficeTest, WhatIsSelectedIsTakenAndAfterwardsNothing)
{
    selectDocument();
    putOnClipboard("earlier");
    expectGrab("A paragraph.\nAnother naïve 👩 one.");
    EXPECT_EQ(clipboard(), "earlier");
    m_session.xdotool({"key", "ctrl+Home"});
    m_session.waitUntil("nothing to be selected", [this] { return grab() == std::nullopt; });
    EXPECT_EQ(clipboard(), "earlier");
}

} // namespace
