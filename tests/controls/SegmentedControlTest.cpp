#include "SegmentedControl.h"

#include "ControlFixture.h"
#include "PushButton.h"
#include "Segment.h"

#include <QAccessible>
#include <QSignalSpy>

class SegmentedControlTest : public ControlTest
{
protected:
    PushButton& before = add<PushButton>(QStringLiteral("Before"));
    SegmentedControl& control = add<SegmentedControl>(
        std::vector<SegmentedControl::Choice>{{QStringLiteral("Clipboard"), Symbol::clipboard},
                                              {QStringLiteral("Document"), Symbol::document},
                                              {QStringLiteral("Web"), Symbol::globe}});
    QSignalSpy changes{&control, &SegmentedControl::indexChanged};
};

TEST_F(SegmentedControlTest, AClickChooses)
{
    show();
    EXPECT_EQ(control.height(), 24);
    EXPECT_EQ(control.index(), 0);
    QTest::mouseClick(control.segments()[2], Qt::LeftButton);
    EXPECT_EQ(control.index(), 2);
    EXPECT_EQ(changes.count(), 1);
    QTest::mouseClick(control.segments()[2], Qt::LeftButton);
    EXPECT_EQ(changes.count(), 1) << "the chosen one stays";
    EXPECT_EQ(control.index(), 2);
}

TEST_F(SegmentedControlTest, SegmentsAreEquallyWide)
{
    show();
    EXPECT_NEAR(control.segments()[0]->width(), control.segments()[2]->width(), 1);
}

TEST_F(SegmentedControlTest, TheArrowsChoose)
{
    show();
    control.segments()[0]->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Right);
    EXPECT_EQ(control.index(), 1);
    press(Qt::Key_Right);
    EXPECT_EQ(control.index(), 2);
    press(Qt::Key_Left);
    EXPECT_EQ(control.index(), 1);
    EXPECT_TRUE(control.segments()[1]->hasFocus());
}

TEST_F(SegmentedControlTest, TabStopsAtTheChosenOneOnly)
{
    auto& after = add<PushButton>(QStringLiteral("After"));
    after.setObjectName(QStringLiteral("after"));
    control.setIndex(1);
    show();
    before.setFocus(Qt::TabFocusReason);
    press(Qt::Key_Tab);
    EXPECT_TRUE(control.segments()[1]->hasFocus())
        << window.focusWidget()->objectName().toStdString();
    press(Qt::Key_Right);
    press(Qt::Key_Tab);
    EXPECT_TRUE(after.hasFocus()) << window.focusWidget()->objectName().toStdString();
    press(Qt::Key_Backtab);
    EXPECT_TRUE(control.segments()[2]->hasFocus());
}

TEST_F(SegmentedControlTest, TheFocusOfTheControlGoesToTheChosenOne)
{
    control.setIndex(2);
    show();
    control.setFocus();
    EXPECT_TRUE(control.segments()[2]->hasFocus());
}

TEST_F(SegmentedControlTest, TheRingLiesAroundTheWholeControl)
{
    show();
    control.segments()[0]->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(ring->geometry(), control.geometry().adjusted(-2, -2, 2, 2));
}

TEST_F(SegmentedControlTest, ThePillLiesUnderTheChosenOne)
{
    show();
    const auto ground = [this](int index) {
        const QRect segment = control.segments()[static_cast<std::size_t>(index)]->geometry();
        return pixel(control, QPoint(segment.left() + 6, 12));
    };
    EXPECT_EQ(ground(0), theme[ColorRole::pill]);
    EXPECT_NE(ground(1), theme[ColorRole::pill]);
    control.setIndex(1);
    EXPECT_NE(ground(0), theme[ColorRole::pill]);
    EXPECT_EQ(ground(1), theme[ColorRole::pill]);
}

TEST_F(SegmentedControlTest, FromRightToLeftTheFirstIsAtTheRight)
{
    control.setLayoutDirection(Qt::RightToLeft);
    show();
    EXPECT_GT(control.segments()[0]->x(), control.segments()[1]->x());
    const int right = control.segments()[0]->geometry().right();
    EXPECT_EQ(pixel(control, QPoint(right - 6, 12)), theme[ColorRole::pill]);
    control.segments()[0]->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Left);
    EXPECT_EQ(control.index(), 1);
}

TEST_F(SegmentedControlTest, ScreenReadersFindRadioButtonsWithNames)
{
    control.setAccessibleName(QStringLiteral("Source"));
    control.setIndex(1);
    const QAccessibleInterface* const group = QAccessible::queryAccessibleInterface(&control);
    EXPECT_EQ(group->text(QAccessible::Name), QStringLiteral("Source"));
    ASSERT_EQ(group->childCount(), 3);
    for (int i = 0; i < 3; ++i) {
        const QAccessibleInterface* const child = group->child(i);
        EXPECT_EQ(child->role(), QAccessible::RadioButton);
        EXPECT_EQ(child->state().checked, i == 1);
    }
    EXPECT_EQ(group->child(2)->text(QAccessible::Name), QStringLiteral("Web"));
}

TEST_F(SegmentedControlTest, ADisabledControlDoesNotChoose)
{
    control.setEnabled(false);
    show();
    QTest::mouseClick(control.segments()[2], Qt::LeftButton);
    EXPECT_EQ(control.index(), 0);
}
