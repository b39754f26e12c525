#include "Theme.h"

#include <QGuiApplication>
#include <QWidget>

#include <array>

namespace {

constexpr int fadeMilliseconds = 140;

struct Size
{
    int pixels; // whole ones, because Qt rounds others
    QFont::Weight weight;
};

constexpr std::array sizes = {
    Size{15, QFont::Bold},     // title
    Size{13, QFont::DemiBold}, // headline
    Size{13, QFont::Normal},   // body
    Size{12, QFont::Normal},   // callout
    Size{11, QFont::Normal},   // caption
    Size{11, QFont::Bold},     // boldCaption
    Size{10, QFont::Normal},   // smallCaption
};

} // namespace

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
    const Size& size = sizes.at(static_cast<std::size_t>(style));
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
