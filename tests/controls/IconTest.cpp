#include "Icon.h"

#include "PushButton.h"
#include "SymbolView.h"
#include "Theme.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

static constexpr int symbolCount = static_cast<int>(Symbol::documentArrow) + 1;

/// The smallest rectangle that has everything drawn.
static QRect drawn(const QImage& image)
{
    QRect result;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 20)
                result |= QRect(x, y, 1, 1);
        }
    }
    return result;
}

static QImage image(Symbol symbol, int size, qreal scale, const QColor& color = Qt::black)
{
    return Icon::pixmap(symbol, size, scale, color).toImage();
}

TEST(Icon, EverySymbolHasADrawingInTheMiddleOfItsSquare)
{
    for (int i = 0; i < symbolCount; ++i) {
        const QImage picture = image(static_cast<Symbol>(i), 16, 4);
        ASSERT_EQ(picture.size(), QSize(64, 64)) << i;
        const QRect place = drawn(picture);
        EXPECT_GE(std::max(place.width(), place.height()), 46) << i;
        EXPECT_NEAR(place.left(), 63 - place.right(), 4) << i;
        EXPECT_NEAR(place.top(), 63 - place.bottom(), 6) << i;
        EXPECT_GT(place.top(), 0) << i;
        EXPECT_LT(place.bottom(), 63) << i;
    }
}

TEST(Icon, SymbolsDifferFromEachOther)
{
    for (int i = 0; i < symbolCount; ++i) {
        for (int j = 0; j < i; ++j)
            EXPECT_NE(image(static_cast<Symbol>(i), 16, 2), image(static_cast<Symbol>(j), 16, 2));
    }
}

TEST(Icon, LinesHaveTheColourThatIsAskedFor)
{
    const QImage picture = image(Symbol::window, 16, 2, Qt::red);
    // In the middle of the left edge.
    EXPECT_EQ(picture.pixelColor(3, 20), QColor(Qt::red));
    EXPECT_EQ(qAlpha(picture.pixel(16, 20)), 0);
}

TEST(Icon, LinesAreFinerInLargeIcons)
{
    const auto leftEdge = [](const QImage& picture) {
        double width = 0;
        for (int x = 0; x < picture.width() / 2; ++x)
            width += qAlpha(picture.pixel(x, picture.height() * 6 / 10)) / 255.0;
        return width;
    };
    EXPECT_NEAR(leftEdge(image(Symbol::window, 16, 1)), 1.5, 0.1);
    EXPECT_NEAR(leftEdge(image(Symbol::window, 16, 2)), 3, 0.1);
    EXPECT_NEAR(leftEdge(image(Symbol::window, 42, 1)), 2.85, 0.15);
}

TEST(Icon, AnIconFollowsTheTheme)
{
    Theme theme;
    SymbolView view(theme, Symbol::window, 32, ColorRole::label);
    const auto edge = [&view] { return view.grab().toImage().pixelColor(3, 20); };
    EXPECT_EQ(edge(), theme[ColorRole::label]);
    theme.setAppearance({true, false, false, {}});
    EXPECT_EQ(edge(), theme[ColorRole::label]);
}

TEST(Icon, AnIconIsSharpAtEveryScale)
{
    for (const qreal scale : {1.0, 1.5, 2.0}) {
        const QImage wanted = image(Symbol::display, 16, scale);
        EXPECT_EQ(wanted.width(), 16 * scale);
        QImage picture(wanted.size(), QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        picture.setDevicePixelRatio(scale);
        QPainter painter(&picture);
        Icon::paint(painter, QPointF(), Symbol::display, 16, Qt::black);
        painter.end();
        EXPECT_EQ(picture, wanted);
    }
}

TEST(Icon, ADisabledIconIsPale)
{
    const Theme theme;
    PushButton button(theme, {});
    button.setSymbol(Symbol::window);
    const auto edge = [&button] {
        int darkest = 255;
        for (int x = 0; x < button.width() / 2; ++x)
            darkest = std::min(darkest, button.grab().toImage().pixelColor(x, 14).lightness());
        return darkest;
    };
    button.resize(40, 24);
    const int enabled = edge();
    button.setEnabled(false);
    EXPECT_GT(edge(), enabled + 80);
}

TEST(Icon, PaintingMovesToWholePixels)
{
    QImage whole(24, 24, QImage::Format_ARGB32_Premultiplied);
    whole.fill(Qt::transparent);
    QImage broken = whole;
    {
        QPainter painter(&whole);
        Icon::paint(painter, QPointF(4, 4), Symbol::copy, 16, Qt::black);
    }
    {
        QPainter painter(&broken);
        Icon::paint(painter, QPointF(4.4, 3.6), Symbol::copy, 16, Qt::black);
    }
    EXPECT_EQ(whole, broken);
}
