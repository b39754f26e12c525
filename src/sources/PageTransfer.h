#pragma once

#include "PageBody.h"

#include <QCoroTask>
#include <QNetworkAccessManager>
#include <QObject>
#include <QScopedPointer>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <cstddef>
#include <exception>
#include <memory>
#include <optional>
#include <string>

class QNetworkReply;

/// One page on its way from its server. Redirects are followed; no cookie and no file outlives the
/// object. Lives on a thread with an event loop, which it keeps for a moment at a time.
class PageTransfer : public QObject
{
public:
    struct Limits
    {
        std::chrono::milliseconds silence = std::chrono::seconds(20); // of the server
        std::chrono::milliseconds whole = std::chrono::minutes(2);    // with all redirects
        std::size_t bytes = PageBody::usualLimit;                     // of the unpacked body
    };

    PageTransfer(QUrl address, const Limits& limits);

    /// What body() returns. GCC 12 would copy the object itself if that could be awaited.
    class Arrival
    {
    public:
        explicit Arrival(PageTransfer& transfer) : m_transfer(transfer) {}

        bool await_ready() const noexcept { return false; }
        void await_suspend(std::coroutine_handle<> waiting) { m_transfer.begin(waiting); }
        PageBody await_resume() { return m_transfer.result(); }

    private:
        PageTransfer& m_transfer;
    };

    /// Awaited, once, begins the transfer and yields the body as it was before it was compressed
    /// for the way. Throws AppError for an answer that is no page, and the network's error as a
    /// std::runtime_error, as one when the application quits.
    Arrival body() { return Arrival(*this); }

private:
    void begin(std::coroutine_handle<> waiting);
    PageBody result();
    void request();
    void proceed();
    void follow();
    void receive();
    void requireWholeBody() const;
    void end(std::exception_ptr error);

    QUrl m_address;
    const Limits m_limits;
    // The coroutine may destroy this object while the network is calling it.
    std::unique_ptr<QNetworkAccessManager, QScopedPointerDeleteLater> m_network;
    QNetworkReply* m_reply = nullptr; // the network's
    int m_redirects = 0;
    QTimer m_nextTurn;
    QTimer m_deadline;
    std::coroutine_handle<> m_waiting;
    std::optional<PageBody> m_body; // once its first bytes may have come
    std::exception_ptr m_error;
};
