#include "StateView.h"

#include "AppState.h"

StateView::StateView(AppState& state, QWidget* parent) : QWidget(parent), m_state(state)
{
    connect(&state, &AppState::willChange, this, &StateView::markStale);
}

void StateView::markStale()
{
    if (m_isStale)
        return;
    m_isStale = true;
    const auto refreshOnce = [this] {
        m_isStale = false; // before refresh(), which may change the state
        refresh();
    };
    QMetaObject::invokeMethod(this, refreshOnce, Qt::QueuedConnection);
}
