#include "ClipboardManager.h"
#include "SelectionFixture.h"
#include "X11Connection.h"

#include <chrono>
#include <future>
#include <stdexcept>

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr seconds limit(20);

/// A program that pastes a large text when the test wants it to.
class SlowReader
{
public:
    /// Returns when the owner has announced the text's pieces.
    void begin()
    {
        xcb_convert_selection(m_connection->get(), m_window, atom("CLIPBOARD"), atom("UTF8_STRING"),
                              m_property, XCB_CURRENT_TIME);
        waitFor(XCB_SELECTION_NOTIFY);
        EXPECT_EQ(read().type, atom("INCR"));
    }

    /// Asks for the clipboard's text, and copies something else at once.
    void askAndCopy()
    {
        xcb_convert_selection(m_connection->get(), m_window, atom("CLIPBOARD"), atom("UTF8_STRING"),
                              m_property, XCB_CURRENT_TIME);
        xcb_set_selection_owner(m_connection->get(), m_window, atom("CLIPBOARD"), XCB_CURRENT_TIME);
        xcb_flush(m_connection->get());
    }

    std::string answer()
    {
        waitFor(XCB_SELECTION_NOTIFY);
        return read().bytes;
    }

    /// How many bytes the pieces have.
    std::size_t readRest()
    {
        std::size_t total = 0;
        for (;;) {
            const X11Connection::Property piece = read();
            if (piece.type == atom("UTF8_STRING") && piece.bytes.empty())
                return total;
            total += piece.bytes.size();
            if (piece.type == XCB_NONE)
                waitFor(XCB_PROPERTY_NOTIFY);
        }
    }

private:
    static X11Connection::Deadline deadline() { return X11Connection::Clock::now() + limit; }

    xcb_atom_t atom(const char* name) { return m_connection->atom(name, deadline()); }

    void waitFor(int type)
    {
        X11Connection::Event event;
        do {
            event = m_connection->nextEvent(deadline());
            if (!event)
                throw std::runtime_error("The owner does not go on.");
        } while ((event->response_type & 0x7F) != type);
    }

    X11Connection::Property read()
    {
        return m_connection
            ->property(m_window, m_property, 10'000'000, deadline(),
                       X11Connection::Afterwards::remove)
            .value_or(X11Connection::Property{XCB_NONE, 8, {}});
    }

    std::unique_ptr<X11Connection> m_connection = X11Connection::open();
    xcb_window_t m_window = m_connection->createWindow();
    xcb_atom_t m_property = atom("PIECES");
};

class HandOverTest : public SelectionFixture
{
protected:
    Pasteboard& pasteboard() { return *m_ports.pasteboard; }

    void write(const std::string& text)
    {
        pasteboard().clear();
        pasteboard().writeText(text);
    }

    /// Ends when serveUntilReplaced() does.
    std::future<void> served()
    {
        return std::async(std::launch::async, [this] { pasteboard().serveUntilReplaced(); });
    }
};

TEST_F(HandOverTest, TextIsWrittenInTheFormsThatProgramsAskFor)
{
    write("naïve");
    EXPECT_EQ(clipboard("UTF8_STRING"), "naïve");
    EXPECT_EQ(clipboard("text/plain;charset=utf-8"), "naïve");
    EXPECT_EQ(clipboard("TEXT"), "naïve");
    EXPECT_EQ(clipboard("STRING"), "na\xEFve");
    write("👩");
    EXPECT_EQ(clipboard("UTF8_STRING"), "👩");
    EXPECT_EQ(clipboard("STRING"), "");
    write("\xFF");
    EXPECT_EQ(clipboard("STRING"), "");
}

TEST_F(HandOverTest, AnEmptyTextIsTextToo)
{
    write("");
    EXPECT_EQ(pasteboard().plainText(limit), "");
    EXPECT_EQ(clipboard("TARGETS").toStdString(), "TARGETS\nTIMESTAMP\nMULTIPLE\nUTF8_STRING\n"
                                                  "text/plain;charset=utf-8\nTEXT\nSTRING\n");
}

TEST_F(HandOverTest, AClipboardManagerTakesEverything)
{
    ClipboardManager manager;
    pasteboard().clear();
    pasteboard().write({{"UTF8_STRING", "text", "UTF8_STRING 8"},
                        {"image/png", std::string("\x89PNG\0\xFF", 6), "image/png 8"}});
    EXPECT_TRUE(pasteboard().handOver(limit));
    EXPECT_THAT(manager.asked(), testing::ElementsAre("UTF8_STRING", "image/png"));
    pasteboard().serveUntilReplaced();
    m_ports = {};
    EXPECT_EQ(clipboard("UTF8_STRING"), "text");
    EXPECT_EQ(clipboard("image/png").toStdString(), std::string("\x89PNG\0\xFF", 6));
}

