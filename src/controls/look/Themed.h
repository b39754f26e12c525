#pragma once

#include "Theme.h"

#include <optional>
#include <utility>

/// A `Widget` that is drawn with a theme, which must outlive it, and follows its changes. Main
/// thread.
template <typename Widget>
class Themed : public Widget
{
protected:
    template <typename... Arguments>
    explicit Themed(const Theme& theme, Arguments&&... arguments)
        : Widget(std::forward<Arguments>(arguments)...), m_theme(theme)
    {
        QObject::connect(&theme, &Theme::changed, this, [this] { followTheme(); });
    }

    /// Gives the widget the theme's font of this style from now on.
    void setTextStyle(TextStyle style)
    {
        m_textStyle = style;
        Themed::followTheme();
    }

    /// Takes over what the theme has now. Called after every change.
    virtual void followTheme()
    {
        if (m_textStyle)
            this->setFont(m_theme.font(*m_textStyle));
        this->update();
    }

    const Theme& m_theme;

private:
    std::optional<TextStyle> m_textStyle;
};
