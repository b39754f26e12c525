#include "ModelManager.h"

#include "ModelAddress.h"
#include "ModelDownload.h"

#include <QCoreApplication>

#include <system_error>
#include <utility>

static std::unique_ptr<ModelManager> sharedManager;

std::filesystem::path ModelManager::directory()
{
    return ModelFile::directory();
}

QUrl ModelManager::modelURL()
{
    return ModelAddress::configured();
}

ModelManager& ModelManager::shared()
{
    if (!sharedManager) {
        sharedManager = std::make_unique<ModelManager>(Options());
        // Qt's threads and network must end while there still is an application object.
        qAddPostRoutine([] { sharedManager.reset(); });
    }
    return *sharedManager;
}

ModelManager::ModelManager(Options options) : m_options(std::move(options))
{
    std::error_code ignored;
    if (std::filesystem::is_regular_file(m_options.path, ignored))
        m_state = Ready();
    m_thread.setObjectName(QStringLiteral("model download"));
}

ModelManager::~ModelManager()
{
    m_download.reset();
    m_thread.quit();
    m_thread.wait();
}

void ModelManager::start()
{
    m_download.reset(new ModelDownload(m_options.address, m_options.path, m_options.stallLimit));
    connectDownload();
    m_download->moveToThread(&m_thread);
    m_thread.start();
    QMetaObject::invokeMethod(m_download.get(), &ModelDownload::start);
    publish(Downloading());
}

void ModelManager::connectDownload()
{
    // Signals of a dropped download may still be on their way.
    const auto isCurrent = [this, number = ++m_downloadNumber] {
        return number == m_downloadNumber;
    };
    // The two signals have a connection each, with a check each: whoever handles the first may
    // start over.
    connect(m_download.get(), &ModelDownload::progressed, this,
            [this, isCurrent](qint64 received, qint64 expected) {
                if (isCurrent())
                    emit progressed(received, expected);
            });
    connect(m_download.get(), &ModelDownload::progressed, this,
            [this, isCurrent](qint64 received, qint64 expected) {
                if (isCurrent() && expected >= 1)
                    publish(Downloading{double(received) / double(expected)});
            });
    connect(m_download.get(), &ModelDownload::completed, this, [this, isCurrent] {
        if (isCurrent())
            end(Ready());
    });
    connect(m_download.get(), &ModelDownload::failed, this,
            [this, isCurrent](const std::string& message) {
                if (isCurrent())
                    end(Failed{message});
            });
}

void ModelManager::end(State state)
{
    m_download.reset();
    publish(std::move(state));
}

void ModelManager::publish(State state)
{
    m_state = std::move(state);
    emit stateChanged();
}
