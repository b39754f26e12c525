#include "ClipboardTab.h"

#include "AppState.h"
#include "Focus.h"
#include "Make.h"
#include "PushButton.h"
#include "TextEditor.h"

#include <QHBoxLayout>
#include <QScopedValueRollback>
#include <QVBoxLayout>

static constexpr int spacing = 6;
static constexpr int buttonSpacing = 8;

ClipboardTab::ClipboardTab(AppState& state, const Theme& theme, QWidget* parent)
    : StateView(state, parent), m_editor(Make::named<TextEditor>("sourceEditor", theme, this))
{
    auto* const use =
        Make::named<PushButton>("useClipboard", theme, QStringLiteral("Use Clipboard"), this);
    use->setSymbol(Symbol::clipboard);
    m_clear = Make::named<PushButton>("clear", theme, QStringLiteral("Clear"), this);
    m_editor->describe(QStringLiteral("Paste or type text here…"),
                       QStringLiteral("Text to summarize"));
    setFocusProxy(m_editor);

    auto* const column = Make::layout<QVBoxLayout>(this, spacing);
    column->addWidget(m_editor, 1);
    auto* const row = Make::layout<QHBoxLayout>(nullptr, buttonSpacing);
    row->addWidget(use);
    row->addWidget(m_clear);
    row->addStretch();
    column->addLayout(row);

    connect(m_editor, &TextEditor::textChanged, this, &ClipboardTab::takeTyped);
    connect(use, &QPushButton::clicked, &state, &AppState::useClipboard);
    connect(m_clear, &QPushButton::clicked, this, &ClipboardTab::clear);
    refresh();
}

void ClipboardTab::showEvent(QShowEvent*)
{
    refresh();
}

void ClipboardTab::refresh()
{
    // Text from another tab is laid out only when this tab is looked at.
    if (isHidden())
        return;
    const QString& text = state().sourceText;
    m_clear->setEnabled(!text.isEmpty());
    // Text that was typed here shares its buffer, so that large texts are not compared for every
    // key.
    if (text.isSharedWith(m_known) || text == m_known)
        return;
    m_known = text;
    const QScopedValueRollback showing(m_isShowing, true);
    m_editor->setText(text);
    labelSource();
}

void ClipboardTab::takeTyped()
{
    if (m_isShowing)
        return;
    m_known = m_editor->text();
    state().sourceText = m_known;
    labelSource();
}

void ClipboardTab::labelSource()
{
    if (state().sourceLabel->isEmpty())
        state().sourceLabel = QStringLiteral("Pasted text");
}

void ClipboardTab::clear()
{
    // The button is about to be disabled. The focus would then go to whatever comes next.
    if (Focus::isIn(*m_clear))
        m_editor->setFocus();
    state().sourceText = QString();
    state().sourceLabel = QString();
    state().output = QString();
}
