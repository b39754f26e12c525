#pragma once

#include "ColorRole.h"
#include "TextStyle.h"

#include <QTextEdit>

class Theme;

/// A message, centred in its area. It wraps anywhere if need be, scrolls if it is longer than the
/// area, and can be selected. Main thread.
class MessageView : public QTextEdit
{
    Q_OBJECT

public:
    MessageView(const Theme& theme, TextStyle style, ColorRole role, QWidget* parent = nullptr);

    /// Shows `message`, plain text.
    void setMessage(const QString& message);

    /// How high the message is at this width, up to ten lines.
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {}; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    int wholeHeight(int width) const;
    void follow();
    void center();

    const Theme& m_theme;
    TextStyle m_style;
    ColorRole m_role;
};
