#pragma once

#include "FramedArea.h"

#include <optional>

class QPlainTextEdit;

/// A framed area to write text of many lines in. Return breaks the line, Tab leaves. The place for
/// text, with its placeholder, begins 10 logical pixels from the edges. Main thread.
class TextEditor : public FramedArea
{
    Q_OBJECT

public:
    explicit TextEditor(const Theme& theme, QWidget* parent = nullptr);

    /// Costs little after typing, however large the text: it is kept, and what is typed is put in.
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

    const Theme& m_theme;
    QPlainTextEdit* m_editor;
    mutable std::optional<QString> m_text; // what is written, where it has been asked for
};
