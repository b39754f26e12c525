#pragma once

#include <QByteArray>
#include <QHash>
#include <QScopedPointer>
#include <QThread>
#include <QUrl>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

/// A real HTTP/1.1 server on 127.0.0.1, at a port that was free, with scripted answers and faults,
/// for requests without a body. It serves on a thread of its own, so also while the test waits.
/// Every function may be called from any other thread; each returns once the server has taken note.
class LoopbackServer
{
public:
    /// How the end of a body is told. Connections stay open after an answer except for
    /// `closeDelimited`, raw answers and whatever cannot be followed by another answer.
    enum class Framing { contentLength, closeDelimited, chunked };

    struct Answer
    {
        int status = 200;
        std::vector<std::pair<QByteArray, QByteArray>> headers = {};
        /// Repeated as often as `size` asks for, so that a large body needs no memory.
        QByteArray body = {};
        /// Of the body as it is sent, in bytes; by default that of `body`.
        std::optional<qint64> size = {};
        Framing framing = Framing::contentLength;
        /// What the header Content-Length says; by default the truth.
        std::optional<qint64> contentLength = {};
        /// After so many bytes of the body the connection is closed.
        std::optional<qint64> cutAfter = {};
        /// After so many bytes of the body nothing is sent until `release`.
        std::optional<qint64> stallAfter = {};
        /// The whole answer with its head, in place of all the above but the faults, which count
        /// its bytes then.
        std::optional<QByteArray> raw = {};
    };

    struct Request
    {
        QByteArray method;
        QByteArray path;                       // with the query
        QHash<QByteArray, QByteArray> headers; // names in lower case
    };

    LoopbackServer();
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    QUrl url(const QByteArray& path = "/") const;

    /// What requests for `path` (with the query) get from now on; a 404 where nothing is set.
    void setAnswer(const QByteArray& path, const Answer& answer);

    /// Lets the answers go on that have stalled: to their ends, or until so many bytes of the body.
    void release(std::optional<qint64> until = {});

    /// All requests so far, the oldest first.
    std::vector<Request> requests() const;

private:
    class Listener;

    template <typename Function>
    void onThread(Function function) const;

    QThread m_thread;
    std::unique_ptr<Listener, QScopedPointerDeleteLater> m_listener; // lives on m_thread
    quint16 m_port = 0;
};
