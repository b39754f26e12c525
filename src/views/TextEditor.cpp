#include "TextEditor.h"

#include "FocusRing.h"
#include "ScrollBar.h"
#include "Theme.h"

#include <QPlainTextEdit>
#include <QTextDocument>
#include <QVBoxLayout>

static constexpr int padding = 4;
static constexpr int documentMargin = 6;

TextEditor::TextEditor(const Theme& theme, QWidget* parent)
    : FramedArea(theme, parent), m_theme(theme), m_editor(new QPlainTextEdit(this))
{
    m_editor->setObjectName(QStringLiteral("editor"));
    m_editor->setFrameShape(QFrame::NoFrame);
    m_editor->setTabChangesFocus(true);
    m_editor->setVerticalScrollBar(new ScrollBar(theme, Qt::Vertical));
    m_editor->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_editor->document()->setDocumentMargin(documentMargin);
    m_editor->viewport()->setAutoFillBackground(false);
    setFocusProxy(m_editor);
    FocusRing::outline(*m_editor, *this, radius);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(padding, padding, padding, padding);
    layout->addWidget(m_editor);
    follow();
    connect(&theme, &Theme::changed, this, &TextEditor::follow);
    connect(m_editor, &QPlainTextEdit::textChanged, this, &TextEditor::textChanged);
}

void TextEditor::follow()
{
    m_editor->setFont(m_theme.font(TextStyle::body));
}

QString TextEditor::text() const
{
    return m_editor->toPlainText();
}

void TextEditor::setText(const QString& text)
{
    if (text != this->text())
        m_editor->setPlainText(text);
}

void TextEditor::setPlaceholder(const QString& text)
{
    m_editor->setPlaceholderText(text);
}
