#include "ViewFixture.h"

class CaptureTabTest : public ViewTest
{
protected:
    CaptureTabTest() { state->tab = Tab::capture; }
};

TEST_F(CaptureTabTest, HasItsTextsAndSizes)
{
    show();
    QStringList texts;
    for (const char* name : {"captureWindow", "captureScreen", "captureRegion"})
        texts.push_back(button(name).text());
    EXPECT_EQ(texts, QStringList({"Active Window", "Full Screen", "Select Area"}));
    const QRect first = place(button("captureWindow"));
    const QRect second = place(button("captureScreen"));
    const QRect third = place(button("captureRegion"));
    EXPECT_EQ(second.left() - first.right() - 1, 8);
    EXPECT_EQ(third.left() - second.right() - 1, 8);
    EXPECT_NEAR(first.left() - 12, 448 - third.right() - 1, 1) << "in the middle";
    for (QLabel* label : view->findChildren<QLabel*>()) {
        if (label->text() == u"Text is read from the capture with on-device OCR.") {
            EXPECT_EQ(place(*label).top() - first.bottom() - 1, 10);
            EXPECT_NEAR(first.top() - place(find("tabArea")).top(),
                        place(find("tabArea")).bottom() - place(*label).bottom(), 1);
            return;
        }
    }
    FAIL() << "no note";
}

TEST_F(CaptureTabTest, AfterACaptureTheFocusIsBackOnTheButton)
{
    show();
    button("captureScreen").setFocus();
    press(Qt::Key_Space);
    EXPECT_TRUE(state->isWorking);
    settle();
    EXPECT_FALSE(button("captureScreen").hasFocus());
    captures.fail(0, "It failed.");
    EXPECT_TRUE(waitUntil([&] { return !state->isWorking; }));
    settle();
    EXPECT_TRUE(button("captureScreen").hasFocus());
}

TEST_F(CaptureTabTest, AFocusThatTheUserHasMovedStaysThere)
{
    show();
    button("captureScreen").setFocus();
    press(Qt::Key_Space);
    settle();
    find("length").setFocus();
    captures.fail(0, "It failed.");
    EXPECT_TRUE(waitUntil([&] { return !state->isWorking; }));
    settle();
    EXPECT_TRUE(find("length").hasFocus());
}

TEST_F(CaptureTabTest, EachButtonCaptures)
{
    show();
    const std::vector<std::pair<const char*, ScreenGrab::Kind>> buttons = {
        {"captureWindow", ScreenGrab::Kind::window},
        {"captureScreen", ScreenGrab::Kind::screen},
        {"captureRegion", ScreenGrab::Kind::region}};
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        click(buttons[i].first);
        EXPECT_TRUE(waitUntil([&] { return captures.arguments().size() == i + 1; }));
        EXPECT_EQ(captures.arguments()[i], buttons[i].second);
        for (const auto& [name, kind] : buttons)
            EXPECT_FALSE(button(name).isEnabled()) << "while working";
        captures.fail(i, "It failed.");
        EXPECT_TRUE(waitUntil([&] { return !state->isWorking; }));
        settle();
        EXPECT_TRUE(button(buttons[i].first).isEnabled());
    }
}
