#pragma once

#include "FramedArea.h"

#include <optional>

class Divider;
class Label;
class QPlainTextEdit;

/// A framed area to write text of many lines in. Return breaks the line, Tab leaves. The text and
/// the placeholder begin 10 logical pixels from the edges. Main thread.
///
/// Some texts would take too long. A line is laid out as a whole; without gaps in it, the time
/// grows with the square of its length. Every line is an object, and millions of them take half a
/// minute. Of the marks on one letter, each is drawn over the others. A text that exceeds one of
/// the limits below is therefore shown only in part and cannot be edited. A note says so, until
/// another text is set.
class TextEditor : public FramedArea
{
    Q_OBJECT

public:
    static constexpr qsizetype mostInLine = 8'000;
    static constexpr qsizetype mostLines = 20'000;
    static constexpr qsizetype mostCharacters = 1'500'000;
    static constexpr qsizetype mostMarks = 100; // on one letter

    explicit TextEditor(const Theme& theme, QWidget* parent = nullptr);

    /// The whole text, even if only a part of it is shown. Cheap, however large the text is: it is
    /// kept, and each edit is applied to it.
    QString text() const;

    /// Replaces the whole text, which the user cannot undo. Does nothing if the text is the same.
    void setText(const QString& text);

    /// Shows `placeholder` while there is no text. Screen readers call the editor `name`.
    void describe(const QString& placeholder, const QString& name = {});

signals:
    /// The text has changed, by the user or by setText(). The signal does not carry the text, which
    /// may be large.
    void textChanged();

protected:
    void followTheme() final;

private:
    void takeChange(int position, int removed, int added);
    void showText(const QString& text);
    bool insertLarge(const QString& pasted);

    QPlainTextEdit* m_editor;
    Divider* m_divider; // above the note
    Label* m_note;
    mutable std::optional<QString> m_text; // the whole text, if it is known
    QString m_textBefore;                  // kept for its buffer
    bool m_isShownInPart = false;
};
