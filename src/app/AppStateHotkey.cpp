#include "AppState.h"
#include "PlatformWords.h"
#include "QtText.h"

#include <QCoroFuture>
#include <QPointer>

QCoro::Task<> AppState::handleHotkey()
{
    if (m_presses == mostPresses)
        co_return;
    const QPointer<AppState> state(this);
    ++m_presses;
    co_await takeWhatIsThere();
    if (state)
        --m_presses;
}

QCoro::Task<> AppState::takeWhatIsThere()
{
    const QPointer<AppState> state(this); // this object may be gone after any co_await
    errorMessage = std::nullopt;
    const std::optional<std::string> selected = co_await m_services.grabSelection();
    if (!state)
        co_return;
    if (selected) {
        tab = Tab::clipboard;
        setSource(*selected, QStringLiteral("Selected text"));
        co_return;
    }
    const bool mayCapture = m_services.mayCaptureScreen();
    if (mayCapture) {
        tab = Tab::capture;
        isWorking = true;
        status = QStringLiteral("Capturing and reading text…");
        const Reading captured = co_await capturedText(ScreenGrab::Kind::window);
        if (!state)
            co_return;
        if (!captured.text.isEmpty()) {
            accept(captured.text, QStringLiteral("Active window"));
            co_return;
        }
        isWorking = false;
        status = QString();
    }
    tab = Tab::clipboard;
    co_await acceptClipboard(QString::fromUtf8(mayCapture ? platformWords.nothingSelected
                                                          : platformWords.nothingReadable));
}
