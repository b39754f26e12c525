#include "MessageView.h"

#include "ScrollBar.h"

#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>
#include <cmath>

static constexpr int lineHeight = 130; // percent
static constexpr int mostLines = 10;

MessageView::MessageView(const Theme& theme, TextStyle style, ColorRole role, QWidget* parent)
    : Themed(theme, parent), m_role(role)
{
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setFrameShape(QFrame::NoFrame);
    setTabChangesFocus(true);
    setVerticalScrollBar(new ScrollBar(theme));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(0);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setTextStyle(style);
    followTheme();
}

void MessageView::followTheme()
{
    Themed::followTheme();
    setMessage(toPlainText());
}

void MessageView::setMessage(const QString& message)
{
    setPlainText(message);
    QTextCursor all(document());
    all.select(QTextCursor::Document);
    QTextBlockFormat block;
    block.setAlignment(Qt::AlignHCenter);
    block.setLineHeight(lineHeight, QTextBlockFormat::ProportionalHeight);
    all.mergeBlockFormat(block);
    QTextCharFormat character;
    character.setForeground(m_theme[m_role]);
    all.mergeCharFormat(character);
    updateGeometry();
    center();
}

int MessageView::wholeHeight(int width) const
{
    const QScopedPointer<QTextDocument> copy(document()->clone());
    copy->setTextWidth(width);
    return static_cast<int>(std::ceil(copy->size().height()));
}

int MessageView::heightForWidth(int width) const
{
    const int most = mostLines * fontMetrics().height() * lineHeight / 100;
    return std::min(most, wholeHeight(width));
}

QSize MessageView::sizeHint() const
{
    constexpr int usualWidth = 400;
    return {usualWidth, heightForWidth(usualWidth)};
}

void MessageView::resizeEvent(QResizeEvent* event)
{
    QTextEdit::resizeEvent(event);
    center();
}

void MessageView::center()
{
    const int free = height() - wholeHeight(width());
    // Not ScrollBarAsNeeded: Qt would first try with the bar, beside which the text is higher.
    setVerticalScrollBarPolicy(free < 0 ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    // The space below the last line, which is not seen.
    const int leading = fontMetrics().height() * (lineHeight - 100) / 100;
    setViewportMargins(0, free > 0 ? (free + std::min(free, leading)) / 2 : 0, 0, 0);
    // Qt lays the text out again when it resizes the viewport, but not when the scroll bar has just
    // gone.
    document()->setTextWidth(viewport()->width());
}
