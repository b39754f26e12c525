#include "AppState.h"
#include "CancelToken.h"
#include "QtText.h"
#include "SummaryRun.h"

void AppState::summarize()
{
    if (QStringView(sourceText.get()).trimmed().isEmpty()) {
        errorMessage = QStringLiteral("Nothing to summarize yet.");
        return;
    }
    // If a source action led here, the state stays "working" until the next action.
    if (!m_services.isModelReady()) {
        errorMessage = QStringLiteral("The language model is still downloading.");
        return;
    }
    if (m_token)
        m_token->cancel();
    const auto token = std::make_shared<CancelToken>();
    m_token = token;
    errorMessage = std::nullopt;
    output = QString();
    isWorking = true;
    status = QStringLiteral("Loading model…");
    const SummaryRun::Listener listener = {
        .status = [this](const QString& text) { status = text; },
        .output = [this](const QString& text) { output = text; },
        .finished =
            [this](const QString& text) {
                output = text;
                isWorking = false;
                status = QString();
            },
        .failed = [this](const QString& sentence) { fail(sentence); }};
    try {
        SummaryRun::start(m_threads, m_queue, {sourceText, mode, lengthValue()}, token,
                          m_services.generate, listener);
    } catch (const std::exception& error) {
        fail(QtText::sentence(error));
    }
}

void AppState::stop()
{
    if (m_token)
        m_token->cancel();
    isWorking = false;
    status = QString();
}