TEST_F(HandOverTest, ThirtyMegabytesAreTakenToo)
{
    const ClipboardManager manager;
    write(QByteArray(30'000'000, 'x').toStdString());
    EXPECT_TRUE(pasteboard().handOver(limit));
    m_ports = {};
    EXPECT_EQ(clipboard().size(), 30'000'000);
}

TEST_F(HandOverTest, WithoutAClipboardManagerNothingIsTaken)
{
    write("text");
    EXPECT_FALSE(pasteboard().handOver(limit));
    EXPECT_EQ(clipboard(), "text");
}

TEST_F(HandOverTest, ANewTextIsHandedOverAnew)
{
    const ClipboardManager manager;
    write("first");
    EXPECT_TRUE(pasteboard().handOver(limit));
    write("second");
    EXPECT_TRUE(pasteboard().handOver(limit));
    pasteboard().serveUntilReplaced();
    EXPECT_EQ(clipboard(), "second");
    // The manager's by now.
    EXPECT_FALSE(pasteboard().handOver(limit));
}

TEST_F(HandOverTest, OnlyWhatThisProgramHasWrittenIsHandedOver)
{
    ClipboardManager manager;
    EXPECT_FALSE(pasteboard().handOver(limit));
    write("text");
    putOnClipboard("another");
    EXPECT_FALSE(pasteboard().handOver(limit));
    EXPECT_TRUE(manager.asked().empty());
}

TEST_F(HandOverTest, AClipboardManagerMayRefuse)
{
    const ClipboardManager manager(ClipboardManager::Manner::refuses);
    write("text");
    EXPECT_FALSE(pasteboard().handOver(limit));
    EXPECT_FALSE(pasteboard().handOver(limit));
    EXPECT_EQ(clipboard(), "text");
}

TEST_F(HandOverTest, AFrozenClipboardManagerHoldsNothingUp)
{
    ClipboardManager manager(ClipboardManager::Manner::isFrozen);
    write("text");
    const std::future<void> task = std::async(std::launch::async, [this] {
        EXPECT_FALSE(pasteboard().handOver(milliseconds(200)));
        EXPECT_FALSE(pasteboard().handOver(milliseconds(200)));
    });
    EXPECT_EQ(task.wait_for(limit),
              std::future_status::ready); // with the manager as frozen as ever
    EXPECT_THAT(manager.asked(), testing::Contains("UTF8_STRING"));
    EXPECT_EQ(clipboard(), "text");
}

TEST_F(HandOverTest, ServingEndsWhenAnotherProgramCopies)
{
    write("text");
    const std::future<void> task = served();
    EXPECT_EQ(clipboard(), "text");
    EXPECT_EQ(task.wait_for(milliseconds(0)), std::future_status::timeout);
    putOnClipboard("another");
    EXPECT_EQ(task.wait_for(limit), std::future_status::ready);
}

TEST_F(HandOverTest, ServingEndsAtOnceWhereThereIsNothingToServe)
{
    pasteboard().serveUntilReplaced();
    pasteboard().clear();
    pasteboard().serveUntilReplaced();
    write("text");
    putOnClipboard("another");
    pasteboard().serveUntilReplaced();
}

TEST_F(HandOverTest, WhoHasAskedIsAnsweredBeforeTheEnd)
{
    SlowReader reader;
    for (int i = 0; i < 50; ++i) {
        auto brief = Pasteboard::create();
        brief->writeText("text");
        reader.askAndCopy();
        brief->serveUntilReplaced();
        brief = nullptr;
        ASSERT_EQ(reader.answer(), "text");
    }
}

TEST_F(HandOverTest, AReaderGetsAllOfItBeforeServingEnds)
{
    write(QByteArray(3'000'000, 'x').toStdString());
    SlowReader reader;
    reader.begin();
    putOnClipboard("another");
    const std::future<void> task = served();
    EXPECT_EQ(task.wait_for(milliseconds(0)), std::future_status::timeout);
    EXPECT_EQ(reader.readRest(), 3'000'000u);
    EXPECT_EQ(task.wait_for(limit), std::future_status::ready);
}

} // namespace
