#include "LoopbackServer.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <algorithm>
#include <functional>

namespace {

constexpr qint64 pieceSize = 64 << 10;
constexpr qint64 queueSize = 4 * pieceSize; // of a socket; what more there is waits for room

/// One connection: reads a request, answers it, reads the next. Deletes itself when it is closed.
class Connection : public QObject
{
public:
    using Answer = LoopbackServer::Answer;
    using Framing = LoopbackServer::Framing;
    using Respond = std::function<Answer(const LoopbackServer::Request&)>;

    Connection(QTcpSocket* socket, Respond respond, QObject* parent)
        : QObject(parent), m_socket(socket), m_respond(std::move(respond))
    {
        socket->setParent(this);
        connect(socket, &QTcpSocket::readyRead, this, &Connection::readRequest);
        connect(socket, &QTcpSocket::bytesWritten, this, &Connection::send);
        connect(socket, &QTcpSocket::disconnected, this, &Connection::deleteLater);
    }

    void release(std::optional<qint64> until)
    {
        m_answer.stallAfter = until;
        send();
    }

private:
    void readRequest();
    void begin(Answer answer);
    QByteArray head() const;
    QByteArray piece(qint64 size) const;
    void send();
    void finish();

    QTcpSocket* m_socket;
    Respond m_respond;
    bool m_answering = false;
    Answer m_answer;
    qint64 m_size = 0; // of the body
    qint64 m_sent = 0; // of the body
};

void Connection::readRequest()
{
    if (m_answering)
        return;
    const QByteArray received = m_socket->peek(m_socket->bytesAvailable());
    const qsizetype end = received.indexOf("\r\n\r\n");
    if (end < 0)
        return;
    m_socket->skip(end + 4);
    QList<QByteArray> lines = received.left(end).replace("\r\n", "\n").split('\n');
    const QList<QByteArray> words = lines.takeFirst().split(' ');
    LoopbackServer::Request request{words.value(0), words.value(1), {}};
    for (const QByteArray& line : lines) {
        const qsizetype colon = line.indexOf(':');
        request.headers.insert(line.left(colon).toLower(), line.mid(colon + 1).trimmed());
    }
    begin(m_respond(request));
}

void Connection::begin(Answer answer)
{
    m_answering = true;
    m_answer = std::move(answer);
    if (m_answer.raw)
        m_answer.body = *m_answer.raw;
    m_size = m_answer.size.value_or(m_answer.body.size());
    m_sent = 0;
    if (!m_answer.raw)
        m_socket->write(head());
    send();
}

QByteArray Connection::head() const
{
    QByteArray text = "HTTP/1.1 " + QByteArray::number(m_answer.status) + " Scripted\r\n";
    for (const auto& [name, value] : m_answer.headers)
        text += name + ": " + value + "\r\n";
    if (m_answer.framing == Framing::chunked)
        text += "Transfer-Encoding: chunked\r\n";
    if (m_answer.framing == Framing::contentLength || m_answer.contentLength) {
        const qint64 length = m_answer.contentLength.value_or(m_size);
        text += "Content-Length: " + QByteArray::number(length) + "\r\n";
    }
    return text + "\r\n";
}

/// The next bytes of the body, at most `size` of them and at least one.
QByteArray Connection::piece(qint64 size) const
{
    return m_answer.body.mid(m_sent % m_answer.body.size(), size);
}

void Connection::send()
{
    if (!m_answering)
        return;
    const qint64 end = std::min(m_size, m_answer.cutAfter.value_or(m_size));
    const qint64 limit = std::min(end, m_answer.stallAfter.value_or(end));
    const bool chunked = m_answer.framing == Framing::chunked && !m_answer.raw;
    while (m_sent < limit && m_socket->bytesToWrite() < queueSize) {
        const QByteArray bytes = piece(std::min(limit - m_sent, pieceSize));
        m_sent += bytes.size();
        m_socket->write(chunked ? QByteArray::number(bytes.size(), 16) + "\r\n" + bytes + "\r\n"
                                : bytes);
    }
    if (m_sent == end && !m_answer.stallAfter)
        finish();
}

void Connection::finish()
{
    m_answering = false;
    const bool cut = m_answer.cutAfter.has_value();
    const bool followed = m_answer.framing != Framing::closeDelimited && !m_answer.raw &&
                          m_answer.contentLength.value_or(m_size) == m_size;
    if (m_answer.framing == Framing::chunked && !m_answer.raw && !cut)
        m_socket->write("0\r\n\r\n");
    if (cut || !followed)
        m_socket->disconnectFromHost();
    else
        readRequest();
}

} // namespace

class LoopbackServer::Listener : public QTcpServer
{
public:
    /// Begins to serve; returns the port.
    quint16 open()
    {
        connect(this, &QTcpServer::newConnection, this, [this] {
            new Connection(
                nextPendingConnection(),
                [this](const Request& request) { return respond(request); }, this);
        });
        listen(QHostAddress::LocalHost);
        return serverPort();
    }

    void release(std::optional<qint64> until)
    {
        for (QObject* child : children()) {
            if (auto* connection = dynamic_cast<Connection*>(child))
                connection->release(until);
        }
    }

    QHash<QByteArray, Answer> answers;
    std::vector<Request> requests;

private:
    Answer respond(const Request& request)
    {
        requests.push_back(request);
        return answers.value(request.path, Answer{.status = 404});
    }
};

/// Runs `function` on the server's thread and waits for its end.
template <typename Function>
void LoopbackServer::onThread(Function function) const
{
    QMetaObject::invokeMethod(m_listener.get(), std::move(function), Qt::BlockingQueuedConnection);
}

LoopbackServer::LoopbackServer() : m_listener(new Listener)
{
    m_listener->moveToThread(&m_thread);
    m_thread.start();
    onThread([this] { m_port = m_listener->open(); });
}

LoopbackServer::~LoopbackServer()
{
    m_listener.reset();
    m_thread.quit();
    m_thread.wait();
}

QUrl LoopbackServer::url(const QByteArray& path) const
{
    return QUrl(QString::fromLatin1("http://127.0.0.1:" + QByteArray::number(m_port) + path));
}

void LoopbackServer::setAnswer(const QByteArray& path, const Answer& answer)
{
    onThread([&] { m_listener->answers[path] = answer; });
}

void LoopbackServer::release(std::optional<qint64> until)
{
    onThread([this, until] { m_listener->release(until); });
}

std::vector<LoopbackServer::Request> LoopbackServer::requests() const
{
    std::vector<Request> copy;
    onThread([&] { copy = m_listener->requests; });
    return copy;
}
