#include "AppError.h"
#include "HTMLText.h"
#include "LoopbackServer.h"
#include "PageTransfer.h"
#include "WaitUntil.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QTcpServer>
#include <QTemporaryFile>
#include <QTimer>

#include <gtest/gtest.h>
#include <unistd.h>
#include <zlib.h>

#include <fstream>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

using std::chrono::milliseconds;

class HTMLTextFetchTest : public testing::Test
{
protected:
    using Answer = LoopbackServer::Answer;
    using Framing = LoopbackServer::Framing;

    /// What became of a fetch; empty while it is under way.
    struct Outcome
    {
        std::optional<std::string> text;
        std::string userError; // an AppError's
        std::string otherError;

        bool isKnown() const { return text || !userError.empty() || !otherError.empty(); }
    };

    static QCoro::Task<> observe(QCoro::Task<std::string> task, std::shared_ptr<Outcome> outcome)
    {
        try {
            outcome->text = co_await task;
        } catch (const AppError& error) {
            outcome->userError = error.message();
        } catch (const std::exception& error) {
            outcome->otherError = error.what();
        }
    }

    static std::shared_ptr<Outcome> observed(QCoro::Task<std::string> task)
    {
        auto outcome = std::make_shared<Outcome>();
        observe(std::move(task), outcome);
        return outcome;
    }

    static Outcome wait(QCoro::Task<std::string> task)
    {
        const std::shared_ptr<Outcome> outcome = observed(std::move(task));
        EXPECT_TRUE(waitUntil([&] { return outcome->isKnown(); }));
        return *outcome;
    }

    std::string address(const QByteArray& path = "/") const
    {
        return m_server.url(path).toString().toStdString();
    }

    Outcome fetch(const QByteArray& path = "/") const
    {
        return wait(HTMLText::fetch(address(path)));
    }

    Outcome fetch(const Answer& answer)
    {
        m_server.setAnswer("/", answer);
        return fetch();
    }

    Outcome fetchPacked(const QByteArray& body, Framing framing = Framing::contentLength)
    {
        return fetch({.headers = {{"Content-Encoding", "gzip"}}, .body = body, .framing = framing});
    }

    Outcome fetchImpatiently(const Answer& answer)
    {
        m_server.setAnswer("/", answer);
        return wait(HTMLText::fetch(address(), milliseconds(200)));
    }

    /// All files of the user, who has a home of their own for the tests.
    static QStringList files()
    {
        QStringList paths;
        QDirIterator iterator(QDir::homePath(),
                              QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                              QDirIterator::Subdirectories);
        while (iterator.hasNext())
            paths.append(iterator.next());
        paths.sort();
        return paths;
    }

    /// A page whose reader text is `text`, which has 30 characters or more.
    static QByteArray page(const QByteArray& text)
    {
        return "<html><body><p>" + text + "</p></body></html>";
    }

    static Answer redirect(int status, const QByteArray& target)
    {
        return {.status = status,
                .headers = {{"Location", target}},
                .body = page(QByteArray("This page has moved somewhere else. ").repeated(5))};
    }

    static QByteArray gzip(QByteArray bytes)
    {
        z_stream stream{};
        // 16 more than the size of the window asks for gzip's framing.
        EXPECT_EQ(::deflateInit2(&stream, 9, Z_DEFLATED, 16 + 15, 9, Z_DEFAULT_STRATEGY), Z_OK);
        QByteArray packed(
            static_cast<qsizetype>(::deflateBound(&stream, static_cast<uLong>(bytes.size()))),
            '\0');
        stream.next_in = reinterpret_cast<Bytef*>(bytes.data());
        stream.avail_in = static_cast<uInt>(bytes.size());
        stream.next_out = reinterpret_cast<Bytef*>(packed.data());
        stream.avail_out = static_cast<uInt>(packed.size());
        EXPECT_EQ(::deflate(&stream, Z_FINISH), Z_STREAM_END);
        packed.truncate(static_cast<qsizetype>(stream.total_out));
        packed.squeeze();
        ::deflateEnd(&stream);
        return packed;
    }

    static std::string status(int code)
    {
        return "The page returned HTTP " + std::to_string(code) + ".";
    }

