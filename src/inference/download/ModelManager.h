#pragma once

#include "ModelFile.h"

#include <QObject>
#include <QScopedPointer>
#include <QThread>
#include <QUrl>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <variant>

class ModelDownload;

/// Whether the language model is on disk, and its download. Everything is for the main thread only:
/// calls, signals, construction and destruction. Nothing but destruction blocks, and that at most
/// for a moment: the network and the disk are for a thread of its own.
class ModelManager : public QObject
{
    Q_OBJECT

public:
    struct Idle
    {
        bool operator==(const Idle&) const = default;
    };
    struct Downloading
    {
        double progress = 0; // 0 to 1; stays 0 where the server does not tell the size
        bool operator==(const Downloading&) const = default;
    };
    struct Ready
    {
        bool operator==(const Ready&) const = default;
    };
    struct Failed
    {
        std::string message; // a sentence for users
        bool operator==(const Failed&) const = default;
    };
    using State = std::variant<Idle, Downloading, Ready, Failed>;

    /// ModelFile::directory().
    static std::filesystem::path directory();
    /// The address of the model: PITHWISE_MODEL_URL from the environment if set and not empty, else
    /// the address from the build options.
    static QUrl modelURL();

    struct Options
    {
        std::filesystem::path path = directory() / ModelFile::name;
        QUrl address = modelURL();
        std::chrono::milliseconds stallLimit = std::chrono::seconds(60); // without a byte
    };

    /// The one manager of the program; lives until the application object is destroyed.
    static ModelManager& shared();

    /// Ready if the model's file exists, else idle. Uses no network.
    explicit ModelManager(Options options);
    /// Ends a transfer and removes what it has written so far.
    ~ModelManager() override;

    const State& state() const { return m_state; }

    /// Downloads the model, whatever is on disk already: the state is now Downloading, and Ready or
    /// Failed in the end. What is on disk changes only when the new file is complete. A transfer
    /// under way is dropped and never heard of again.
    void start();

signals:
    /// The state has been set, perhaps to what it was before.
    void stateChanged();
    /// How many bytes have arrived, and of how many; -1 where the server does not tell.
    void progressed(qint64 received, qint64 expected);

private:
    void connectDownload();
    void end(State state);
    void publish(State state);

    const Options m_options;
    State m_state;
    QThread m_thread;
    // Deleted on its own thread, and with the file work that takes.
    std::unique_ptr<ModelDownload, QScopedPointerDeleteLater> m_download;
    quint64 m_downloadNumber = 0;
};
