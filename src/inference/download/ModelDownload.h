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

/// One transfer of the model into its place on disk. Meant for a thread of its own with an event
/// loop: everything but the construction happens there, blocks on the disk, and is announced by
/// signals. Deleting it at any time ends the transfer and leaves no file behind.
class ModelDownload : public QObject
{
    Q_OBJECT

public:
    /// `stallLimit` is how long the server may send nothing.
    ModelDownload(QUrl address, std::filesystem::path destination,
                  std::chrono::milliseconds stallLimit);
    ~ModelDownload() override;

    /// Begins the transfer; called once. Ends with exactly one of `completed` and `failed`.
    void start();

signals:
    /// How many bytes have arrived, and of how many; -1 where the server has not told.
    void progressed(qint64 received, qint64 expected);
    /// The model is in its place.
    void completed();
    /// Nothing has changed on disk. `message` is a sentence.
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

    QUrl m_address; // after each redirect the new one
    const std::filesystem::path m_destination;
    QTimer m_stall;
    std::optional<QNetworkAccessManager> m_network; // made on the thread that uses it
    QNetworkReply* m_reply = nullptr;               // belongs to m_network
    std::optional<PartFile> m_file;
    int m_redirects = 0;
    qint64 m_received = 0; // bytes
};