    const QByteArray m_text =
        QByteArray("The quick brown fox jumps over the lazy dog. ").repeated(4).trimmed();
    const std::string m_unreadable = "Couldn't find readable text on that page.";
    const std::string m_silent = "The page was not loaded because the server does not answer.";
    const std::string m_cut = "The connection was closed before the whole page had arrived.";
    LoopbackServer m_server;
};

TEST_F(HTMLTextFetchTest, APageBecomesItsReaderText)
{
    EXPECT_EQ(fetch({.body = page(m_text)}).text, m_text.toStdString());
    EXPECT_EQ(fetch({.body = "<title>Home</title>" + page(m_text)}).text,
              "Home\n\n" + m_text.toStdString());
}

TEST_F(HTMLTextFetchTest, TheAddressIsTakenAsItIsTyped)
{
    m_server.setAnswer("/a%20b?c", {.body = page(m_text)});
    EXPECT_EQ(wait(HTMLText::fetch(" \n" + address("/") + "a b?c#d\t")).text, m_text.toStdString());
    EXPECT_EQ(wait(HTMLText::fetch("ftp://host/file")).userError, "Enter a valid web address.");
}

TEST_F(HTMLTextFetchTest, EveryWayToTellTheEndOfABodyWorks)
{
    for (const Framing framing :
         {Framing::contentLength, Framing::closeDelimited, Framing::chunked})
        EXPECT_EQ(fetch({.body = page(m_text), .framing = framing}).text, m_text.toStdString());
}

TEST_F(HTMLTextFetchTest, TheRequestHasTheAgreedHeaders)
{
    m_server.setAnswer("/", redirect(302, "/page"));
    fetch("/");
    const std::vector<LoopbackServer::Request> requests = m_server.requests();
    ASSERT_EQ(requests.size(), 2U);
    for (const LoopbackServer::Request& request : requests) {
        EXPECT_EQ(request.method, "GET");
        EXPECT_EQ(request.headers.value("user-agent"), "Mozilla/5.0 (Macintosh) Pithwise/1.0");
        EXPECT_FALSE(request.headers.contains("cookie"));
        EXPECT_FALSE(request.headers.contains("referer"));
    }
}

TEST_F(HTMLTextFetchTest, NothingIsKeptBetweenFetches)
{
    const QStringList filesBefore = files();
    m_server.setAnswer("/", {.headers = {{"Set-Cookie", "visitor=1; Max-Age=1000000"},
                                         {"Cache-Control", "max-age=1000000"},
                                         {"ETag", "\"1\""},
                                         {"Last-Modified", "Mon, 01 Jan 2024 00:00:00 GMT"}},
                             .body = page(m_text)});
    EXPECT_TRUE(fetch().text);
    EXPECT_TRUE(fetch().text);
    ASSERT_EQ(m_server.requests().size(), 2U);
    for (const char* header : {"cookie", "if-none-match", "if-modified-since"})
        EXPECT_FALSE(m_server.requests()[1].headers.contains(header)) << header;
    EXPECT_EQ(files(), filesBefore);
}

TEST_F(HTMLTextFetchTest, RedirectsAreFollowed)
{
    m_server.setAnswer("/folder/page", {.body = page(m_text)});
    for (const int status : {301, 302, 303, 307, 308}) {
        for (const QByteArray& target : {m_server.url("/folder/page").toEncoded(),
                                         QByteArray("/folder/page"), QByteArray("page")}) {
            m_server.setAnswer("/folder/old", redirect(status, target));
            {
                const Outcome o = fetch("/folder/old");
                EXPECT_EQ(o.text, m_text.toStdString())
                    << status << ' ' << target.data() << o.userError << o.otherError;
            }
        }
    }
    EXPECT_EQ(m_server.requests().size(), 30U);
}

TEST_F(HTMLTextFetchTest, ARedirectToAMissingPageIsNamedByTheLastStatus)
{
    EXPECT_EQ(fetch(redirect(301, "/missing")).userError, status(404));
}

TEST_F(HTMLTextFetchTest, ALoopOfRedirectsIsTheNetworksError)
{
    const Outcome outcome = fetch(redirect(302, "/"));
    EXPECT_EQ(outcome.otherError, "The page was moved too many times.");
    EXPECT_LE(m_server.requests().size(), 22U);
}

