#pragma once

#include <QObject>
#include <QPointer>

#include <filesystem>

class QFileDialog;
class QWidget;

/// The desktop's window for choosing one document. While it is open, it is shown and hidden
/// together with the window that it belongs to. Main thread.
class FileChooser : public QObject
{
    Q_OBJECT

public:
    /// `view` owns the chooser, which lies over the window of `view`.
    explicit FileChooser(QWidget& view);

    /// Opens the chooser and returns at once. If it is open already, it comes to the front.
    void open();

signals:
    void opened();
    void closed();
    /// The user has chosen `file`. Comes before closed(), and not at all if the user cancels.
    void chosen(const std::filesystem::path& file);

protected:
    bool eventFilter(QObject* window, QEvent* event) override;

private:
    void comeBack();
    void finish(int result);

    QWidget& m_view;
    QPointer<QFileDialog> m_dialog;
    QString m_folder; // the folder to open in: the last one used
};
