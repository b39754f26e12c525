#include "SelectionFixture.h"

#include <QClipboard>
#include <QPlainTextEdit>

namespace {

/// A window of this program in front, with all its text selected: the grab asks the very program
/// that waits for it.
class OwnProgramTest : public SelectionFixture
{
protected:
    OwnProgramTest()
    {
        m_editor.setWindowTitle("Own");
        m_editor.show();
        waitUntilInFront(static_cast<std::uint32_t>(m_editor.winId()));
        selectAll("our own text");
    }

    QPlainTextEdit m_editor{"our own text"};
};

TEST_F(OwnProgramTest, ItsSelectionComesWithoutADeadlock)
{
    expectGrab("our own text");
}

TEST_F(OwnProgramTest, ItsCopyComesWithoutADeadlock)
{
    EXPECT_EQ(QCoro::waitFor(SelectionGrabber::copySelection(m_ports)), "our own text");
    EXPECT_EQ(clipboard("TARGETS"), "");
}

TEST_F(OwnProgramTest, ItsOwnClipboardIsPutBackWithoutADeadlock)
{
    QApplication::clipboard()->setText("our own clipboard");
    m_session.waitUntil("the clipboard", [this] { return clipboard() == "our own clipboard"; });
    EXPECT_EQ(QCoro::waitFor(SelectionGrabber::copySelection(m_ports)), "our own text");
    EXPECT_EQ(clipboard(), "our own clipboard");
}

} // namespace
