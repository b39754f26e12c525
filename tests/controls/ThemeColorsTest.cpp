#include "ThemeColors.h"

#include "Contrast.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// Every appearance that a desktop may ask for, with highlights of all kinds.
static std::vector<Appearance> appearances()
{
    std::vector<QColor> highlights = {QColor(), Qt::black, Qt::white, QColor(0x808080)};
    for (int hue = 0; hue < 360; hue += 20) {
        for (const int lightness : {30, 90, 128, 170, 230})
            highlights.push_back(QColor::fromHsl(hue, 255, lightness));
        highlights.push_back(QColor::fromHsl(hue, 90, 128));
    }
    std::vector<Appearance> all;
    for (const QColor& highlight : highlights) {
        for (const bool isDark : {false, true}) {
            for (const bool isHighContrast : {false, true})
                all.push_back({isDark, isHighContrast, false, highlight});
        }
    }
    return all;
}

static std::string describe(const Appearance& appearance)
{
    return std::string(appearance.isDark ? "dark" : "light") +
           (appearance.isHighContrast ? ", high contrast, " : ", ") +
           (appearance.highlight.isValid() ? appearance.highlight.name().toStdString() : "none");
}

TEST(ThemeColors, EveryTextStandsOutFromItsGround)
{
    for (const Appearance& appearance : appearances()) {
        const ThemeColors colors(appearance);
        const auto check = [&](ColorRole text, const QColor& ground) {
            EXPECT_GE(Contrast::ratio(colors[text], ground), Contrast::text)
                << describe(appearance) << ", role " << static_cast<int>(text) << ' '
                << colors[text].name().toStdString() << " on " << ground.name().toStdString();
        };
        const QColor& window = colors[ColorRole::window];
        const QColor& background = colors[ColorRole::textBackground];
        for (const QColor& ground : {window, background}) {
            for (const ColorRole role :
                 {ColorRole::label, ColorRole::secondary, ColorRole::accentText, ColorRole::error})
                check(role, ground);
        }
        check(ColorRole::tertiary, background);
        check(ColorRole::label, colors[ColorRole::selection]);
        check(ColorRole::label, colors[ColorRole::pill]);
        check(ColorRole::onAccent, colors[ColorRole::accentFill]);
        for (const ColorRole overlay : {ColorRole::hover, ColorRole::pressed}) {
            check(ColorRole::label, Contrast::over(colors[overlay], colors[ColorRole::button]));
            const QColor trough = Contrast::over(colors[ColorRole::trough], window);
            check(ColorRole::label, Contrast::over(colors[overlay], trough));
        }
    }
}

TEST(ThemeColors, EveryMarkStandsOutFromItsGround)
{
    for (const Appearance& appearance : appearances()) {
        const ThemeColors colors(appearance);
        const auto check = [&](ColorRole mark, ColorRole ground) {
            EXPECT_GE(Contrast::ratio(colors[mark], colors[ground]), Contrast::shape)
                << describe(appearance) << ", " << colors[mark].name().toStdString() << " on "
                << colors[ground].name().toStdString();
        };
        for (const ColorRole ground :
             {ColorRole::window, ColorRole::textBackground, ColorRole::pill, ColorRole::track})
            check(ColorRole::accent, ground);
        check(ColorRole::secondary, ColorRole::window);
        check(ColorRole::secondary, ColorRole::track);
        // A pale one is seen by its black text.
        if (colors[ColorRole::onAccent] == QColor(Qt::white))
            check(ColorRole::accentFill, ColorRole::window);
    }
}

TEST(ThemeColors, TheDesktopsHighlightIsTheAccentWhereItCanBe)
{
    const ThemeColors green({false, false, false, QColor(0x1E7B34)});
    EXPECT_EQ(green[ColorRole::accent], QColor(0x1E7B34));
    EXPECT_EQ(green[ColorRole::accentFill], QColor(0x1E7B34));
    EXPECT_EQ(green[ColorRole::onAccent], QColor(Qt::white));

    const ThemeColors none({});
    const ThemeColors grey({false, false, false, QColor(0x909090)});
    EXPECT_EQ(none[ColorRole::accent], QColor(0x2F6FED));
    EXPECT_EQ(grey[ColorRole::accent], none[ColorRole::accent]);
}

TEST(ThemeColors, APaleHighlightBearsBlackText)
{
    const ThemeColors yellow({true, false, false, QColor(0xFFE000)});
    EXPECT_EQ(yellow[ColorRole::accentFill], QColor(0xFFE000));
    EXPECT_EQ(yellow[ColorRole::onAccent], QColor(Qt::black));
}

TEST(ThemeColors, ThePaletteHasTheSameColours)
{
    const ThemeColors colors({true, false, false, {}});
    const QPalette palette = colors.palette();
    EXPECT_EQ(palette.color(QPalette::Window), colors[ColorRole::window]);
    EXPECT_EQ(palette.color(QPalette::Text), colors[ColorRole::label]);
    EXPECT_EQ(palette.color(QPalette::PlaceholderText), colors[ColorRole::tertiary]);
    EXPECT_EQ(palette.color(QPalette::Base), colors[ColorRole::textBackground]);
}

TEST(Contrast, BlackAndWhiteAreFurthestApart)
{
    EXPECT_NEAR(Contrast::ratio(Qt::black, Qt::white), 21, 0.001);
    EXPECT_NEAR(Contrast::ratio(Qt::white, Qt::black), 21, 0.001);
    EXPECT_DOUBLE_EQ(Contrast::ratio(Qt::red, Qt::red), 1);
    EXPECT_NEAR(Contrast::ratio(QColor(0x767676), Qt::white), 4.54, 0.005);
}

TEST(Contrast, WhatIsEnoughIsNotAdjusted)
{
    const QColor blue(0x2F6FED);
    EXPECT_EQ(Contrast::adjusted(blue, Qt::black, {Qt::white}, 3), blue);
    const QColor darker = Contrast::adjusted(blue, Qt::black, {Qt::white}, 7);
    EXPECT_GE(Contrast::ratio(darker, Qt::white), 7);
    EXPECT_LT(Contrast::ratio(darker, Qt::white), 7.6);
    EXPECT_NEAR(darker.hslHue(), blue.hslHue(), 2);
    EXPECT_EQ(Contrast::adjusted(blue, Qt::black, {Qt::black}, 7), QColor(Qt::black));
}
