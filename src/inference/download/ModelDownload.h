#pragma once

#include "PartFile.h"

#include <QNetworkAccessManager>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

class QNetworkReply;

/// One transfer of the model into its place on disk. It needs a thread of its own with an event
/// loop. Construction apart, everything happens on that thread and may block on the disk; signals
/// announce the results. Deleting the object ends the transfer and leaves no incomplete file
/// behind.
class ModelDownload : public QObject
{
    Q_OBJECT

public:
    /// `stallLimit` is how long the server may send nothing before the transfer fails.
    ModelDownload(QUrl address, std::filesystem::path destination,
                  std::chrono::milliseconds stallLimit);
    ~ModelDownload() override;

    /// Begins the transfer. Called once. Ends with exactly one of the signals `completed` and
    /// `failed`, unless this object is deleted before.
    void start();

signals:
    /// `received` bytes have arrived, of `expected`; that is -1 if the server has not told the
    /// size.
    void progressed(qint64 received, qint64 expected);
    /// The model is in its place.
    void completed();
    /// The transfer has failed and the model's place on disk is unchanged. `message` is a sentence
    /// for users.
    void failed(const std::string& message);

private:
    template <typename Step>
    void attempt(Step step);
    void request();
    void receive();
    void finishReply();
    void follow(const QUrl& redirect);
    void finish();
    void end();

    QUrl m_address; // the latest, after a redirect
    const std::filesystem::path m_destination;
    QTimer m_stall;
    std::optional<QNetworkAccessManager> m_network; // made on the thread that uses it
    QNetworkReply* m_reply = nullptr;               // belongs to m_network
    std::optional<PartFile> m_file;
    int m_redirects = 0;
    qint64 m_received = 0; // bytes
};
