#pragma once

#include "Appearance.h"
#include "ThemeColors.h"

#include <QFont>
#include <QObject>

class QWidget;

/// The sizes and weights of text. Theme has a font for each.
enum class TextStyle { title, headline, body, callout, caption, boldCaption, smallCaption };

/// Holds the look of everything that is drawn: colours, fonts, durations. Every widget of ours
/// takes a theme, which must outlive it, and follows its changes. Main thread.
class Theme : public QObject
{
    Q_OBJECT

public:
    explicit Theme(const Appearance& appearance = {}, QObject* parent = nullptr);

    /// Changes the appearance. Announces it with changed(), unless it is the same.
    void setAppearance(const Appearance& appearance);
    const Appearance& appearance() const { return m_appearance; }

    const QColor& operator[](ColorRole role) const { return m_colors[role]; }

    /// The font of this style, in the application's font family; sizes are in logical pixels.
    QFont font(TextStyle style) const;

    /// How many milliseconds a change of state takes to fade; 0 if motion is reduced.
    int fadeDuration() const;

    /// Gives `root` and the widgets inside it the theme's palette and body font, now and after
    /// every change.
    void applyTo(QWidget& root) const;

    /// Announces a change outside of the appearance: another font of the application.
    void refresh();

signals:
    void changed();

private:
    Appearance m_appearance;
    ThemeColors m_colors;
};
