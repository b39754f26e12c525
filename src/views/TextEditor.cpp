#include "TextEditor.h"

#include "FocusRing.h"
#include "ScrollBar.h"
#include "Theme.h"

#include <QPlainTextEdit>
#include <QTextCursor>
#include <QTextDocument>
#include <QVBoxLayout>

static constexpr int padding = 4;
static constexpr int documentMargin = 6;

/// What QTextDocument::toPlainText makes of it.
static QChar plain(QChar character)
{
    switch (character.unicode()) {
    case QChar::ParagraphSeparator:
    case QChar::LineSeparator:
    case u'\uFDD0':
    case u'\uFDD1':
        return u'\n';
    case QChar::Nbsp:
        return u' ';
    default:
        return character;
    }
}

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
    // Before the editor says that the text has changed, because it comes first.
    connect(m_editor->document(), &QTextDocument::contentsChange, this, &TextEditor::takeChange);
    connect(m_editor, &QPlainTextEdit::textChanged, this, &TextEditor::textChanged);
}

void TextEditor::follow()
{
    m_editor->setFont(m_theme.font(TextStyle::body));
}

QString TextEditor::text() const
{
    if (!m_text)
        m_text = m_editor->toPlainText();
    return *m_text;
}

void TextEditor::takeChange(int position, int removed, int added)
{
    if (!m_text)
        return;
    // The mark at the document's end, which is not text, may be said to have changed too.
    const int size = m_editor->document()->characterCount() - 1;
    const bool isText = position + added <= size && position + removed <= m_text->size();
    if (!isText || m_text->size() - removed + added != size) {
        m_text.reset();
        return;
    }
    QTextCursor cursor(m_editor->document());
    cursor.setPosition(position);
    cursor.setPosition(position + added, QTextCursor::KeepAnchor);
    QString text = cursor.selectedText();
    for (QChar& character : text)
        character = plain(character);
    m_text->replace(position, removed, text);
}

void TextEditor::setText(const QString& text)
{
    if (text == this->text())
        return;
    m_text.reset();
    m_editor->setPlainText(text);
}

void TextEditor::setPlaceholder(const QString& text)
{
    m_editor->setPlaceholderText(text);
}

void TextEditor::setEditorName(const QString& name)
{
    m_editor->setAccessibleName(name);
}
