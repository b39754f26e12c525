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

/// Knows whether the language model is on disk, and downloads it. Everything is for the main thread
/// only: calls, signals, construction and destruction. Nothing but destruction blocks, and that
/// only for a moment, because a thread of its own does the work on the network and the disk.
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
        double progress = 0; // 0 to 1; stays 0 if the server does not tell the size
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

    /// The folder of the model: ModelFile::directory().
    static std::filesystem::path directory();
    /// The environment variable PITHWISE_MODEL_URL if it is set and not empty, else the address
    /// that the build options give.
    static QUrl modelURL();

    struct Options
    {
        std::filesystem::path path = directory() / ModelFile::name;
        QUrl address = modelURL();
        /// How long the server may send nothing before the download fails.
        std::chrono::milliseconds stallLimit = std::chrono::seconds(60);
    };

    /// The program's one manager, made by the first call. It lives until the application object is
    /// destroyed.
    static ModelManager& shared();

    /// Starts out Ready if the model's file exists, else Idle. Uses no network.
    explicit ModelManager(Options options);
    /// Ends the transfer, if there is one, and removes what it has written so far.
    ~ModelManager() override;

    const State& state() const { return m_state; }

    /// Downloads the model, even if there is one on disk already. The state becomes Downloading,
    /// and Ready or Failed in the end. The file on disk is replaced only when the new one is
    /// complete. If a transfer is under way it is dropped, and there are no more signals about it.
    void start();

signals:
    /// The state has been set, perhaps to the value it had before.
    void stateChanged();
    /// `received` bytes have arrived, of `expected`; that is -1 if the server has not told the
    /// size.
    void progressed(qint64 received, qint64 expected);

private:
    void connectDownload();
    void end(State state);
    void publish(State state);

    const Options m_options;
    State m_state;
    QThread m_thread;
    // Deleted on m_thread, because deleting it may block on the disk.
    std::unique_ptr<ModelDownload, QScopedPointerDeleteLater> m_download;
    quint64 m_downloadNumber = 0;
};
