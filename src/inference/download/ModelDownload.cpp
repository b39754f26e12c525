#include "ModelDownload.h"

#include "AppError.h"
#include "HttpReply.h"
#include "ModelAddress.h"

#include <QNetworkReply>
#include <QNetworkRequest>

#include <signal.h>

#include <algorithm>
#include <exception>
#include <utility>

/// Bytes. No model is as small as this, but what a server sends in its place is, such as a login
/// page.
static constexpr qint64 sizeTooSmall = 100'000'000;

/// Bytes that Qt may read ahead; more than that waits in the sender.
static constexpr qint64 readBufferSize = qint64{1} << 20;

static constexpr int maximumRedirects = 20;

/// Makes a write on this thread beyond the limit on file sizes fail instead of ending the process.
static void blockFileSizeSignal()
{
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGXFSZ);
    pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
}

/// The size in bytes that the server has announced, -1 if it has announced none or nonsense.
static qint64 announcedSize(const QNetworkReply& reply)
{
    const QVariant size = reply.header(QNetworkRequest::ContentLengthHeader);
    return size.isValid() ? std::max(size.toLongLong(), qint64{-1}) : -1;
}

/// The address that the server redirects the download to, an invalid one if it does not.
static QUrl redirect(const QNetworkReply& reply)
{
    const QUrl target = reply.attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    return target.isValid() ? reply.url().resolved(target) : QUrl();
}

[[noreturn]] static void refuseAnswer(const QNetworkReply& reply)
{
    throw AppError("Download failed (HTTP " + std::to_string(HttpReply::status(reply)) + ").");
}

ModelDownload::ModelDownload(QUrl address, std::filesystem::path destination,
                             std::chrono::milliseconds stallLimit)
    : m_address(std::move(address)), m_destination(std::move(destination)), m_stall(this)
{
    m_stall.setSingleShot(true);
    m_stall.setInterval(stallLimit);
    connect(&m_stall, &QTimer::timeout, this, [this] {
        attempt([] { throw AppError("The download failed because the server does not answer."); });
    });
}

ModelDownload::~ModelDownload()
{
    end();
}

void ModelDownload::start()
{
    blockFileSizeSignal();
    attempt([this] {
        ModelAddress::requireAllowed(m_address);
        PartFile::removeAbandoned(m_destination);
        m_file.emplace(m_destination, "the model file");
        m_network.emplace();
        request();
    });
}

/// Runs one step of the transfer; an exception in it ends the transfer.
template <typename Step>
void ModelDownload::attempt(Step step)
{
    try {
        step();
    } catch (const std::exception& error) {
        end();
        emit failed(HttpReply::sentence(error.what()));
    }
}

void ModelDownload::request()
{
    QNetworkRequest request(m_address);
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Pithwise"));
    request.setRawHeader("Accept-Encoding", "identity");
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    // If Qt followed redirects itself, it would lose the size of the read buffer, and with it the
    // bound on memory.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    // Over HTTP/2 Qt ignores the size of the read buffer.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    m_reply = m_network->get(request);
    m_reply->setReadBufferSize(readBufferSize);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, [reply = m_reply] {
        // The end of a body without an announced size is the end of the connection. While Qt waits
        // for room in its buffer it takes a lost connection for that end, so the buffer must not
        // fill up.
        if (announcedSize(*reply) < 0)
            reply->setReadBufferSize(0);
    });
    connect(m_reply, &QNetworkReply::readyRead, this, [this] { attempt([this] { receive(); }); });
    connect(m_reply, &QNetworkReply::finished, this,
            [this] { attempt([this] { finishReply(); }); });
    m_stall.start();
}

void ModelDownload::receive()
{
    const QByteArray bytes = m_reply->readAll();
    if (bytes.isEmpty() || redirect(*m_reply).isValid())
        return;
    if (HttpReply::status(*m_reply) != 200)
        refuseAnswer(*m_reply);
    m_file->write({bytes.data(), static_cast<std::size_t>(bytes.size())});
    m_received += bytes.size();
    emit progressed(m_received, announcedSize(*m_reply));
    // Restarted only after the write: a slow disk is not a stalled server.
    m_stall.start();
}

void ModelDownload::finishReply()
{
    // To Qt an answer with a status of 400 or more is an error too, but refuseAnswer has our own
    // text for it.
    if (m_reply->error() != QNetworkReply::NoError && HttpReply::status(*m_reply) < 400)
        throw AppError(m_reply->errorString().toStdString());
    receive();
    const QUrl target = redirect(*m_reply);
    if (target.isValid())
        follow(target);
    else
        finish();
}

void ModelDownload::follow(const QUrl& redirect)
{
    if (++m_redirects > maximumRedirects)
        throw AppError("The download failed because of too many redirects.");
    ModelAddress::requireAllowedRedirect(m_address, redirect);
    m_address = redirect;
    m_reply->deleteLater();
    request();
}

void ModelDownload::finish()
{
    if (HttpReply::status(*m_reply) != 200)
        refuseAnswer(*m_reply);
    const qint64 announced = announcedSize(*m_reply);
    if (announced >= 0 && m_received != announced)
        throw AppError("The connection was closed before the whole model had arrived.");
    if (m_received <= sizeTooSmall)
        refuseAnswer(*m_reply);
    m_file->moveIntoPlace();
    end();
    emit completed();
}

void ModelDownload::end()
{
    m_stall.stop();
    if (m_reply != nullptr) {
        // Not aborted: Qt would print a warning if an error is already on its way.
        m_reply->disconnect(this);
        std::exchange(m_reply, nullptr)->deleteLater();
    }
    m_file.reset();
}
