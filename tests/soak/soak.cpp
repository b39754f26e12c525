// Uses the application at random for a time, and tells whether it has kept anything that it should
// have given back. The language model is a stand-in.

#include "Footprint.h"
#include "RandomUser.h"
#include "SoakedApplication.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QThread>

#include <algorithm>
#include <iostream>
#include <stdexcept>

namespace {

/// More than this, at rest, is growth. Allocators and caches come and go by less.
constexpr std::size_t mostKilobytes = std::size_t{16} * 1024;

/// Tesseract opens its log at its first message, whenever that comes, and keeps it.
constexpr qsizetype logDescriptors = 1;

class Soak
{
public:
    explicit Soak(unsigned int seed) : m_user(m_session, m_reader, m_server, m_application, seed)
    {
        m_session.start(PITHWISE_XEMBED_PANEL, {"1200", "0"});
        m_session.start(PITHWISE_DESKTOP_APP, {"--title", "Foreign", "--editor", "Foreign text."});
        m_session.waitForWindow({"--name", "^Foreign$"});
        m_application.start();
    }

    /// The exit status of the program.
    int run(double minutes)
    {
        m_user.actAll();
        m_user.rest();
        const Footprint before = m_application.footprint();
        print("after the first minutes", before);
        // What it keeps shows only while it runs on: at first it is not ended.
        use(minutes * 2 / 3, &RandomUser::act);
        bool isClean = comesBackTo(before);
        print("at rest", m_application.footprint());
        use(minutes / 3, &RandomUser::actOrEnd);
        isClean = comesBackTo(before) && isClean;
        print("at rest", m_application.footprint());
        std::cout << m_user.drops() << " drops, " << m_application.ends()
                  << " ends, the longest after SIGTERM " << m_application.longestEnd().count()
                  << " ms\n"
                  << (isClean ? "Nothing was kept." : "Something was kept.") << std::endl;
        return isClean ? 0 : 1;
    }

private:
    static constexpr qint64 minute = 60'000;

    void use(double minutes, void (RandomUser::*act)())
    {
        QElapsedTimer timer;
        timer.start();
        int actions = 0;
        qint64 nextRow = minute;
        const auto end = static_cast<qint64>(minutes * static_cast<double>(minute));
        for (; timer.elapsed() < end; ++actions) {
            (m_user.*act)();
            if (timer.elapsed() >= nextRow) {
                print(std::to_string(actions) + " actions", m_application.footprint());
                nextRow += minute;
            }
        }
        print(std::to_string(actions) + " actions", m_application.footprint());
    }

    static bool isWithin(const Footprint& now, const Footprint& before)
    {
        return now.kilobytes <= before.kilobytes + mostKilobytes && now.threads <= before.threads &&
               now.descriptors <= before.descriptors + logDescriptors &&
               now.files.size() <= before.files.size();
    }

    /// What was freed after the last work goes back to the system with the next: a few are tried.
    /// Idle threads of Qt's pools end after half a minute.
    bool comesBackTo(const Footprint& before)
    {
        for (int attempt = 0; attempt < 3; ++attempt) {
            m_user.rest();
            const QDeadlineTimer deadline(minute);
            while (!deadline.hasExpired()) {
                const Footprint now = m_application.footprint();
                if (isWithin(now, before))
                    return true;
                if (now.kilobytes > before.kilobytes + mostKilobytes)
                    break; // only work gives it back
                QThread::msleep(100);
            }
        }
        return false;
    }

    static void print(const std::string& when, const Footprint& footprint)
    {
        std::cout << when << ": " << footprint.kilobytes / 1024 << " MiB, " << footprint.threads
                  << " threads, " << footprint.descriptors << " descriptors, "
                  << footprint.files.size() << " temporary files" << std::endl;
    }

    DesktopSession m_session;
    int m_argumentCount = 1;
    char m_name[5] = "soak";
    char* m_arguments[2] = {m_name, nullptr};
    QGuiApplication m_qt{m_argumentCount, m_arguments};
    ScreenReader m_reader{m_session};
    LoopbackServer m_server;
    SoakedApplication m_application{m_session, m_reader};
    RandomUser m_user;
};

} // namespace

/// Its arguments: how many minutes, and the seed of the choices, which is else a random one.
int main(int argc, char** argv)
try {
    const double minutes = argc > 1 ? std::stod(argv[1]) : 2;
    const unsigned int seed =
        argc > 2 ? static_cast<unsigned int>(std::stoul(argv[2])) : std::random_device()();
    std::cout << "Seed " << seed << std::endl;
    return Soak(seed).run(minutes);
} catch (const std::exception& error) {
    std::cerr << "soak: " << error.what() << '\n';
    return 1;
}
