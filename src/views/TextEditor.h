#pragma once

#include "FramedArea.h"

#include <optional>

class Divider;
class Label;
class QPlainTextEdit;

/// A framed area to write text of many lines in. Return breaks the line, Tab leaves. The place for
/// text, with its placeholder, begins 10 logical pixels from the edges. Main thread.
///
/// A line is laid out whole, in a time that grows with the square of its length where it has no
/// gaps; every line is an object, of which millions take half a minute; and of the marks on one
/// letter each is drawn over the others. A text of more than there may be of one of them is
/// therefore shown in part and cannot be edited, as a note says, until another text is set.
class TextEditor : public FramedArea
{
    Q_OBJECT

public:
    static constexpr qsizetype mostInLine = 8'000;
    static constexpr qsizetype mostLines = 20'000;
    static constexpr qsizetype mostCharacters = 1'500'000;
    static constexpr qsizetype mostMarks = 100; // on one letter

    explicit TextEditor(const Theme& theme, QWidget* parent = nullptr);

    /// All of the text, also where only a part is shown. Costs little, however large the text: it
    /// is kept, and what is typed is put in.
    QString text() const;

    /// Replaces all text, which the user cannot undo; nothing happens where it is the same.
    void setText(const QString& text);

    void setPlaceholder(const QString& text);

    /// What screen readers call it.
    void setEditorName(const QString& name);

signals:
    /// By whomever. It does not bear the text, which may be large.
    void textChanged();

private:
    void follow();
    void takeChange(int position, int removed, int added);
    void showText(const QString& text);
    bool insertLarge(const QString& pasted);

    const Theme& m_theme;
    QPlainTextEdit* m_editor;
    Divider* m_divider; // above the note
    Label* m_note;
    mutable std::optional<QString> m_text; // as it is, where that is known
    QString m_textBefore;                  // for its buffer
    bool m_isShownInPart = false;
};
