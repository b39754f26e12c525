#include "ControlFixture.h"
#include "DropZone.h"
#include "Label.h"
#include "ProgressBar.h"
#include "Spinner.h"

#include <QDragEnterEvent>
#include <QMimeData>
#include <QSignalSpy>

#include <limits>

class ProgressTest : public ControlTest
{};

TEST_F(ProgressTest, TheBarIsFilledByItsFraction)
{
    auto& bar = add<ProgressBar>();
    show();
    const int middle = bar.height() / 2;
    bar.setFraction(0.5);
    EXPECT_EQ(bar.value(), 50);
    EXPECT_EQ(pixel(bar, QPoint(bar.width() / 2 - 6, middle)), theme[ColorRole::accent]);
    EXPECT_EQ(pixel(bar, QPoint(bar.width() / 2 + 6, middle)), theme[ColorRole::track]);
    bar.setFraction(0);
    EXPECT_EQ(pixel(bar, QPoint(4, middle)), theme[ColorRole::track]);
    bar.setFraction(1);
    EXPECT_EQ(pixel(bar, QPoint(bar.width() - 4, middle)), theme[ColorRole::accent]);
}

TEST_F(ProgressTest, ImpossibleFractionsAreTheNearest)
{
    auto& bar = add<ProgressBar>();
    bar.setFraction(7);
    EXPECT_EQ(bar.value(), 100);
    bar.setFraction(-1);
    EXPECT_EQ(bar.value(), 0);
    bar.setFraction(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(bar.value(), 0);
}

TEST_F(ProgressTest, TheSpinnerTurnsOnlyWhileItIsSeen)
{
    theme.setAppearance({});
    auto& spinner = add<Spinner>();
    EXPECT_FALSE(spinner.isTurning());
    show();
    EXPECT_TRUE(spinner.isTurning());
    const QImage before = spinner.grab().toImage();
    EXPECT_TRUE(QTest::qWaitFor([&] { return spinner.grab().toImage() != before; }));
    spinner.hide();
    EXPECT_FALSE(spinner.isTurning());
    spinner.show();
    EXPECT_TRUE(spinner.isTurning());
    window.hide();
    EXPECT_FALSE(spinner.isTurning());
}

TEST_F(ProgressTest, TheSpinnerStandsStillWhereMotionIsReduced)
{
    auto& spinner = add<Spinner>();
    show();
    EXPECT_FALSE(spinner.isTurning());
    theme.setAppearance({});
    EXPECT_TRUE(spinner.isTurning());
}

TEST_F(ProgressTest, LabelsShowMarkupLiterallyInTheColourOfTheirRole)
{
    auto& label = add<Label>(TextStyle::caption, ColorRole::error, QStringLiteral("<b>a</b>"));
    EXPECT_EQ(label.textFormat(), Qt::PlainText);
    EXPECT_EQ(label.font().pixelSize(), 11);
    EXPECT_EQ(label.palette().color(QPalette::WindowText), theme[ColorRole::error]);
    theme.setAppearance({true, false, true, {}});
    EXPECT_EQ(label.palette().color(QPalette::WindowText), theme[ColorRole::error]);
}

class DropZoneTest : public ControlTest
{
protected:
    bool enter(const QMimeData& dragged)
    {
        QDragEnterEvent event({}, Qt::CopyAction | Qt::MoveAction, &dragged, Qt::LeftButton,
                              Qt::NoModifier);
        event.ignore();
        QApplication::sendEvent(&zone, &event);
        return event.isAccepted();
    }

    bool drop(const QMimeData& dragged)
    {
        QDropEvent event({}, Qt::CopyAction | Qt::MoveAction, &dragged, Qt::LeftButton,
                         Qt::NoModifier);
        event.ignore();
        QApplication::sendEvent(&zone, &event);
        return event.isAccepted() && event.dropAction() == Qt::CopyAction;
    }

    void setUrls(const QStringList& urls) { data.setUrls(QUrl::fromStringList(urls)); }

    DropZone& zone = add<DropZone>();
    QSignalSpy drops{&zone, &DropZone::dropped};
    QSignalSpy highlights{&zone, &DropZone::highlighted};
    QMimeData data;
};

TEST_F(DropZoneTest, TheFirstFileIsTaken)
{
    setUrls({QStringLiteral("file:///a%20b.txt"), QStringLiteral("file:///c.txt")});
    EXPECT_TRUE(enter(data));
    EXPECT_TRUE(zone.isHighlighted());
    EXPECT_TRUE(drop(data));
    EXPECT_FALSE(zone.isHighlighted());
    ASSERT_EQ(drops.count(), 1);
    EXPECT_EQ(drops[0][0].toUrl().toLocalFile(), QStringLiteral("/a b.txt"));
    EXPECT_EQ(highlights.count(), 2);
}

TEST_F(DropZoneTest, WhatIsNoFileIsNotTaken)
{
    data.setText(QStringLiteral("file:///a.txt"));
    EXPECT_FALSE(enter(data));
    EXPECT_FALSE(drop(data));
    setUrls({QStringLiteral("https://a.example")});
    EXPECT_FALSE(enter(data));
    EXPECT_FALSE(drop(data));
    EXPECT_FALSE(zone.isHighlighted());
    EXPECT_EQ(drops.count(), 0);
}

TEST_F(DropZoneTest, ADragThatLeavesLeavesNothing)
{
    setUrls({QStringLiteral("file:///a.txt")});
    enter(data);
    QDragLeaveEvent leave;
    QApplication::sendEvent(&zone, &leave);
    EXPECT_FALSE(zone.isHighlighted());
    EXPECT_EQ(drops.count(), 0);
}

TEST_F(DropZoneTest, HidingEndsTheHighlight)
{
    show();
    setUrls({QStringLiteral("file:///a.txt")});
    enter(data);
    zone.hide();
    EXPECT_FALSE(zone.isHighlighted());
}

TEST_F(DropZoneTest, TheHighlightIsSeen)
{
    show();
    const QPoint middle = zone.rect().center();
    const QColor rest = pixel(zone, middle);
    setUrls({QStringLiteral("file:///a.txt")});
    enter(data);
    EXPECT_NE(pixel(zone, middle), rest);
}
