#include "AppState.h"

#include <QPointer>

void AppState::flash(const QString& message)
{
    toast = message;
    m_services.later(toastTime, [state = QPointer(this), message] {
        if (state && state->toast.get() == message)
            state->toast = std::nullopt;
    });
}
