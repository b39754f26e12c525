#include "TextEditor.h"

#include "Divider.h"
#include "FocusRing.h"
#include "Label.h"
#include "Make.h"
#include "ScrollBar.h"

#include <QMimeData>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>
#include <utility>

namespace {

constexpr int padding = 4;
constexpr int documentMargin = 6;

/// The character that QTextDocument::toPlainText() turns `character` into.
QChar plain(QChar character)
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

/// Counts what makes the layout of a text slow, character by character.
class Layout
{
public:
    /// Counts `character`. Returns whether the text is still within the limits.
    bool takes(QChar character)
    {
        const bool endsLine = plain(character) == u'\n' || character == u'\r';
        m_lines += endsLine ? 1 : 0;
        // A line separator does not end the block that Qt lays out as a whole.
        m_inLine = endsLine && character != QChar::LineSeparator ? 0 : m_inLine + 1;
        if (!character.isHighSurrogate()) // the low half tells whether it is a mark
            m_marks = isMark(character) ? m_marks + 1 : 0;
        m_last = character;
        return m_lines <= TextEditor::mostLines && m_inLine <= TextEditor::mostInLine &&
               m_marks <= TextEditor::mostMarks;
    }

private:
    bool isMark(QChar character) const
    {
        constexpr char16_t firstMark = 0x0300;
        if (character < firstMark)
            return false;
        const bool isHalf = character.isLowSurrogate() && m_last.isHighSurrogate();
        return isHalf ? QChar::isMark(QChar::surrogateToUcs4(m_last, character))
                      : character.isMark();
    }

    qsizetype m_lines = 1;
    qsizetype m_inLine = 0;
    qsizetype m_marks = 0;
    QChar m_last;
};

/// Whether `text` is within the limits. Looks no further than it has to.
bool isSmall(QStringView text)
{
    Layout layout;
    return text.size() <= TextEditor::mostCharacters &&
           std::all_of(text.begin(), text.end(),
                       [&layout](QChar character) { return layout.takes(character); });
}

/// The beginning of `text` that is shown: as much as may be in one line, or less if it would be
/// slow. It does not end in half a character.
QString beginning(const QString& text)
{
    Layout layout;
    qsizetype size = 0;
    while (size < std::min(text.size(), TextEditor::mostInLine) && layout.takes(text.at(size)))
        ++size;
    const bool isHalved = size > 0 && text.at(size - 1).isHighSurrogate();
    return text.first(size - (isHalved ? 1 : 0));
}

/// An editor that first asks about text that is pasted or dropped.
class Editor : public QPlainTextEdit
{
public:
    /// Returns true if it has taken the text itself, so that the editor must not insert it.
    using Insert = std::function<bool(const QString&)>;

    Editor(Insert insert, QWidget* parent) : QPlainTextEdit(parent), m_insert(std::move(insert)) {}

protected:
    void insertFromMimeData(const QMimeData* source) override
    {
        if (isReadOnly() || !source->hasText() || !m_insert(source->text()))
            QPlainTextEdit::insertFromMimeData(source);
    }

private:
    Insert m_insert;
};

} // namespace

TextEditor::TextEditor(const Theme& theme, QWidget* parent)
    : FramedArea(theme, parent),
      m_editor(new Editor([this](const QString& pasted) { return insertLarge(pasted); }, this)),
      m_divider(new Divider(theme, this)),
      m_note(new Label(theme, TextStyle::caption, ColorRole::secondary,
                       QStringLiteral("Too long to edit here: the beginning is shown, the whole "
                                      "text is kept."),
                       this))
{
    m_editor->setObjectName(QStringLiteral("editor"));
    m_editor->setFrameShape(QFrame::NoFrame);
    m_editor->setTabChangesFocus(true);
    m_editor->setVerticalScrollBar(new ScrollBar(theme));
    m_editor->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_editor->document()->setDocumentMargin(documentMargin);
    m_editor->viewport()->setAutoFillBackground(false);
    setFocusProxy(m_editor);
    FocusRing::outline(*m_editor, *this, radius);
    auto* const layout =
        Make::layout<QVBoxLayout>(this, padding, {padding, padding, padding, padding});
    layout->addWidget(m_editor);
    layout->addWidget(m_divider);
    layout->addWidget(m_note);
    m_note->setObjectName(QStringLiteral("editorNote"));
    m_note->setIndent(documentMargin);
    m_divider->hide();
    m_note->hide();
    followTheme();
    // Connected before textChanged, so that the text is up to date when that is announced.
    connect(m_editor->document(), &QTextDocument::contentsChange, this, &TextEditor::takeChange);
    connect(m_editor, &QPlainTextEdit::textChanged, this, &TextEditor::textChanged);
}

void TextEditor::followTheme()
{
    FramedArea::followTheme();
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
    if (!m_text || m_isShownInPart)
        return;
    // Qt may report a change of the mark at the document's end, which is not part of the text.
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
    // The text is shared, so it has to be copied for every key. Copying into an old buffer takes a
    // tenth of the time of a new one: by now nobody else has the text before.
    const QStringView whole = *m_text;
    m_textBefore.resize(size);
    QChar* place = m_textBefore.data();
    place = std::copy(whole.begin(), whole.begin() + position, place);
    place = std::copy(text.begin(), text.end(), place);
    std::copy(whole.begin() + position + removed, whole.end(), place);
    m_text->swap(m_textBefore);
}

void TextEditor::setText(const QString& text)
{
    if (text != this->text())
        showText(text);
}

void TextEditor::showText(const QString& text)
{
    m_isShownInPart = !isSmall(text);
    m_editor->setReadOnly(m_isShownInPart);
    m_divider->setVisible(m_isShownInPart);
    m_note->setVisible(m_isShownInPart);
    m_editor->setAccessibleDescription(m_isShownInPart ? m_note->text() : QString());
    m_textBefore = QString();
    if (m_isShownInPart) {
        m_text = text; // before the change is announced
        m_editor->setPlainText(beginning(text));
    } else {
        m_text.reset();
        m_editor->setPlainText(text);
        m_text = m_editor->toPlainText(); // now rather than at the first key
    }
}

/// Inserts `pasted` if the text becomes too large by it. Returns whether it has done so.
bool TextEditor::insertLarge(const QString& pasted)
{
    const QTextCursor cursor = m_editor->textCursor();
    const QString text = this->text();
    const QString whole =
        text.first(cursor.selectionStart()) + pasted + text.sliced(cursor.selectionEnd());
    if (isSmall(whole))
        return false;
    showText(whole);
    return true;
}

void TextEditor::describe(const QString& placeholder, const QString& name)
{
    m_editor->setPlaceholderText(placeholder);
    m_editor->setAccessibleName(name);
}
