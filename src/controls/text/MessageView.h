#pragma once

#include "Themed.h"

#include <QTextEdit>

/// A message, centred in its area. It wraps anywhere if need be, scrolls if it is longer than the
/// area, and can be selected. Main thread.
class MessageView : public Themed<QTextEdit>
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
    void followTheme() final;

private:
    int wholeHeight(int width) const;
    void center();

    ColorRole m_role;
};
