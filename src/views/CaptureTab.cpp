#include "CaptureTab.h"

#include "AppState.h"
#include "Focus.h"
#include "Make.h"
#include "PlatformWords.h"
#include "PushButton.h"
#include "SentenceLabel.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include <array>

static constexpr int spacing = 10;
static constexpr int buttonSpacing = 8;

namespace {

struct Choice
{
    const char* name;
    const char* text;
    Symbol symbol;
    ScreenGrab::Kind kind;
};

constexpr std::array choices = {
    Choice{"captureWindow", "Active Window", Symbol::window, ScreenGrab::Kind::window},
    Choice{"captureScreen", "Full Screen", Symbol::display, ScreenGrab::Kind::screen},
    Choice{"captureRegion", "Select Area", Symbol::rectangleViewfinder, ScreenGrab::Kind::region},
};

} // namespace

CaptureTab::CaptureTab(AppState& state, const Theme& theme, QWidget* parent)
    : StateView(state, parent), m_buttons(new QWidget(this))
{
    auto* const row = Make::layout<QHBoxLayout>(m_buttons, buttonSpacing);
    for (const Choice& choice : choices) {
        auto* const button =
            Make::named<PushButton>(choice.name, theme, QString::fromUtf8(choice.text), m_buttons);
        button->setSymbol(choice.symbol);
        connect(button, &QPushButton::clicked, &state,
                [&state, kind = choice.kind] { state.capture(kind); });
        row->addWidget(button);
        if (!focusProxy())
            setFocusProxy(button);
    }
    auto* const note = new SentenceLabel(theme, TextStyle::caption, ColorRole::secondary,
                                         QString::fromUtf8(platformWords.captureNote), this);

    auto* const column = Make::layout<QVBoxLayout>(this, spacing);
    column->addStretch();
    column->addWidget(m_buttons, 0, Qt::AlignHCenter);
    column->addWidget(note);
    column->addStretch();
    refresh();
}

void CaptureTab::refresh()
{
    if (m_buttons->isEnabledTo(this) != state().isWorking)
        return;
    if (state().isWorking)
        disableButtons();
    else
        enableButtons();
}

void CaptureTab::disableButtons()
{
    QWidget* const focused = window()->focusWidget();
    m_focused = m_buttons->isAncestorOf(focused) ? focused : nullptr;
    m_buttons->setEnabled(false);
    if (m_focused)
        focusNextChild();
    m_heir = window()->focusWidget();
}

/// Gives the focus back, unless the user has moved it in the meantime.
void CaptureTab::enableButtons()
{
    m_buttons->setEnabled(true);
    if (m_focused && isWithHeir())
        m_focused->setFocus();
    else if (isVisibleTo(window()) && Focus::isLost(*this))
        focusNextChild();
}

bool CaptureTab::isWithHeir() const
{
    const QWidget* const focused = window()->focusWidget();
    if (focused == m_heir)
        return true;
    // The focus went to Stop, and Summarize takes its place in the same row.
    return m_heir && focused && focused->parentWidget() == m_heir->parentWidget();
}
