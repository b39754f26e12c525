#include "SegmentedControl.h"

#include "AccessibleRole.h"
#include "Drawing.h"
#include "Fade.h"
#include "Focus.h"
#include "FocusRing.h"
#include "Make.h"
#include "Segment.h"

#include <QHBoxLayout>

static constexpr int radius = 6;
static constexpr int pillInset = 2;
static constexpr qreal shadowOpacity = 0.16;

SegmentedControl::SegmentedControl(const Theme& theme, const std::vector<Choice>& choices,
                                   QWidget* parent)
    : Themed(theme, parent), m_pill(new Fade(theme, *this))
{
    AccessibleRole::set(*this, QAccessible::Grouping);
    auto* const layout = Make::layout<QHBoxLayout>(this, 0);
    for (const Choice& choice : choices) {
        const int index = static_cast<int>(m_segments.size());
        auto* const segment = new Segment(theme, choice.text, choice.symbol, this);
        segment->setObjectName(QStringLiteral("segment%1").arg(index));
        segment->setChecked(index == 0);
        FocusRing::outline(*segment, *this, radius);
        connect(segment, &QRadioButton::toggled, this, [this, index](bool isChecked) {
            if (isChecked)
                choose(index);
        });
        layout->addWidget(segment, 1);
        m_segments.push_back(segment);
    }
    updateTabStop();
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void SegmentedControl::setIndex(int index)
{
    m_segments[static_cast<std::size_t>(index)]->setChecked(true);
}

void SegmentedControl::choose(int index)
{
    if (index == m_index)
        return;
    m_index = index;
    const bool hadFocus = Focus::isIn(*this);
    updateTabStop();
    if (hadFocus)
        setFocus();
    m_pill->moveTo(index);
    emit indexChanged(index);
}

/// Makes the chosen segment the only one that Tab stops at. Qt does so only once one of them has
/// had the focus.
void SegmentedControl::updateTabStop()
{
    for (Segment* segment : m_segments)
        segment->setFocusPolicy(segment->isChecked() ? Qt::TabFocus : Qt::NoFocus);
    setFocusProxy(m_segments[static_cast<std::size_t>(m_index)]);
}

void SegmentedControl::paintEvent(QPaintEvent*)
{
    Drawing::Painter painter(*this);
    Drawing::fill(painter, rect(), radius, m_theme[ColorRole::trough]);

    const qreal segmentWidth = static_cast<qreal>(width()) / static_cast<qreal>(m_segments.size());
    const qreal place = layoutDirection() == Qt::RightToLeft
                            ? static_cast<qreal>(m_segments.size()) - 1 - m_pill->value()
                            : m_pill->value();
    const QRectF pill = QRectF(place * segmentWidth, 0, segmentWidth, height())
                            .adjusted(pillInset, pillInset, -pillInset, -pillInset);
    const qreal pillRadius = radius - pillInset;
    Drawing::fill(painter, pill.translated(0, 1), pillRadius,
                  Drawing::faded(Qt::black, shadowOpacity));
    Drawing::fill(painter, pill, pillRadius, m_theme[ColorRole::pill]);
    Drawing::edge(
        painter, pill, pillRadius,
        QPen(m_theme[ColorRole::separator], m_theme.appearance().isHighContrast ? 2 : 0.5));
}
