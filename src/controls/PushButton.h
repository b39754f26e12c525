#pragma once

#include "Symbol.h"
#include "Themed.h"

#include <QPushButton>

#include <optional>

class Fade;

/// A button with a text and perhaps an icon. The default button (setDefault) is filled with the
/// accent. A click does not take the focus from the text that is being written. Main thread.
class PushButton : public Themed<QPushButton>
{
    Q_OBJECT

public:
    /// Regular controls are 24 logical pixels high, small ones 20.
    enum class Size { regular, small };

    PushButton(const Theme& theme, const QString& text, QWidget* parent = nullptr,
               Size size = Size::regular);

    void setSymbol(Symbol symbol);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void paintGround(QPainter& painter) const;
    void paintContent(QPainter& painter) const;
    int contentWidth() const;
    bool isAccented() const;

    Size m_size;
    std::optional<Symbol> m_symbol;
    Fade* m_hover;
    Fade* m_press;
};
