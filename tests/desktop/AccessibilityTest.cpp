#include "LoopbackServer.h"
#include "ReaderFixture.h"

#include <algorithm>

namespace {

using testing::ElementsAreArray;
using Names = std::vector<std::string>;

Names operator+(Names a, const Names& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

class AccessibilityTest : public ReaderFixture
{
protected:
    static std::string nameOf(const ScreenReader::Node& node)
    {
        return node.role + ": " + node.name;
    }

    /// What can have the focus, from top to bottom and from left to right.
    std::vector<ScreenReader::Node> controls()
    {
        std::vector<ScreenReader::Node> controls = m_reader.nodes();
        std::erase_if(controls, [](const auto& node) { return !node.is(ScreenReader::focusable); });
        std::stable_sort(controls.begin(), controls.end(), [](const auto& a, const auto& b) {
            const bool isSameRow =
                a.area.top() <= b.area.bottom() && b.area.top() <= a.area.bottom();
            return isSameRow ? a.area.left() < b.area.left() : a.area.top() < b.area.top();
        });
        return controls;
    }

    Names namesOfControls()
    {
        Names names;
        for (const ScreenReader::Node& node : controls())
            names.push_back(nameOf(node));
        return names;
    }

    /// Has the popover show a summary of a text that was typed.
    void summarize()
    {
        show();
        type("Some text.");
        m_session.waitUntil("the text", [this] {
            return m_reader.find("push button", "Summarize").is(ScreenReader::enabled);
        });
        m_reader.perform(m_reader.find("push button", "Summarize"), "Press");
        waitUntilEnabled("Copy Markdown");
    }

    /// What the focus comes to with each Tab, until it is where it began.
    Names namesOnTheWayOfTab()
    {
        Names names;
        std::string last = nameOf(*m_reader.focus());
        do {
            press({"Tab"});
            m_session.waitUntil("the focus to move", [&] {
                const auto focus = m_reader.focus();
                return focus && nameOf(*focus) != last;
            });
            last = nameOf(*m_reader.focus());
            names.push_back(last);
        } while (names.size() < 30 && std::count(names.begin(), names.end(), last) == 1);
        names.pop_back(); // the first once more
        return names;
    }

    const Names m_below = {"radio button: 3 Bullets",        "slider: Length",
                           "push button: Summarize",         "label: Summary",
                           "push button: Copy Markdown",     "push button: Daily Note",
                           "push button: Replace Clipboard", "push button: Quit"};

    struct Tab
    {
        const char* name;
        Names controls;
    };

    const std::vector<Tab> m_tabs = {
        {"Clipboard",
         {"radio button: Clipboard", "text: Text to summarize", "push button: Use Clipboard",
          "push button: Clear"}},
        {"Document", {"radio button: Document", "push button: Choose File…"}},
        {"Web", {"radio button: Web", "text: Web address", "push button: Fetch & Summarize"}},
        {"Capture",
         {"radio button: Capture", "push button: Active Window", "push button: Full Screen",
          "push button: Select Area"}},
    };
};

TEST_F(AccessibilityTest, EveryControlOfEachTabHasAName)
{
    launchToRead();
    summarize();
    for (const Tab& tab : m_tabs) {
        choose(tab.name);
        EXPECT_THAT(namesOfControls(), ElementsAreArray(tab.controls + m_below));
    }
}

TEST_F(AccessibilityTest, TheGroupsOfChoicesHaveNames)
{
    launchToRead();
    show();
    m_reader.find("panel", "Source");
    m_reader.find("panel", "Kind of summary");
    for (const char* choice :
         {"Clipboard", "Document", "Web", "Capture", "3 Bullets", "Executive", "TL;DR", "Actions"})
        EXPECT_TRUE(m_reader.lookFor("radio button", choice)) << choice;
}

TEST_F(AccessibilityTest, ThePopoverIsAWindowWithTheProgramsName)
{
    launchToRead();
    show();
    EXPECT_EQ(nameOf(m_reader.nodes().front()), "frame: Pithwise");
}

TEST_F(AccessibilityTest, EveryControlOfTheSetupHasAName)
{
    LoopbackServer server;
    LoopbackServer::Answer answer;
    answer.size = 200'000'000;
    answer.body = "model";
    answer.stallAfter = 100'000'000;
    server.setAnswer("/model", answer);
    launchToReadOn({}, {"PITHWISE_MODEL_URL=" + server.url("/model").toString()});
    toggle();
    waitUntilShown();
    const ScreenReader::Node bar = m_reader.find("progress bar", "Download of the model");
    m_session.waitUntil("half of the model", [&] { return m_reader.value(bar) == 50; });
    m_reader.find("label", "50%");
    EXPECT_THAT(namesOfControls(),
                ElementsAreArray({"progress bar: Download of the model", "push button: Quit"}));
    server.setAnswer("/model", {.status = 404});
    server.release();
}

TEST_F(AccessibilityTest, AFailedSetupIsToldAndHasNames)
{
    const LoopbackServer server;
    launchToReadOn({}, {"PITHWISE_MODEL_URL=" + server.url("/nowhere").toString()});
    show();
    m_reader.find("push button", "Retry");
    const Names names = namesOfControls();
    ASSERT_EQ(names.size(), 3U);
    EXPECT_THAT(names[0], testing::StartsWith("text: "));
    const std::string message = names[0].substr(6);
    EXPECT_FALSE(message.empty());
    EXPECT_EQ(names[1], "push button: Retry");
    EXPECT_EQ(names[2], "push button: Quit");
    waitUntilTold(message);
}

TEST_F(AccessibilityTest, TabGoesFromTopToBottom)
{
    launchToRead();
    summarize();
    for (const Tab& tab : m_tabs) {
        choose(tab.name);
        Names way = namesOnTheWayOfTab();
        const auto top = std::find(way.begin(), way.end(), tab.controls.front());
        ASSERT_NE(top, way.end());
        std::rotate(way.begin(), top, way.end());
        Names expected = namesOfControls();                     // by their places
        std::erase(expected, "push button: Fetch & Summarize"); // disabled without an address
        EXPECT_THAT(way, ElementsAreArray(expected)) << tab.name;
    }
}

TEST_F(AccessibilityTest, TheKeyboardAloneIsEnough)
{
    launchToRead();
    show();
    waitUntilFocused("text", "Text to summarize");
    type("Some text.");
    waitUntilEnabled("Summarize");
    press({"Tab", "Tab", "Tab"});
    waitUntilFocused("radio button", "3 Bullets");
    press({"Right"});
    waitUntilFocused("radio button", "Executive");
    EXPECT_TRUE(m_reader.find("radio button", "Executive").is(ScreenReader::checked));
    press({"Tab", "Left"});
    m_session.waitUntil("the shorter length", [this] {
        const ScreenReader::Node slider = m_reader.find("slider", "Length");
        return m_reader.value(slider) == 0 && slider.description == "Brief";
    });
    press({"Tab", "space"});
    waitForSummary();
    press({"Escape"});
    waitUntilHidden();
}

TEST_F(AccessibilityTest, APopoverThatComesBackAtOnceHasTheFocus)
{
    launchToRead();
    show();
    for (int i = 0; i < 5; ++i) {
        toggle();
        toggle();
        waitUntilFocused("text", "Text to summarize");
    }
}

TEST_F(AccessibilityTest, TheStatusIsTold)
{
    launchToReadOn(slowModel());
    show();
    type("Some text.");
    waitUntilEnabled("Summarize");
    press({"Tab", "Tab", "Tab", "Tab", "Tab", "space"});
    waitUntilTold("Summarizing…");
    m_reader.perform(m_reader.find("push button", "Stop"), "Press");
    m_reader.find("push button", "Summarize");
}

TEST_F(AccessibilityTest, WhatIsReadOffTheScreenIsToldWhenThePopoverIsBack)
{
    launchToRead();
    show();
    choose("Capture");
    const std::uint32_t shown = popover();
    m_reader.forgetEvents();
    pressButton("Full Screen");
    const std::string status = "Capturing and reading text…";
    // Away for the picture, with whatever has been told in it.
    m_session.waitUntil("the popover to come back", [&] {
        QCoreApplication::processEvents();
        const auto& events = m_reader.events();
        const auto back = std::find_if(events.begin(), events.end(), [](const auto& event) {
            return event.kind == "StateChanged showing" && event.value == 0 &&
                   event.source.role == "frame";
        });
        return back != events.end() && popover() == shown;
    });
    m_session.waitUntil("the status to be told then", [&] {
        QCoreApplication::processEvents();
        bool isBack = false;
        bool isTold = false;
        for (const ScreenReader::Event& event : m_reader.events()) {
            if (event.kind != "StateChanged showing")
                continue;
            if (event.source.role == "frame")
                isBack = event.value == 1;
            isTold |= isBack && event.value == 1 && event.source.role == "notification" &&
                      event.source.name == status;
        }
        return isTold;
    });
}

TEST_F(AccessibilityTest, AnErrorIsTold)
{
    launchToRead();
    show();
    m_reader.perform(m_reader.find("push button", "Use Clipboard"), "Press");
    waitUntilTold("The clipboard has no text.");
    m_reader.find("text", "The clipboard has no text.");
}

TEST_F(AccessibilityTest, TheSummaryAndWhatIsDoneWithItAreTold)
{
    launchToRead();
    summarize();
    waitUntilTold("Summary: • The takeaway.");
    for (const auto& [button, message] : {std::pair{"Copy Markdown", "Markdown copied"},
                                          std::pair{"Daily Note", "Added to today's note"},
                                          std::pair{"Replace Clipboard", "Clipboard replaced"}}) {
        m_reader.perform(m_reader.find("push button", button), "Press");
        waitUntilTold(message);
    }
}

TEST_F(AccessibilityTest, WhatWasToldIsNotToldAgainWithThePopover)
{
    launchToRead();
    summarize();
    m_reader.perform(m_reader.find("push button", "Copy Markdown"), "Press");
    waitUntilTold("Markdown copied");
    toggle();
    waitUntilHidden();
    m_session.waitUntil("all to be told", [this] {
        const std::size_t before = m_reader.events().size();
        EXPECT_TRUE(isAnswering());
        QCoreApplication::processEvents();
        return m_reader.events().size() == before;
    });
    m_reader.forgetEvents();
    show();
    m_reader.perform(m_reader.find("push button", "Replace Clipboard"), "Press");
    waitUntilTold("Clipboard replaced");
    EXPECT_FALSE(isTold("Markdown copied"));
}

TEST_F(AccessibilityTest, WhatGoesWrongBeforeThePopoverOpensIsToldThen)
{
    launchToRead();
    press({"ctrl+alt+s"}); // with nothing to summarise anywhere
    waitUntilShown();
    const std::string message = "Select some text first, or copy some.";
    waitUntilTold(message);
    m_reader.find("text", message);
}

} // namespace
