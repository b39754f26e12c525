#include "AppError.h"
#include "Characters.h"
#include "FreedMemory.h"
#include "HTMLText.h"
#include "PageAddress.h"
#include "PageTransfer.h"
#include "Utf8.h"

#include <QCoroFuture>
#include <QScopeGuard>
#include <QThreadPool>
#include <QUnhandledException>
#include <QtConcurrentRun>

#include <memory>
#include <utility>

namespace HTMLText {

/// A text with fewer characters is a menu or a message, not an article.
static constexpr std::size_t fewestCharacters = 80;

/// Runs on another thread. It takes and gives pointers, because Qt copies what goes to another
/// thread and what comes back.
static std::shared_ptr<std::string> readable(const std::shared_ptr<PageBody>& body)
{
    auto text = std::make_shared<std::string>(readerText(Utf8::decoded(std::move(*body).joined())));
    if (Characters::prefix(*text, fewestCharacters).characters < fewestCharacters)
        throw AppError("Couldn't find readable text on that page.");
    return text;
}

static QCoro::Task<PageBody> download(QUrl address, std::chrono::milliseconds timeout)
{
    PageTransfer transfer(std::move(address), {.silence = timeout});
    co_return co_await transfer.body();
}

QCoro::Task<std::string> fetch(std::string address, std::chrono::milliseconds timeout)
{
    // Before everything that holds the page, so that all of it is free by then. On another thread,
    // because it takes some milliseconds.
    const auto memoryReturn =
        qScopeGuard([] { QThreadPool::globalInstance()->start(&FreedMemory::giveBack); });
    auto body =
        std::make_shared<PageBody>(co_await download(PageAddress::parsed(address), timeout));
    try {
        const std::shared_ptr<std::string> text =
            co_await QtConcurrent::run(readable, std::move(body));
        co_return std::move(*text);
    } catch (const QUnhandledException& wrapped) {
        std::rethrow_exception(wrapped.exception());
    }
}

} // namespace HTMLText
