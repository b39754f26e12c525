#include "HotKey.h"

#include "GlobalHotKey.h"

#include <QCoreApplication>

#include <memory>
#include <utility>

namespace HotKey {

static std::function<void()> action;
static std::unique_ptr<GlobalHotKey> hotKey;

static void pressed()
{
    // Queued, so that whatever reports the press is done before the action begins.
    const auto run = [] {
        if (const std::function<void()> present = action)
            present();
    };
    QMetaObject::invokeMethod(QCoreApplication::instance(), run, Qt::QueuedConnection);
}

void install(std::function<void()> newAction)
{
    action = std::move(newAction);
    if (hotKey)
        return;
    hotKey = GlobalHotKey::create(pressed);
    // It needs the event loop, which ends with the application object.
    qAddPostRoutine([] {
        hotKey.reset();
        action = nullptr;
    });
}

bool isGranted()
{
    return hotKey && hotKey->isGranted();
}

} // namespace HotKey
