#include "ModelCommand.h"

#include "AppError.h"
#include "DownloadProgress.h"
#include "Interrupt.h"
#include "ModelFile.h"
#include "ModelManager.h"
#include "QtApplication.h"
#include "StatusLine.h"

#include <QNetworkProxyFactory>

#include <iostream>

namespace ModelCommand {

int status()
{
    const std::filesystem::path file = ModelFile::path();
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    if (error)
        std::cout << "The model is missing; \"pithwise model download\" fetches it.\n";
    else
        std::cout << "The model is ready (" << size / 1'000'000 << " MB).\n";
    return 0;
}

int path()
{
    std::cout << ModelFile::path().string() << "\n";
    return 0;
}

/// Ends the event loop when the download has succeeded or failed.
static void quitAtEnd(const ModelManager& manager)
{
    const auto check = [&manager] {
        if (!std::holds_alternative<ModelManager::Downloading>(manager.state()))
            QCoreApplication::quit();
    };
    // Queued, because the end may come before the loop has begun.
    QObject::connect(&manager, &ModelManager::stateChanged, &manager, check, Qt::QueuedConnection);
}

int download()
{
    int count = 0;
    const QCoreApplication application(count, nullptr);
    const Interrupt interrupt(quitSoon);
    QNetworkProxyFactory::setUseSystemConfiguration(true);

    StatusLine line(*stderr);
    line.show("Downloading the language model…");
    ModelManager manager(ModelManager::Options{});
    DownloadProgress progress(line);
    QObject::connect(
        &manager, &ModelManager::progressed, &manager,
        [&progress](qint64 received, qint64 expected) { progress.update(received, expected); });
    quitAtEnd(manager);
    manager.start();
    QCoreApplication::exec();

    if (const auto* failed = std::get_if<ModelManager::Failed>(&manager.state()))
        throw AppError(failed->message);
    return interrupt.exitStatus();
}

void requireFile(const std::string& model)
{
    std::error_code ignored;
    if (!model.empty() && !std::filesystem::is_regular_file(model, ignored))
        throw AppError("There is no file named " + model + ".");
}

} // namespace ModelCommand
