#include "OutsideClicks.h"

#include "SelectionFixture.h"
#include "TestWindow.h"

#include <QMenu>
#include <QWindow>

namespace {

class OutsideClicksTest : public SelectionFixture
{
protected:
    void click(int x, int y, int button = 1)
    {
        mouse({"mousemove", QString::number(x), QString::number(y), "click",
               QString::number(button)});
    }

    void press(int x, int y)
    {
        mouse({"mousemove", QString::number(x), QString::number(y)});
        mouse({"mousedown", "1"});
    }

    void moveBy(int x, int y)
    {
        mouse({"mousemove_relative", "--", QString::number(x), QString::number(y)});
    }

    void release() { mouse({"mouseup", "1"}); }

    /// Makes a click of which is told, before which all others have been.
    void expectSoFar(int count)
    {
        click(1270, 890);
        m_session.waitUntil("the click", [&] {
            QCoreApplication::processEvents();
            return m_clicks > count;
        });
        EXPECT_EQ(m_clicks, count + 1);
    }

    /// A window of this process, on the screen.
    void show(QWidget& widget, const QRect& area)
    {
        widget.setGeometry(area);
        widget.show();
        waitUntilExposed(widget);
    }

    void waitUntilExposed(const QWidget& widget)
    {
        m_session.waitUntil("the window", [&widget] {
            QCoreApplication::processEvents();
            return widget.windowHandle()->isExposed();
        });
    }

    /// Until the window manager's title bar is there.
    void waitUntilFramed(const QWidget& window)
    {
        m_session.waitUntil("the frame", [&window] {
            QCoreApplication::processEvents();
            return window.frameGeometry().top() < window.geometry().top();
        });
    }

    int m_clicks = 0;
    std::unique_ptr<OutsideClicks> m_outside = OutsideClicks::create([this] { ++m_clicks; });
};

TEST_F(OutsideClicksTest, LeftAndRightAreToldAndNoOthers)
{
    for (const int button : {1, 2, 3, 4, 5, 6, 7, 8, 9})
        click(500, 500, button);
    expectSoFar(2);
}

TEST_F(OutsideClicksTest, AnyWindowOfAnotherProgramIsOutside)
{
    TestWindow window(m_session, {600, 100, 300, 200});
    window.show();
    TestWindow dock(m_session, {600, 500, 300, 20});
    dock.setTypes({"_DOCK"});
    dock.show();
    click(700, 200);
    click(700, 510);
    expectSoFar(2);
}

TEST_F(OutsideClicksTest, OurWindowsWithTheirFramesAndMenusAreNotOutside)
{
    QWidget window;
    show(window, {100, 100, 300, 200});
    click(200, 200);
    click(200, 200, 3);
    waitUntilFramed(window);
    click(window.frameGeometry().center().x(), window.frameGeometry().top() + 2);
    QMenu menu;
    menu.addAction("A long entry");
    menu.popup({500, 300});
    waitUntilExposed(menu);
    click(menu.geometry().center().x(), menu.geometry().center().y());
    menu.hide();
    QCoreApplication::processEvents();
    expectSoFar(0);
}

TEST_F(OutsideClicksTest, AWindowOfAnotherProgramOnTopOfOursIsOutside)
{
    QWidget window;
    show(window, {100, 100, 300, 200});
    TestWindow other(m_session, {150, 150, 100, 100});
    other.show();
    m_session.xdotool({"windowraise", QString::number(other.id())});
    click(200, 200);
    expectSoFar(1);
}

TEST_F(OutsideClicksTest, AClickIsToldWhenTheButtonIsReleased)
{
    press(500, 500);
    EXPECT_EQ(m_clicks, 0);
    moveBy(2, -3); // as a hand trembles
    release();
    m_session.waitUntil("the click", [this] {
        QCoreApplication::processEvents();
        return m_clicks == 1;
    });
}

TEST_F(OutsideClicksTest, APressThatBecomesADragIsNoClick)
{
    press(500, 500);
    moveBy(8, 0);
    moveBy(100, 0);
    release();
    press(500, 500);
    moveBy(30, 30);
    moveBy(-30, -30); // back to where it began
    release();
    press(500, 500);
    mouse({"mousemove", "700", "300", "mouseup", "1"}); // at once
    expectSoFar(0);
}

TEST_F(OutsideClicksTest, APressThatIsForgottenIsNoClick)
{
    press(500, 500);
    m_outside->forget();
    release();
    // One that nobody has looked at yet.
    m_session.xdotool({"mousedown", "1"});
    m_session.xdotool({"getmouselocation"});
    m_outside->forget();
    release();
    // And a whole click.
    m_session.xdotool({"click", "1"});
    m_session.xdotool({"getmouselocation"});
    m_outside->forget();
    expectSoFar(0);
}

TEST_F(OutsideClicksTest, APressDuringAPauseIsNoClick)
{
    m_outside->pause();
    press(500, 500);
    m_outside->resume();
    release();
    press(500, 500);
    m_outside->pause();
    release();
    m_outside->resume();
    expectSoFar(0);
}

TEST_F(OutsideClicksTest, WhatOnlyHelpsToWriteIsNotOutside)
{
    TestWindow candidates(m_session, {600, 100, 300, 200});
    candidates.makeUnmanaged();
    candidates.show();
    TestWindow keyboard(m_session, {100, 600, 900, 200});
    keyboard.setTypes({"_DOCK"});
    keyboard.leaveKeyboard();
    keyboard.show();
    TestWindow floating(m_session, {100, 300, 300, 200});
    floating.setTypes({"_UTILITY", "_NORMAL"});
    floating.leaveKeyboard();
    floating.show();
    click(700, 200);
    click(500, 700);
    click(250, 400);
    expectSoFar(0);
}

TEST_F(OutsideClicksTest, AWindowThatLeavesTheKeyboardButIsNoPanelIsOutside)
{
    TestWindow window(m_session, {600, 100, 300, 200});
    window.leaveKeyboard();
    window.show();
    TestWindow palette(m_session, {600, 500, 300, 200});
    palette.setTypes({"_UTILITY"});
    palette.show();
    click(700, 200);
    click(700, 600);
    expectSoFar(2);
}

TEST_F(OutsideClicksTest, AWindowOverTheWholeScreenIsOutsideWhoeverManagesIt)
{
    TestWindow window(m_session, {0, 0, 1280, 900});
    window.makeUnmanaged();
    window.show();
    click(700, 200);
    expectSoFar(1);
}

TEST_F(OutsideClicksTest, APauseIsQuiet)
{
    m_outside->pause();
    click(500, 500);
    click(510, 510);
    m_outside->resume();
    expectSoFar(0);
}

TEST_F(OutsideClicksTest, AClickInAPauseThatIsSeenOnlyAfterItIsNotTold)
{
    m_outside->pause();
    m_session.xdotool({"mousemove", "500", "500", "click", "1"}); // nobody looks at it yet
    m_outside->resume();
    expectSoFar(0);
}

TEST_F(OutsideClicksTest, ClicksDuringAGrabOfAnotherProgramAreTold)
{
    TestWindow other(m_session);
    other.grabKeyboard();
    click(500, 500);
    expectSoFar(1);
}

} // namespace
