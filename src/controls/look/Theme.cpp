#include "Theme.h"

#include <QGuiApplication>
#include <QWidget>

static constexpr int fadeMilliseconds = 140;

Theme::Theme(const Appearance& appearance, QObject* parent)
    : QObject(parent), m_appearance(appearance), m_colors(appearance)
{}

void Theme::setAppearance(const Appearance& appearance)
{
    if (appearance == m_appearance)
        return;
    m_appearance = appearance;
    m_colors = ThemeColors(appearance);
    emit changed();
}

void Theme::refresh()
{
    emit changed();
}

QFont Theme::font(TextStyle style) const
{
    struct Size
    {
        int pixels;
        QFont::Weight weight;
    };
    // Whole pixels, because Qt rounds others.
    const auto size = [style]() -> Size {
        switch (style) {
        case TextStyle::title:
            return {15, QFont::Bold};
        case TextStyle::headline:
            return {13, QFont::DemiBold};
        case TextStyle::body:
            return {13, QFont::Normal};
        case TextStyle::callout:
            return {12, QFont::Normal};
        case TextStyle::caption:
            return {11, QFont::Normal};
        case TextStyle::boldCaption:
            return {11, QFont::Bold};
        case TextStyle::smallCaption:
            return {10, QFont::Normal};
        }
        return {13, QFont::Normal};
    }();
    QFont font = QGuiApplication::font();
    font.setPixelSize(size.pixels);
    font.setWeight(size.weight);
    return font;
}

int Theme::fadeDuration() const
{
    return m_appearance.isMotionReduced ? 0 : fadeMilliseconds;
}

void Theme::applyTo(QWidget& root) const
{
    const auto apply = [this, &root] {
        root.setPalette(m_colors.palette());
        root.setFont(font(TextStyle::body));
    };
    apply();
    connect(this, &Theme::changed, &root, apply);
}
