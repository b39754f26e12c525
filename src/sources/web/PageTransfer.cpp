#include "PageTransfer.h"

#include "AppError.h"
#include "HttpReply.h"

#include <QCoreApplication>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <stdexcept>
#include <string_view>
#include <utility>

/// How many bytes are taken out of the reply in one turn of the event loop. Unpacked they are at
/// most a thousand times as many.
static constexpr qint64 portionSize = 8 << 10;

/// Bytes that Qt may read ahead. More waits in the sender, so that an endless body takes no memory.
static constexpr qint64 readBufferSize = 64 << 10;

static constexpr int maximumRedirects = 20;

static QNetworkRequest requestOf(const QUrl& address, std::chrono::milliseconds timeout)
{
    QNetworkRequest request(address);
    request.setHeader(QNetworkRequest::UserAgentHeader,
                      QStringLiteral("Mozilla/5.0 (Macintosh) Pithwise/1.0"));
    request.setTransferTimeout(static_cast<int>(timeout.count()));
    // If Qt followed redirects itself, it would repeat requests and mix up the sizes of the
    // answers.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    request.setRawHeader("Accept-Encoding", PageBody::acceptedEncodings);
    // Over HTTP/2 Qt ignores the size of the read buffer.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    return request;
}

static std::string_view view(const QByteArray& bytes)
{
    return {bytes.data(), static_cast<std::size_t>(bytes.size())};
}

/// Throws the network's error, if there is one.
static void refuseError(const QNetworkReply& reply)
{
    // To Qt an answer with a status of 400 or more is an error too, but we have another sentence
    // for it.
    if (reply.error() == QNetworkReply::NoError || HttpReply::status(reply) >= 400)
        return;
    if (reply.error() == QNetworkReply::OperationCanceledError)
        throw std::runtime_error("The page was not loaded because the server does not answer.");
    throw std::runtime_error(HttpReply::sentence(reply.errorString().toStdString()));
}

/// Whether the server redirects us. Qt cannot tell a missing address from an empty one, so the
/// header is looked at too.
static bool isRedirect(const QNetworkReply& reply)
{
    return reply.attribute(QNetworkRequest::RedirectionTargetAttribute).isValid() &&
           !reply.rawHeader("Location").trimmed().isEmpty();
}

/// Throws unless a server at `from` may redirect us to `to`: the target must be on the web, and no
/// redirect may lead from https to http.
static void requireAllowedRedirect(const QUrl& from, const QUrl& to)
{
    const bool isWeb =
        to.scheme() == QLatin1String("https") || to.scheme() == QLatin1String("http");
    if (!to.isValid() || !isWeb || to.host().isEmpty())
        throw std::runtime_error("The page was moved to an address that is not on the web.");
    if (HttpReply::losesEncryption(from, to))
        throw std::runtime_error("The page was moved to an unencrypted connection.");
}

PageTransfer::PageTransfer(QUrl address, const Limits& limits)
    : m_address(std::move(address)), m_limits(limits)
{
    m_nextTurn.setSingleShot(true);
    connect(&m_nextTurn, &QTimer::timeout, this, &PageTransfer::proceed);
    m_deadline.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this, [this] {
        end(std::make_exception_ptr(
            std::runtime_error("The page was not loaded because it takes too long.")));
    });
}

void PageTransfer::begin(std::coroutine_handle<> waiting)
{
    m_waiting = waiting;
    m_network.reset(new QNetworkAccessManager);
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, [this] {
        end(std::make_exception_ptr(std::runtime_error("The page was not loaded.")));
    });
    m_deadline.start(m_limits.whole);
    request();
}

void PageTransfer::request()
{
    m_reply = m_network->get(requestOf(m_address, m_limits.silence));
    m_reply->setReadBufferSize(readBufferSize);
    connect(m_reply, &QNetworkReply::readyRead, this, &PageTransfer::proceed);
    connect(m_reply, &QNetworkReply::finished, this, &PageTransfer::proceed);
}

PageBody PageTransfer::result()
{
    if (m_error)
        std::rethrow_exception(m_error);
    return *std::move(m_body);
}

/// Does the next step of the transfer, whatever that is. A large body takes many turns of the event
/// loop.
void PageTransfer::proceed()
{
    try {
        refuseError(*m_reply);
        if (isRedirect(*m_reply)) {
            follow();
            return;
        }
        if (HttpReply::status(*m_reply) < 200 || HttpReply::status(*m_reply) > 299)
            throw AppError("The page returned HTTP " + std::to_string(HttpReply::status(*m_reply)) +
                           ".");
        receive();
        if (m_reply->bytesAvailable() > 0) {
            m_nextTurn.start();
            return;
        }
        if (!m_reply->isFinished())
            return;
        requireWholeBody();
    } catch (...) {
        end(std::current_exception());
        return;
    }
    end(nullptr);
}

void PageTransfer::follow()
{
    const QUrl target =
        m_address.resolved(m_reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl());
    requireAllowedRedirect(m_address, target);
    if (++m_redirects > maximumRedirects)
        throw std::runtime_error("The page was moved too many times.");
    m_address = target;
    m_reply->disconnect(this);
    m_reply->deleteLater();
    request();
}

void PageTransfer::receive()
{
    if (!m_body) {
        const QByteArray encoding = m_reply->rawHeader("Content-Encoding").trimmed().toLower();
        m_body.emplace(view(encoding), m_limits.bytes);
    }
    m_body->append(view(m_reply->read(portionSize)));
}

/// Throws if a part of the body is missing. Qt may take a closed connection for the end of the
/// body, whatever length the server has announced.
void PageTransfer::requireWholeBody() const
{
    const QVariant announced = m_reply->header(QNetworkRequest::ContentLengthHeader);
    const bool isShort = announced.isValid() && announced.toULongLong() != m_body->received();
    if (isShort || m_body->isCut())
        throw std::runtime_error("The connection was closed before the whole page had arrived.");
}

void PageTransfer::end(std::exception_ptr error)
{
    m_error = std::move(error);
    m_reply->disconnect(this);
    m_nextTurn.stop();
    m_deadline.stop();
    m_waiting.resume(); // destroys this object
}
