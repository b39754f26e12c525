#include "ControlFixture.h"
#include "LinkButton.h"
#include "PushButton.h"

#include <QAccessible>
#include <QSignalSpy>

class ButtonTest : public ControlTest
{};

TEST_F(ButtonTest, ButtonsHaveTheHeightOfTheirSize)
{
    EXPECT_EQ(add<PushButton>(QStringLiteral("Stop")).sizeHint().height(), 24);
    auto& small = add<PushButton>(QStringLiteral("Stop"), nullptr, PushButton::Size::small);
    EXPECT_EQ(small.sizeHint().height(), 20);
    const int width = small.sizeHint().width();
    small.setSymbol(Symbol::copy);
    EXPECT_GT(small.sizeHint().width(), width);
}

TEST_F(ButtonTest, TheSpaceBarPresses)
{
    auto& button = add<PushButton>(QStringLiteral("Stop"));
    QSignalSpy clicks(&button, &QPushButton::clicked);
    show();
    button.setFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    EXPECT_EQ(clicks.count(), 1);
}

TEST_F(ButtonTest, AClickDoesNotTakeTheFocus)
{
    auto& first = add<PushButton>(QStringLiteral("First"));
    auto& second = add<LinkButton>(QStringLiteral("Second"));
    QSignalSpy clicks(&second, &QPushButton::clicked);
    show();
    first.setFocus(Qt::TabFocusReason);
    QTest::mouseClick(&second, Qt::LeftButton);
    EXPECT_EQ(clicks.count(), 1);
    EXPECT_TRUE(first.hasFocus());
}

TEST_F(ButtonTest, TheStateIsSeen)
{
    auto& button = add<PushButton>(QStringLiteral("Stop"));
    show();
    const QPoint ground(4, 12);
    const QColor rest = pixel(button, ground);
    EXPECT_EQ(rest, theme[ColorRole::button]);
    QHoverEvent enter(QEvent::HoverEnter, QPointF(4, 4), QPointF(4, 4), QPointF(-1, -1));
    QApplication::sendEvent(&button, &enter);
    const QColor hovered = pixel(button, ground);
    QTest::mousePress(&button, Qt::LeftButton);
    const QColor pressed = pixel(button, ground);
    EXPECT_NE(hovered, rest);
    EXPECT_NE(pressed, hovered);
    QTest::mouseRelease(&button, Qt::LeftButton);
    EXPECT_EQ(pixel(button, ground), hovered);
    button.setEnabled(false);
    EXPECT_NE(pixel(button, ground), hovered);
}

TEST_F(ButtonTest, TheDefaultButtonIsFilledWithTheAccent)
{
    auto& button = add<PushButton>(QStringLiteral("Summarize"));
    button.setDefault(true);
    show();
    EXPECT_EQ(pixel(button, QPoint(4, 12)), theme[ColorRole::accentFill]);
    button.setEnabled(false);
    EXPECT_NE(pixel(button, QPoint(4, 12)), theme[ColorRole::accentFill]);
}

TEST_F(ButtonTest, StatesFadeWhereMotionIsWanted)
{
    theme.setAppearance({});
    auto& button = add<PushButton>(QStringLiteral("Stop"));
    show();
    QTest::mousePress(&button, Qt::LeftButton);
    EXPECT_EQ(pixel(button, QPoint(4, 12)), theme[ColorRole::button]);
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return pixel(button, QPoint(4, 12)) != theme[ColorRole::button]; }));
}

TEST_F(ButtonTest, ScreenReadersFindAButtonWithItsName)
{
    const QAccessibleInterface* const link =
        QAccessible::queryAccessibleInterface(&add<LinkButton>(QStringLiteral("Quit")));
    EXPECT_EQ(link->role(), QAccessible::Button);
    EXPECT_EQ(link->text(QAccessible::Name), QStringLiteral("Quit"));
}

TEST_F(ButtonTest, TheFocusRingLiesAroundTheControl)
{
    auto& button = add<PushButton>(QStringLiteral("Stop"));
    auto& other = add<PushButton>(QStringLiteral("Other"));
    show();
    button.setFocus(Qt::TabFocusReason);
    const auto around = [this](const QWidget& widget) {
        return QRect(widget.mapTo(&window, QPoint()), widget.size()).adjusted(-2, -2, 2, 2);
    };
    EXPECT_TRUE(ring->isVisible());
    EXPECT_EQ(ring->geometry(), around(button));
    press(Qt::Key_Tab);
    EXPECT_EQ(ring->geometry(), around(other));
    layout->setContentsMargins(40, 40, 40, 40);
    layout->activate();
    EXPECT_EQ(ring->geometry(), around(other)) << "it follows";
    other.hide();
    EXPECT_NE(ring->geometry(), around(other));
}