TEST_F(HTMLTextFetchTest, ARedirectToAnotherSchemeIsTheNetworksError)
{
    QTemporaryFile local;
    ASSERT_TRUE(local.open());
    local.write(page(m_text));
    local.close();
    for (const QByteArray& target :
         {"file://" + local.fileName().toUtf8(), QByteArray("ftp://127.0.0.1/file"),
          QByteArray("data:text/html," + page(m_text).toPercentEncoding()), QByteArray("qrc:/page"),
          QByteArray("http://"), QByteArray("http://a b/")}) {
        EXPECT_EQ(fetch(redirect(302, target)).otherError,
                  "The page was moved to an address that is not on the web.")
            << target.data();
    }
}

TEST_F(HTMLTextFetchTest, ARedirectToNowhereIsNone)
{
    EXPECT_EQ(fetch({.status = 302}).userError, status(302));
    EXPECT_EQ(fetch(redirect(301, "")).userError, status(301));
}

TEST_F(HTMLTextFetchTest, AnswersThatAreNoSuccessAreNamedByTheirStatus)
{
    for (const int code : {300, 304, 400, 401, 403, 404, 407, 410, 429, 500, 503, 599}) {
        EXPECT_EQ(fetch({.status = code}).userError, status(code));
        EXPECT_EQ(fetch({.status = code, .body = page(m_text)}).userError, status(code));
    }
}

TEST_F(HTMLTextFetchTest, EverySuccessIsOne)
{
    for (const int code : {200, 201, 203, 206, 299})
        EXPECT_EQ(fetch({.status = code, .body = page(m_text)}).text, m_text.toStdString()) << code;
}

TEST_F(HTMLTextFetchTest, AFailureThatNeverEndsIsNamedAtOnce)
{
    EXPECT_EQ(fetch({.status = 500,
                     .body = QByteArray(1 << 16, 'x'),
                     .size = 1 << 30,
                     .stallAfter = 5 << 20})
                  .userError,
              status(500));
}

TEST_F(HTMLTextFetchTest, AnAnswerWithoutABodyHasNoText)
{
    EXPECT_EQ(fetch(Answer{.status = 204}).userError, m_unreadable);
    EXPECT_EQ(fetch(Answer()).userError, m_unreadable);
    EXPECT_EQ(fetch({.framing = Framing::closeDelimited}).userError, m_unreadable);
}

TEST_F(HTMLTextFetchTest, EightyCharactersAreEnough)
{
    EXPECT_EQ(fetch({.body = page(QByteArray(79, 'x'))}).userError, m_unreadable);
    EXPECT_EQ(fetch({.body = page(QByteArray(80, 'x'))}).text, std::string(80, 'x'));
    EXPECT_EQ(fetch({.body = "<title>Home</title>" + page(QByteArray(73, 'x'))}).userError,
              m_unreadable);
    EXPECT_EQ(fetch({.body = "<title>Home</title>" + page(QByteArray(74, 'x'))}).text,
              "Home\n\n" + std::string(74, 'x'));
    // The empty line below a title counts, though nothing comes after it.
    for (const int length : {77, 78, 79, 80}) {
        const QByteArray title(length, 'x');
        const Outcome outcome = fetch({.body = "<title>" + title + "</title>" + page("short")});
        if (length < 78)
            EXPECT_EQ(outcome.userError, m_unreadable);
        else
            EXPECT_EQ(outcome.text, title.toStdString() + "\n\n");
    }
    // Characters as a reader counts them, of eight bytes each here.
    EXPECT_EQ(fetch({.body = page(QByteArray("👍🏽").repeated(79))}).userError, m_unreadable);
    EXPECT_TRUE(fetch({.body = page(QByteArray("👍🏽").repeated(80))}).text);
}

TEST_F(HTMLTextFetchTest, ABodyThatIsNotUtf8IsReadAsLatin1)
{
    EXPECT_EQ(fetch({.headers = {{"Content-Type", "text/html; charset=utf-8"}},
                     .body = page("caf\xE9 " + m_text)})
                  .text,
              "café " + m_text.toStdString());
}

TEST_F(HTMLTextFetchTest, TheDeclaredCharacterSetDoesNotMatter)
{
    EXPECT_EQ(fetch({.headers = {{"Content-Type", "text/html; charset=iso-8859-1"}},
                     .body = page("café " + m_text)})
                  .text,
              "café " + m_text.toStdString());
}

