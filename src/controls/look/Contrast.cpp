#include "Contrast.h"

#include <algorithm>
#include <cmath>

namespace Contrast {

static double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

static double luminance(const QColor& color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

/// Rounded to whole channel values, so that the colour that is checked is the one that is drawn.
static QColor mixed(const QColor& from, const QColor& to, double share)
{
    const auto channel = [share](int a, int b) {
        return static_cast<int>(std::lround(a + (b - a) * share));
    };
    return {channel(from.red(), to.red()), channel(from.green(), to.green()),
            channel(from.blue(), to.blue())};
}

double ratio(const QColor& a, const QColor& b)
{
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor over(const QColor& color, const QColor& ground)
{
    return mixed(ground, color, color.alphaF());
}

QColor adjusted(const QColor& color, const QColor& limit, std::initializer_list<QColor> grounds,
                double minimum)
{
    constexpr int steps = 50;
    const float hue = std::max(0.0F, color.hslHueF()); // greys have none
    for (int step = 0; step < steps; ++step) {
        const float share = static_cast<float>(step) / steps;
        const float lightness = std::lerp(color.lightnessF(), limit.lightnessF(), share);
        const QColor shade = QColor::fromHslF(hue, color.hslSaturationF(), lightness);
        const QColor candidate = step == 0 ? color : QColor(shade.rgb());
        if (std::all_of(grounds.begin(), grounds.end(),
                        [&](const QColor& ground) { return ratio(candidate, ground) >= minimum; }))
            return candidate;
    }
    return limit;
}

} // namespace Contrast
