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

/// Transfers one page from its server. Follows redirects; no cookie and no file outlives the
/// object. It lives on a thread with an event loop, which it never blocks for more than a moment.
class PageTransfer : public QObject
{
public:
    struct Limits
    {
        /// How long the server may send nothing.
        std::chrono::milliseconds silence = std::chrono::seconds(20);
        /// How long the whole transfer may take, with all redirects.
        std::chrono::milliseconds whole = std::chrono::minutes(2);
        /// How large the unpacked body may be.
        std::size_t bytes = PageBody::usualLimit;
    };

    PageTransfer(QUrl address, const Limits& limits);

    /// What body() returns for co_await. GCC 12 would copy the PageTransfer if that itself could be
    /// awaited.
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

    /// Begins the transfer when it is awaited, which may be done once, and yields the body,
    /// unpacked. Throws AppError if the answer is no page. Throws the network's error as a
    /// std::runtime_error, which is also thrown when the application quits.
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
    // Deleted later, because the coroutine may destroy this object while the network is calling it.
    std::unique_ptr<QNetworkAccessManager, QScopedPointerDeleteLater> m_network;
    QNetworkReply* m_reply = nullptr; // owned by m_network
    int m_redirects = 0;
    QTimer m_nextTurn;
    QTimer m_deadline;
    std::coroutine_handle<> m_waiting;
    std::optional<PageBody> m_body; // set once bytes of it may have come
    std::exception_ptr m_error;
};