TEST_F(HTMLTextFetchTest, BytesThatAreNoTextAtAllHaveNoText)
{
    EXPECT_EQ(fetch({.body = QByteArray(20, '\xFF')}).userError, m_unreadable);
    EXPECT_EQ(fetch({.body = QByteArray(100'000, '\0')}).isKnown(), true);
}

TEST_F(HTMLTextFetchTest, ACompressedBodyIsUnpacked)
{
    const QByteArray body = page(m_text);
    for (const Framing framing :
         {Framing::contentLength, Framing::closeDelimited, Framing::chunked})
        EXPECT_EQ(fetchPacked(gzip(body), framing).text, m_text.toStdString());
    EXPECT_EQ(m_server.requests()[0].headers.value("accept-encoding"), "gzip");
    // What qCompress makes, behind the size it puts in front.
    EXPECT_EQ(
        fetch({.headers = {{"Content-Encoding", "Deflate "}}, .body = qCompress(body).mid(4)}).text,
        m_text.toStdString());
    EXPECT_EQ(fetchPacked("").userError, m_unreadable);
}

TEST_F(HTMLTextFetchTest, ABodyInSeveralCompressedPiecesIsUnpackedWhole)
{
    const QByteArray body = page(m_text);
    EXPECT_EQ(fetchPacked(gzip(body.left(50)) + gzip(body.mid(50))).text, m_text.toStdString());
    EXPECT_EQ(fetchPacked(gzip(body) + gzip("").chopped(1)).otherError, m_cut);
}

TEST_F(HTMLTextFetchTest, ALargeCompressedBodyIsUnpackedWhole)
{
    QByteArray text;
    while (text.size() < 5'000'000)
        text += QByteArray::number(text.size()) + " is a number in a long line of text, ";
    text = text.trimmed();
    EXPECT_EQ(fetchPacked(gzip(page(text))).text, text.toStdString());
}

TEST_F(HTMLTextFetchTest, APageOfOneWordOverAndOverIsNoError)
{
    const QByteArray text = QByteArray("word ").repeated(4'000'000).trimmed();
    EXPECT_EQ(fetchPacked(gzip(page(text))).text, text.toStdString());
}

TEST_F(HTMLTextFetchTest, ADamagedCompressedBodyIsAnError)
{
    const QByteArray packed = gzip(page(m_text.repeated(1000)));
    for (const Framing framing :
         {Framing::contentLength, Framing::closeDelimited, Framing::chunked}) {
        for (const QByteArray& body :
             {packed.left(20) + QByteArray(200, '\xFF'), packed.chopped(1) + "x",
              packed + "no gzip", QByteArray("no gzip")})
            EXPECT_EQ(fetchPacked(body, framing).otherError, "The page arrived damaged.");
        for (const qsizetype size :
             {qsizetype{1}, qsizetype{10}, packed.size() / 2, packed.size() - 1})
            EXPECT_EQ(fetchPacked(packed.left(size), framing).otherError, m_cut) << size;
    }
}

TEST_F(HTMLTextFetchTest, AnEncodingThatWasNotAskedForIsAnError)
{
    for (const char* encoding : {"br", "zstd", "gzip, gzip", "\xFF"}) {
        EXPECT_EQ(
            fetch({.headers = {{"Content-Encoding", encoding}}, .body = page(m_text)}).otherError,
            "The page came in an encoding that was not asked for.");
    }
    EXPECT_TRUE(fetch({.headers = {{"Content-Encoding", "identity"}}, .body = page(m_text)}).text);
}

TEST_F(HTMLTextFetchTest, ACutBodyIsAnErrorAndNoText)
{
    const Answer plain{.body = page(m_text.repeated(5000))};
    const Answer packed{.headers = {{"Content-Encoding", "gzip"}}, .body = gzip(plain.body)};
    for (Answer answer : {plain, packed}) {
        for (const qint64 cut :
             {qint64{0}, qint64{1}, answer.body.size() / 2, answer.body.size() - 1}) {
            answer.cutAfter = cut;
            const Outcome outcome = fetch(answer);
            EXPECT_FALSE(outcome.text) << cut;
            EXPECT_TRUE(outcome.otherError == m_cut || outcome.otherError == "Connection closed.")
                << outcome.userError << outcome.otherError;
        }
    }
}

TEST_F(HTMLTextFetchTest, ACutBodyInChunksIsAnErrorWhereItIsCompressed)
{
    // Uncompressed, Qt does not always tell it from a whole one.
    Answer answer{.headers = {{"Content-Encoding", "gzip"}},
                  .body = gzip(page(m_text.repeated(5000))),
                  .framing = Framing::chunked};
    for (const qint64 cut : {qint64{1}, answer.body.size() / 2, answer.body.size() - 1}) {
        answer.cutAfter = cut;
        const Outcome outcome = fetch(answer);
        EXPECT_TRUE(outcome.otherError == m_cut || outcome.otherError == "Connection closed.")
            << outcome.userError << outcome.otherError;
    }
}

TEST_F(HTMLTextFetchTest, AnAnswerThatIsNoHttpIsAnError)
{
    for (const QByteArray& raw : {QByteArray(), QByteArray("no http\r\n\r\n"),
                                  QByteArray(100'000, '\xFF'), QByteArray("HTTP/1.1 \r\n\r\n")})
        EXPECT_EQ(fetch({.raw = raw}).otherError, "Connection closed.");
}

TEST_F(HTMLTextFetchTest, ASilentServerIsAnError)
{
    EXPECT_EQ(fetchImpatiently({.stallAfter = 0, .raw = QByteArray()}).otherError, m_silent);
    EXPECT_EQ(fetchImpatiently({.stallAfter = 20,
                                .raw = QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\nx")})
                  .otherError,
              m_silent);
}

TEST_F(HTMLTextFetchTest, AServerThatFallsSilentInTheMiddleIsAnError)
{
    EXPECT_EQ(fetchImpatiently({.body = page(m_text), .stallAfter = 0}).otherError, m_silent);
    EXPECT_EQ(fetchImpatiently({.body = page(m_text), .stallAfter = 150}).otherError, m_silent);
    EXPECT_EQ(fetchImpatiently({.body = page(m_text.repeated(100'000)),
                                .framing = Framing::chunked,
                                .stallAfter = 10'000'000})
                  .otherError,
              m_silent);
}

TEST_F(HTMLTextFetchTest, AFailureWhoseBodyIsMissingIsNamedByItsStatus)
{
    EXPECT_EQ(fetchImpatiently({.status = 404, .body = page(m_text), .stallAfter = 0}).userError,
              status(404));
}

TEST_F(HTMLTextFetchTest, NobodyThereIsTheNetworksError)
{
    QTcpServer closed;
    ASSERT_TRUE(closed.listen(QHostAddress::LocalHost));
    const std::string port = std::to_string(closed.serverPort());
    closed.close();
    EXPECT_EQ(wait(HTMLText::fetch("http://127.0.0.1:" + port)).otherError, "Connection refused.");
    EXPECT_EQ(wait(HTMLText::fetch("http://nobody.invalid/")).otherError,
              "Host nobody.invalid not found.");
}

QCoro::Task<std::string> transfer(QUrl address, PageTransfer::Limits limits)
{
    PageTransfer transfer(std::move(address), limits);
    PageBody body = co_await transfer.body();
    co_return std::move(body).joined();
}

TEST_F(HTMLTextFetchTest, ABodyBeyondTheLimitIsAnError)
{
    constexpr qint64 limit = 3 << 20;
    m_server.setAnswer("/", {.body = QByteArray(1 << 16, 'x'), .size = limit});
    EXPECT_EQ(wait(transfer(m_server.url(), {.bytes = limit})).text->size(), std::size_t{limit});
    m_server.setAnswer("/", {.body = QByteArray(1 << 16, 'x'), .size = limit + 1});
    EXPECT_EQ(wait(transfer(m_server.url(), {.bytes = limit})).userError,
              "The page is larger than 64 MiB.");
    const QByteArray packed = gzip(QByteArray(limit + 1, 'x'));
    m_server.setAnswer("/", {.headers = {{"Content-Encoding", "gzip"}}, .body = packed});
    EXPECT_EQ(wait(transfer(m_server.url(), {.bytes = limit})).userError,
              "The page is larger than 64 MiB.");
}

TEST_F(HTMLTextFetchTest, ABodyThatNeverEndsIsStopped)
{
    m_server.setAnswer("/", {.body = QByteArray(1000, 'x'),
                             .size = std::numeric_limits<qint64>::max(),
                             .framing = Framing::chunked});
    EXPECT_EQ(wait(transfer(m_server.url(), {.bytes = 3 << 20})).userError,
              "The page is larger than 64 MiB.");
}

TEST_F(HTMLTextFetchTest, APageHas64MebibytesAtMost)
{
    constexpr qint64 limit = qint64{64} << 20;
    const QByteArray line = QByteArray(1023, 'x') + '\n';
    m_server.setAnswer("/", {.body = line, .size = limit});
    EXPECT_TRUE(fetch().text);
    m_server.setAnswer("/", {.body = line, .size = limit + 1});
    EXPECT_EQ(fetch().userError, "The page is larger than 64 MiB.");
}

TEST_F(HTMLTextFetchTest, APageThatGoesOnAndOnEndsAfterItsTime)
{
    m_server.setAnswer(
        "/",
        {.body = "x", .size = std::numeric_limits<qint64>::max(), .framing = Framing::chunked});
    EXPECT_EQ(wait(transfer(m_server.url(), {.whole = milliseconds(50),
                                             .bytes = std::numeric_limits<std::size_t>::max()}))
                  .otherError,
              "The page was not loaded because it takes too long.");
}

#ifndef PITHWISE_SANITIZED
/// What the process has of the memory.
std::size_t residentBytes()
{
    std::ifstream file("/proc/self/statm");
    std::size_t all = 0;
    std::size_t resident = 0;
    file >> all >> resident;
    return resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

TEST_F(HTMLTextFetchTest, WhatAPageTakesOfTheMemoryIsGivenBack)
{
    const QByteArray emptiness = gzip(QByteArray(60 << 20, ' '));
    const Answer answer = {.headers = {{"Content-Encoding", "gzip"}}, .body = emptiness};
    fetch({.body = page(m_text)}); // patterns and threads stay
    // What others take meanwhile lies behind the page's pieces, so that the heap cannot shrink.
    std::vector<std::unique_ptr<char[]>> taken;
    QTimer others;
    QObject::connect(&others, &QTimer::timeout, &others, [&] {
        if (taken.size() < 1000)
            taken.push_back(std::make_unique_for_overwrite<char[]>(60'000));
    });
    others.start(0);
    const std::size_t before = residentBytes();
    EXPECT_EQ(fetch(answer).userError, m_unreadable);
    EXPECT_EQ(fetchPacked(gzip(QByteArray(70 << 20, ' '))).userError,
              "The page is larger than 64 MiB.");
    constexpr std::size_t slack = std::size_t{16} << 20;
    EXPECT_TRUE(waitUntil([&] { return residentBytes() < before + slack; }))
        << before << " and now " << residentBytes();
}
#endif

TEST_F(HTMLTextFetchTest, SeveralFetchesRunAtOnce)
{
    std::vector<std::shared_ptr<Outcome>> outcomes;
    for (int i = 0; i < 10; ++i) {
        const QByteArray path = "/" + QByteArray::number(i);
        m_server.setAnswer(path, {.body = page(m_text + path), .stallAfter = 10});
        outcomes.push_back(observed(HTMLText::fetch(address(path))));
    }
    ASSERT_TRUE(waitUntil([&] { return m_server.requests().size() == 10; }));
    m_server.release();
    for (std::size_t i = 0; i < outcomes.size(); ++i) {
        ASSERT_TRUE(waitUntil([&] { return outcomes[i]->isKnown(); }));
        EXPECT_EQ(outcomes[i]->text, m_text.toStdString() + "/" + std::to_string(i));
    }
}

TEST_F(HTMLTextFetchTest, AFetchThatNobodyWaitsForAnyMoreEndsByItself)
{
    m_server.setAnswer("/", {.body = page(m_text), .stallAfter = 10});
    {
        const QCoro::Task<std::string> task = HTMLText::fetch(address());
        ASSERT_TRUE(waitUntil([&] { return !m_server.requests().empty(); }));
    }
    m_server.release();
    EXPECT_TRUE(fetch("/missing").userError == status(404));
}

TEST_F(HTMLTextFetchTest, QuittingTheApplicationEndsAFetch)
{
    m_server.setAnswer("/", {.body = page(m_text), .stallAfter = 10});
    const std::shared_ptr<Outcome> outcome = observed(HTMLText::fetch(address()));
    ASSERT_TRUE(waitUntil([&] { return !m_server.requests().empty(); }));
    QMetaObject::invokeMethod(QCoreApplication::instance(), &QCoreApplication::quit,
                              Qt::QueuedConnection);
    QCoreApplication::exec();
    EXPECT_EQ(outcome->otherError, "The page was not loaded.");
}

} // namespace
