#include "AppState.h"

#include "CancelToken.h"
#include "MainThreadQueue.h"
#include "QtText.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

static constexpr std::array<std::string_view, AppState::allTabs.size()> tabLabels = {
    "Clipboard", "Document", "Web", "Capture"};

std::string_view AppState::rawValue(Tab tab)
{
    return tabLabels.at(static_cast<std::size_t>(tab));
}

std::optional<AppState::Tab> AppState::tabFromRawValue(std::string_view wanted)
{
    const auto* const found = std::ranges::find(allTabs, wanted, rawValue);
    return found == allTabs.end() ? std::nullopt : std::optional(*found);
}

AppState& AppState::shared()
{
    static AppState* const state = [] {
        auto* const made = new AppState(AppServices::system());
        made->moveToThread(QCoreApplication::instance()->thread());
        qAddPostRoutine([] { delete &shared(); });
        return made;
    }();
    return *state;
}

AppState::AppState(AppServices services)
    : m_services(std::move(services)), m_queue(MainThreadQueue::create())
{}

AppState::~AppState()
{
    if (m_token)
        m_token->cancel();
    m_queue->close();
}

SummaryLength AppState::lengthValue() const
{
    constexpr double limit = 9223372036854775808.0; // 2 to the 63
    const double rounded = std::round(length.get());
    if (!(rounded >= -limit && rounded < limit))
        std::abort(); // a mistake of ours: no control has such a position
    if (rounded < 0 || rounded > 2)
        return SummaryLength::balanced;
    return summaryLengthAt(static_cast<std::size_t>(rounded));
}

qsizetype AppState::wordCount() const
{
    return m_wordCount.of(sourceText);
}

void AppState::setSource(std::string_view text, const QString& label)
{
    accept(QtText::normalised(text), label);
}

void AppState::accept(const QString& normalised, const QString& label)
{
    if (normalised.isEmpty()) {
        fail(QStringLiteral("No text found in ") + label + u'.');
        return;
    }
    sourceText = normalised;
    sourceLabel = label;
    summarize();
}

void AppState::fail(const QString& sentence)
{
    errorMessage = sentence;
    isWorking = false;
    status = QString();
}
