#include "AppState.h"
#include "Pasteboard.h"
#include "QtText.h"

#include <cstdlib>

void AppState::copy(const QString& text)
{
    m_services.pasteboard->clear();
    m_services.pasteboard->writeText(QtText::toUtf8(text));
}

void AppState::copyMarkdown()
{
    copy(output);
    flash(QStringLiteral("Markdown copied"));
}

void AppState::replaceClipboard()
{
    QString plain = output;
    copy(plain.remove(QStringLiteral("**")));
    flash(QStringLiteral("Clipboard replaced"));
}

void AppState::appendToDailyNote()
{
    try {
        const std::filesystem::path documents = m_services.documentsFolder();
        if (documents.empty())
            std::abort(); // the service throws if there is none
        m_services.appendToNote(documents, {sourceLabel, mode, output}, m_services.now());
    } catch (const std::exception& error) {
        errorMessage = QStringLiteral("Couldn't write the daily note: ") + QtText::sentence(error);
        return;
    }
    flash(QStringLiteral("Added to today's note"));
}
