#include "WebPage.h"

#include "HTMLText.h"
#include "Interrupt.h"
#include "QtApplication.h"
#include "Utf8.h"

#include <QNetworkProxyFactory>

#include <signal.h>

#include <cstdlib>
#include <exception>
#include <utility>

namespace WebPage {

namespace {

struct Outcome
{
    std::string text;
    std::exception_ptr error;
};

QCoro::Task<> fetch(std::string address, Outcome& outcome)
{
    try {
        outcome.text = co_await HTMLText::fetch(std::move(address));
    } catch (...) {
        outcome.error = std::current_exception();
    }
    quitSoon();
}

} // namespace

std::string read(const std::string& address)
{
    struct sigaction brokenPipe = {};
    ::sigaction(SIGPIPE, nullptr, &brokenPipe);
    int count = 0;
    const QCoreApplication application(count, nullptr);
    const Interrupt interrupt(quitSoon);
    QNetworkProxyFactory::setUseSystemConfiguration(true);

    Outcome outcome;
    const QCoro::Task<> task = fetch(Utf8::decoded(address), outcome);
    QCoreApplication::exec();
    // Qt's sockets make the process ignore SIGPIPE, but it must still end when nobody reads its
    // output any more.
    ::sigaction(SIGPIPE, &brokenPipe, nullptr);
    // Nothing has been printed or written yet, and a large page that is being worked on is not
    // worth waiting for.
    if (const int status = interrupt.exitStatus(); status != 0)
        std::_Exit(status);
    if (outcome.error)
        std::rethrow_exception(outcome.error);
    return std::move(outcome.text);
}

} // namespace WebPage
