#pragma once

#include "ChildTest.h"
#include "LoopbackServer.h"
#include "ModelFile.h"
#include "ModelManager.h"
#include "WaitUntil.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

/// A server, a folder for the model, and one manager with everything it has published. The model's
/// path on the server is "/model". Every test ends with a look for forgotten temporary files.
class ModelManagerFixture : public testing::Test
{
protected:
    using Answer = LoopbackServer::Answer;
    using Framing = LoopbackServer::Framing;
    using State = ModelManager::State;
    using Downloading = ModelManager::Downloading;
    using Failed = ModelManager::Failed;
    using Idle = ModelManager::Idle;
    using Ready = ModelManager::Ready;

    static constexpr qint64 tooSmall = 100'000'000;
    static constexpr qint64 bigEnough = tooSmall + 1;

    void TearDown() override
    {
        manager.reset();
        EXPECT_EQ(partFiles(), std::set<std::string>());
    }

    /// Of a length with few divisors, so that pieces in the wrong order do not pass for the right.
    static QByteArray pattern()
    {
        QByteArray bytes(65521, '\0');
        for (qsizetype i = 0; i < bytes.size(); ++i)
            bytes[i] = static_cast<char>(i * 7 + i / 251);
        return bytes;
    }

    /// An answer of `size` bytes, without any fault.
    static Answer model(qint64 size) { return {.body = pattern(), .size = size}; }

    ModelManager::Options options(const QUrl& address) const
    {
        return {.path = path, .address = address};
    }

    void makeManager() { makeManager(options(server.url("/model"))); }

    void makeManager(ModelManager::Options options)
    {
        manager = std::make_unique<ModelManager>(std::move(options));
        QObject::connect(manager.get(), &ModelManager::stateChanged, manager.get(), [this] {
            EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
            published.push_back(manager->state());
        });
        QObject::connect(
            manager.get(), &ModelManager::progressed, manager.get(),
            [this](qint64 received, qint64 expected) { reports.emplace_back(received, expected); });
    }

    bool hasEnded() const
    {
        return std::holds_alternative<Ready>(manager->state()) ||
               std::holds_alternative<Failed>(manager->state());
    }

    /// The state in the end of the present download, by which nothing temporary is left.
    State outcome()
    {
        EXPECT_TRUE(waitUntil([this] { return hasEnded(); }));
        EXPECT_EQ(partFiles(), std::set<std::string>());
        return manager->state();
    }

    /// Starts the manager's download and waits for its end.
    State download()
    {
        manager->start();
        return outcome();
    }

    /// Downloads what the server answers.
    State download(const Answer& answer)
    {
        server.setAnswer("/model", answer);
        makeManager();
        return download();
    }

    std::set<std::string> partFiles() const { return partFilesIn(folder); }

    static std::set<std::string> partFilesIn(const std::filesystem::path& folder)
    {
        std::set<std::string> names;
        std::error_code ignored;
        for (const auto& entry : std::filesystem::directory_iterator(folder, ignored)) {
            if (entry.path().extension() == ".part")
                names.insert(entry.path().filename().string());
        }
        return names;
    }

    void writeModel(const QByteArray& content) const
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }

    /// Whether the file in place is the first `size` bytes of the pattern, over and over.
    bool modelIsPattern(qint64 size) const
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly) || file.size() != size)
            return false;
        const QByteArray expected = pattern();
        for (qint64 left = size; left > 0; left -= expected.size()) {
            if (file.read(expected.size()) != expected.left(left))
                return false;
        }
        return true;
    }

    const QTemporaryDir temporary;
    const std::filesystem::path folder =
        qEnvironmentVariable(ChildTest::folderVariable, temporary.path()).toStdString();
    const std::filesystem::path path = folder / ModelFile::name;
    LoopbackServer server;
    std::vector<State> published;
    std::vector<std::pair<qint64, qint64>> reports;
    std::unique_ptr<ModelManager> manager;
};
