#include "StopSlider.h"

#include "ControlFixture.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QWheelEvent>

class StopSliderTest : public ControlTest
{
protected:
    void clickAt(int x) { QTest::mouseClick(&slider, Qt::LeftButton, {}, QPoint(x, 12)); }

    StopSlider& slider = add<StopSlider>();
    QSignalSpy changes{&slider, &QSlider::valueChanged};
};

TEST_F(StopSliderTest, AClickSnapsToTheNearestStop)
{
    show();
    clickAt(slider.width() - 1);
    EXPECT_EQ(slider.value(), 2);
    clickAt(slider.width() * 6 / 10);
    EXPECT_EQ(slider.value(), 1);
    clickAt(slider.width() / 10);
    EXPECT_EQ(slider.value(), 0);
    clickAt(slider.width() / 10);
    EXPECT_EQ(changes.count(), 3);
}

TEST_F(StopSliderTest, DraggingGoesFromStopToStop)
{
    show();
    QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(10, 12));
    QTest::mouseMove(&slider, QPoint(slider.width() / 2 + 20, 12));
    EXPECT_EQ(slider.value(), 1);
    QTest::mouseMove(&slider, QPoint(slider.width() + 500, 12));
    EXPECT_EQ(slider.value(), 2);
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(-500, 12));
    EXPECT_FALSE(slider.isSliderDown());
    QTest::mouseMove(&slider, QPoint(0, 12));
    EXPECT_EQ(slider.value(), 2);
}

TEST_F(StopSliderTest, KeysGoFromStopToStop)
{
    show();
    slider.setFocus(Qt::TabFocusReason);
    press(Qt::Key_Right);
    EXPECT_EQ(slider.value(), 1);
    press(Qt::Key_End);
    EXPECT_EQ(slider.value(), 2);
    press(Qt::Key_Right);
    EXPECT_EQ(slider.value(), 2);
    press(Qt::Key_Left);
    EXPECT_EQ(slider.value(), 1);
    press(Qt::Key_Home);
    EXPECT_EQ(slider.value(), 0);
    press(Qt::Key_PageUp);
    EXPECT_EQ(slider.value(), 1);
}

TEST_F(StopSliderTest, OneNotchOfTheWheelIsOneStop)
{
    show();
    const auto turn = [this](int delta) {
        const QPointF place(20, 12);
        QWheelEvent event(place, slider.mapToGlobal(place), {}, QPoint(0, delta), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&slider, &event);
    };
    turn(120);
    EXPECT_EQ(slider.value(), 1);
    turn(120);
    EXPECT_EQ(slider.value(), 2);
    turn(-120);
    EXPECT_EQ(slider.value(), 1);
}

TEST_F(StopSliderTest, FromRightToLeftTheFirstStopIsAtTheRight)
{
    slider.setLayoutDirection(Qt::RightToLeft);
    show();
    clickAt(5);
    EXPECT_EQ(slider.value(), 2);
    EXPECT_EQ(pixel(slider, QPoint(10, 12)), theme[ColorRole::thumb]);
}

TEST_F(StopSliderTest, TheThumbIsAtTheStop)
{
    show();
    EXPECT_EQ(pixel(slider, QPoint(10, 12)), theme[ColorRole::thumb]);
    slider.setValue(1);
    EXPECT_EQ(pixel(slider, QPoint(slider.width() / 2, 12)), theme[ColorRole::thumb]);
    EXPECT_EQ(pixel(slider, QPoint(slider.width() / 4, 12)), theme[ColorRole::accent]);
    EXPECT_EQ(pixel(slider, QPoint(slider.width() * 3 / 4, 12)), theme[ColorRole::track]);
}

TEST_F(StopSliderTest, ScreenReadersFindASliderWithItsValue)
{
    slider.setAccessibleName(QStringLiteral("Length"));
    slider.setValue(2);
    QAccessibleInterface* const found = QAccessible::queryAccessibleInterface(&slider);
    EXPECT_EQ(found->role(), QAccessible::Slider);
    EXPECT_EQ(found->text(QAccessible::Name), QStringLiteral("Length"));
    EXPECT_EQ(found->valueInterface()->currentValue().toInt(), 2);
    EXPECT_EQ(found->valueInterface()->maximumValue().toInt(), 2);
}
