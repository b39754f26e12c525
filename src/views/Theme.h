#pragma once

#include "Appearance.h"
#include "TextStyle.h"
#include "ThemeColors.h"

#include <QFont>
#include <QObject>

class QWidget;

/// What everything that is drawn looks like: colours, fonts, durations. Every widget of ours takes
/// one, which outlives it, and follows it. Main thread.
class Theme : public QObject
{
    Q_OBJECT

public:
    explicit Theme(const Appearance& appearance = {}, QObject* parent = nullptr);

    /// Announces the change, unless it is none.
    void setAppearance(const Appearance& appearance);
    const Appearance& appearance() const { return m_appearance; }

    const QColor& operator[](ColorRole role) const { return m_colors[role]; }

    /// In the application's font family, with sizes in logical pixels.
    QFont font(TextStyle style) const;

    /// How long a change of state fades, in milliseconds; 0 where motion is reduced.
    int fadeDuration() const;

    /// Gives `root` and the widgets inside it the palette and the body's font, now and after every
    /// change.
    void applyTo(QWidget& root) const;

    /// Announces a change that is not of the appearance: the application's font.
    void refresh();

signals:
    void changed();

private:
    Appearance m_appearance;
    ThemeColors m_colors;
};
