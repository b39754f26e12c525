#include "AtSpi.h"
#include "SelectionFixture.h"

#include <QCoroTask>
#include <QFile>
#include <QStandardPaths>

namespace {

constexpr std::chrono::seconds limit(10);

/// Chromium with a page of ours in front.
class ChromiumTest : public SelectionFixture
{
protected:
    enum class Accessibility { off, on };

    void show(const QByteArray& page, Accessibility accessibility = Accessibility::off)
    {
        QFile file(m_session.path("page.html"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("<meta charset='utf-8'><title>Page</title>" + page);
        file.close();
        QStringList arguments = {program(),
                                 "--no-sandbox",
                                 "--disable-gpu",
                                 "--no-first-run",
                                 "--disable-background-networking",
                                 "--disable-component-update",
                                 "--disable-sync",
                                 "--user-data-dir=" + m_session.path("chromium"),
                                 "--app=file://" + file.fileName()};
        if (accessibility == Accessibility::on) {
            startAccessibilityBus();
            arguments = QStringList{"ACCESSIBILITY_ENABLED=1"} + arguments +
                        QStringList{"--force-renderer-accessibility"};
        }
        m_session.start("env", arguments);
        m_window = m_session.waitForWindow({"--name", "^Page"});
        waitUntilInFront(m_window);
    }

    /// The address of another page.
    QByteArray otherPage()
    {
        QFile file(m_session.path("other.html"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("<title>Other</title><p>Something else.");
        return "file://" + file.fileName().toUtf8();
    }

    /// Once the page is there to be selected.
    void selectAllOf(const QByteArray& end)
    {
        m_session.waitUntil("the page to be selected", [&] {
            m_session.xdotool({"key", "ctrl+a"});
            return selection("primary").endsWith(end);
        });
    }

    /// What the keys select of a field, which is `text`.
    void selectPart(const QString& start, const QString& key, const QByteArray& text)
    {
        m_session.waitUntil("the part to be selected", [&] {
            m_session.xdotool({"key", start, "key", key});
            return selection("primary") == text;
        });
    }

    Text told() { return m_atSpi.selectedText(process(), limit); }

    /// Once it has noticed that it may tell.
    void waitUntilTold(const std::string& text)
    {
        m_session.waitUntil("the field to tell its selection", [&] {
            QCoreApplication::processEvents();
            return told() == text;
        });
    }

    /// Some distributions have it by its longer name only.
    static QString program()
    {
        return QStandardPaths::findExecutable("chromium").isEmpty() ? "chromium-browser"
                                                                    : "chromium";
    }

    pid_t process()
    {
        const QByteArray line = m_session.property(m_window, "_NET_WM_PID");
        return line.mid(line.lastIndexOf(' ') + 1).toInt();
    }

    const QByteArray m_page = "<p>First <a href='x'>linked</a> naïve 👩 paragraph.<p>Second.";
    const std::string m_text = "First linked naïve 👩 paragraph.\n\nSecond.";
    std::uint32_t m_window = 0;
    AtSpi m_atSpi;
};

TEST_F(ChromiumTest, WhatIsNotSelectedAnyMoreIsNotTaken)
{
    show(m_page);
    selectAllOf("Second.");
    expectGrabOver("earlier", m_text);
    m_session.xdotool(
        {"mousemove", "--window", QString::number(m_window), "200", "400", "click", "1"});
    // The click needs its time to come to the page.
    m_session.waitUntil("nothing to be selected", [this] { return grab() == std::nullopt; });
    EXPECT_EQ(selection("primary"), QByteArray::fromStdString(m_text)); // as ever
    EXPECT_EQ(clipboard(), "earlier");
}

TEST_F(ChromiumTest, WhatWasSelectedOnThePageBeforeIsNotTaken)
{
    show("<p>before <a href='" + otherPage() + "'>next</a>");
    selectAllOf("next");
    m_session.xdotool({"key", "Tab", "key", "Return"});
    m_session.waitForWindow({"--name", "^Other"});
    EXPECT_EQ(grab(), std::nullopt);
    EXPECT_EQ(selection("primary"), "before next");
}

TEST_F(ChromiumTest, ASelectedPageIsCopiedAndTheClipboardPutBack)
{
    show(m_page);
    selectAllOf("Second.");
    EXPECT_TRUE(succeeds([&] {
        putOnClipboard("earlier");
        return QCoro::waitFor(SelectionGrabber::copySelection(m_ports)) == m_text;
    }));
    EXPECT_EQ(clipboard(), "earlier");
}

TEST_F(ChromiumTest, TheSelectionInAFieldIsToldOverAtSpi)
{
    show("<textarea autofocus>a naïve text</textarea>", Accessibility::on);
    selectAllOf("a naïve text");
    waitUntilTold("a naïve text");
    expectGrab("a naïve text");
}

TEST_F(ChromiumTest, WhereItTellsAWrongRangeTheTextIsWholeAllTheSame)
{
    show("<textarea autofocus>plain 👩👩 text</textarea>", Accessibility::on);
    selectPart("ctrl+Home", "shift+Right", "p");
    waitUntilTold("p");
    selectPart("ctrl+End", "shift+Home", "plain 👩👩 text");
    expectGrab("plain 👩👩 text");
    selectPart("ctrl+End", "shift+ctrl+Left", "text");
    expectGrab("text");
    EXPECT_EQ(told(), std::nullopt);
}

TEST_F(ChromiumTest, APageWithLinksComesWholeAlsoWhereItTellsItsSelection)
{
    show(m_page, Accessibility::on);
    selectAllOf("Second.");
    expectGrab(m_text);
}

} // namespace
