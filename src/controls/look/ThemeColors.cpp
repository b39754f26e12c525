#include "ThemeColors.h"

#include "Contrast.h"

namespace {

/// A highlight with less colour than this (of 255) is a grey, which would not stand out as an
/// accent.
constexpr int leastSaturation = 40;

/// A highlight with more contrast to black than this keeps its colour and gets black text.
constexpr double paleRatio = 9;

QColor translucent(QColor color, double opacity)
{
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

struct Shade
{
    QRgb color;
    double opacity = 1;
};

struct Row
{
    ColorRole role;
    Shade light;
    Shade dark;
};

constexpr std::array rows = {
    Row{ColorRole::window, {0xF5F5F6}, {0x242528}},
    Row{ColorRole::textBackground, {0xFFFFFF}, {0x1B1C1E}},
    Row{ColorRole::label, {0x1C1C1E}, {0xF2F2F4}},
    Row{ColorRole::secondary, {0x66666B}, {0xA6A6AE}},
    Row{ColorRole::tertiary, {0x74747A}, {0x8A8A92}},
    Row{ColorRole::outline, {0x66666B, 0.30}, {0xA6A6AE, 0.30}},
    Row{ColorRole::separator, {0x1C1C1E, 0.12}, {0xF2F2F4, 0.16}},
    Row{ColorRole::error, {0xC62F2F}, {0xFF7A70}},
    Row{ColorRole::button, {0xFFFFFF}, {0x38393D}},
    Row{ColorRole::trough, {0x1C1C1E, 0.07}, {0x000000, 0.28}},
    Row{ColorRole::track, {0xDADADC}, {0x46474B}},
    Row{ColorRole::pill, {0xFFFFFF}, {0x4A4B51}},
    Row{ColorRole::thumb, {0xFFFFFF}, {0xD2D2D8}},
    Row{ColorRole::hover, {0x1C1C1E, 0.04}, {0xF2F2F4, 0.05}},
    Row{ColorRole::pressed, {0x1C1C1E, 0.10}, {0x000000, 0.20}},
};

} // namespace

ThemeColors::ThemeColors(const Appearance& appearance)
{
    for (const Row& row : rows) {
        const Shade& shade = appearance.isDark ? row.dark : row.light;
        at(row.role) = translucent(shade.color, shade.opacity);
    }
    if (appearance.isHighContrast)
        setHighContrast(appearance.isDark);
    setAccent(appearance.highlight, appearance.isDark);
}

void ThemeColors::setHighContrast(bool isDark)
{
    const QColor ground = isDark ? Qt::black : Qt::white;
    const QColor label = isDark ? Qt::white : Qt::black;
    for (const ColorRole role :
         {ColorRole::window, ColorRole::textBackground, ColorRole::button, ColorRole::pill})
        at(role) = ground;
    for (const ColorRole role : {ColorRole::label, ColorRole::secondary, ColorRole::tertiary})
        at(role) = label;
    for (const ColorRole role : {ColorRole::outline, ColorRole::separator})
        at(role) = translucent(label, 0.80);
    at(ColorRole::pressed) = translucent(label, 0.20);
    at(ColorRole::trough) = translucent(label, 0.20);
    at(ColorRole::track) = QColor(isDark ? 0x303030 : 0xD0D0D0);
    at(ColorRole::error) = QColor(isDark ? 0xFF9A92 : 0xA01010);
}

void ThemeColors::setAccent(const QColor& highlight, bool isDark)
{
    const bool isUsable = highlight.isValid() && highlight.hsvSaturation() >= leastSaturation;
    const QColor chosen = isUsable ? highlight.toRgb() : QColor(isDark ? 0x5B93FF : 0x2F6FED);
    const QColor& label = at(ColorRole::label);
    const QColor& window = at(ColorRole::window);
    const QColor& background = at(ColorRole::textBackground);
    const QColor& pill = at(ColorRole::pill);
    const QColor& track = at(ColorRole::track);
    at(ColorRole::accent) =
        Contrast::adjusted(chosen, label, {window, background, pill, track}, Contrast::shape);
    at(ColorRole::accentText) =
        Contrast::adjusted(chosen, label, {window, background}, Contrast::text);
    at(ColorRole::selection) =
        Contrast::over(translucent(at(ColorRole::accent), isDark ? 0.33 : 0.25), background);

    const bool isPale = Contrast::ratio(chosen, Qt::black) > paleRatio;
    at(ColorRole::onAccent) = isPale ? Qt::black : Qt::white;
    at(ColorRole::accentFill) = chosen;
    if (!isPale) {
        const QColor visible = Contrast::adjusted(chosen, label, {window}, Contrast::shape);
        at(ColorRole::accentFill) =
            Contrast::adjusted(visible, Qt::black, {Qt::white}, Contrast::text);
    }
}

QPalette ThemeColors::palette() const
{
    const ThemeColors& colors = *this;
    QPalette palette(colors[ColorRole::button], colors[ColorRole::window]);
    const auto set = [&](QPalette::ColorRole role, ColorRole ours) {
        palette.setColor(role, colors[ours]);
    };
    set(QPalette::WindowText, ColorRole::label);
    set(QPalette::Base, ColorRole::textBackground);
    set(QPalette::AlternateBase, ColorRole::window);
    set(QPalette::Text, ColorRole::label);
    set(QPalette::ButtonText, ColorRole::label);
    set(QPalette::PlaceholderText, ColorRole::tertiary);
    set(QPalette::ToolTipBase, ColorRole::window);
    set(QPalette::ToolTipText, ColorRole::label);
    set(QPalette::Highlight, ColorRole::selection);
    set(QPalette::HighlightedText, ColorRole::label);
    set(QPalette::Link, ColorRole::accentText);
    set(QPalette::LinkVisited, ColorRole::accentText);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, colors[ColorRole::tertiary]);
    return palette;
}
