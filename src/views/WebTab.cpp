#include "WebTab.h"

#include "AppState.h"
#include "Focus.h"
#include "Label.h"
#include "Make.h"
#include "PushButton.h"
#include "TextField.h"

#include <QVBoxLayout>

#include <algorithm>

static constexpr int spacing = 8;

/// Whether `text` has anything but tabs and spaces of any width. Line breaks count as something.
static bool isFilled(const QString& text)
{
    return std::any_of(text.begin(), text.end(), [](QChar character) {
        return character != u'\t' && character.category() != QChar::Separator_Space;
    });
}

WebTab::WebTab(AppState& state, const Theme& theme, QWidget* parent)
    : StateView(state, parent),
      m_address(Make::named<TextField>("address", theme, this)),
      // "&&" is shown as "&"; a single one would mark a shortcut key.
      m_fetch(Make::named<PushButton>("fetch", theme, QStringLiteral("Fetch && Summarize"), this))
{
    m_address->setAccessibleName(QStringLiteral("Web address"));
    m_address->setPlaceholderText(QStringLiteral("https://example.com/article"));
    m_address->setInputMethodHints(Qt::ImhUrlCharactersOnly);
    m_fetch->setSymbol(Symbol::documentArrow);
    setFocusProxy(m_address);
    auto* const note =
        new Label(theme, TextStyle::caption, ColorRole::secondary,
                  QStringLiteral("Only the page you enter is downloaded, then reduced to "
                                 "reader-mode text. Summarizing itself never uses the network."),
                  this);
    note->setWordWrap(true);

    auto* const column = Make::layout<QVBoxLayout>(this, spacing);
    column->addWidget(m_address);
    column->addWidget(m_fetch, 0, Qt::AlignLeft);
    column->addWidget(note);
    column->addStretch();

    connect(m_address, &QLineEdit::textEdited, this,
            [this](const QString& text) { this->state().urlString = text; });
    connect(m_address, &QLineEdit::returnPressed, &state, &AppState::fetchURL);
    connect(m_fetch, &QPushButton::clicked, &state, &AppState::fetchURL);
    refresh();
}

void WebTab::refresh()
{
    const QString& address = state().urlString;
    if (m_address->text() != address) {
        m_address->setText(address);
        m_address->setCursorPosition(0); // the beginning of an address tells the most
    }
    const bool isEnabled = isFilled(address) && !state().isWorking;
    // The button is about to be disabled. The focus would then go to whatever comes next.
    if (!isEnabled && Focus::isIn(*m_fetch))
        m_address->setFocus();
    m_fetch->setEnabled(isEnabled);
}
