#include "AppState.h"
#include "QtText.h"
#include "Utf8.h"

#include <QCoroFuture>
#include <QPointer>

#include <utility>

namespace {

/// The last component of the path, even if that ends in a slash.
QString labelOf(const std::filesystem::path& file)
{
    const std::filesystem::path name =
        file.has_filename() ? file.filename() : file.parent_path().filename();
    return QtText::fromUtf8(Utf8::decoded(name.empty() ? file.native() : name.native()));
}

QCoro::Task<Reading> reading(QCoro::Task<std::string> page)
{
    try {
        const std::string text = co_await page;
        co_return Reading{.text = QtText::normalised(text), .error = std::nullopt};
    } catch (const std::exception& error) {
        co_return Reading::failed(error);
    }
}

} // namespace

void AppState::beginReading(const QString& message)
{
    errorMessage = std::nullopt;
    isWorking = true;
    status = message;
}

template <typename Awaitable>
QCoro::Task<> AppState::acceptWhenRead(Awaitable source, QString label)
{
    const QPointer<AppState> state(this);
    const Reading reading = co_await source;
    if (!state)
        co_return;
    if (!reading.share.isEmpty())
        label += " (" + reading.share + u')';
    if (reading.error)
        fail(*reading.error);
    else
        accept(reading.text, label);
}

QFuture<Reading> AppState::inBackground(std::function<DocumentText()> read,
                                        BackgroundThreads::Start start)
{
    const auto reading = [read = std::move(read)] {
        try {
            const DocumentText text = read();
            return Reading{.text = QtText::normalised(text.text),
                           .error = std::nullopt,
                           .share = QtText::fromUtf8(text.share)};
        } catch (const std::exception& error) {
            return Reading::failed(error);
        }
    };
    try {
        return m_threads.run<Reading>(start, reading);
    } catch (const std::exception& error) {
        return QtFuture::makeReadyFuture(Reading::failed(error));
    }
}

// The next two functions are not written inline where they are awaited: GCC 12 destroys a function
// object twice if it is made in an expression that contains co_await.

QFuture<Reading> AppState::clipboardText()
{
    return inBackground([read = m_services.clipboardText] { return read().value_or(""); });
}

QFuture<Reading> AppState::capturedText(ScreenGrab::Kind kind)
{
    return inBackground([capture = m_services.captureText, kind] { return capture(kind); },
                        &BackgroundThreads::startInTurn);
}

QCoro::Task<> AppState::acceptClipboard(QString messageOtherwise)
{
    const QPointer<AppState> state(this);
    const Reading reading = co_await clipboardText();
    if (!state)
        co_return;
    if (reading.text.isEmpty())
        errorMessage = reading.error.value_or(messageOtherwise);
    else
        accept(reading.text, QStringLiteral("Clipboard"));
}

void AppState::useClipboard()
{
    acceptClipboard(QStringLiteral("The clipboard has no text."));
}

void AppState::loadFile(const std::filesystem::path& file)
{
    const QString label = labelOf(file);
    beginReading(QStringLiteral("Reading ") + label + u'…');
    acceptWhenRead(inBackground([read = m_services.readDocument, file] { return read(file); }),
                   label);
}

void AppState::fetchURL()
{
    const QString address = urlString;
    beginReading(QStringLiteral("Fetching page…"));
    acceptWhenRead(reading(m_services.fetchPage(QtText::toUtf8(address))), address);
}

void AppState::capture(ScreenGrab::Kind kind)
{
    beginReading(QStringLiteral("Capturing and reading text…"));
    acceptWhenRead(capturedText(kind), QtText::fromUtf8(ScreenGrab::labelOf(kind)));
}
