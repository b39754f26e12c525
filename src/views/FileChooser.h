#pragma once

#include <QObject>
#include <QPointer>

#include <filesystem>

class QFileDialog;
class QWidget;

/// The desktop's window to choose one document in. While it is open it comes and goes with the
/// window it belongs to. Main thread.
class FileChooser : public QObject
{
    Q_OBJECT

public:
    /// The chooser belongs to `view`, whose window the chooser's lies over.
    explicit FileChooser(QWidget& view);

    /// Opens and returns at once; where it is open already, it comes to the front.
    void open();

signals:
    void opened();
    void closed();
    /// Before closed(). Nothing is chosen where the user cancels.
    void chosen(const std::filesystem::path& file);

protected:
    bool eventFilter(QObject* window, QEvent* event) override;

private:
    void comeBack();
    void finish(int result);

    QWidget& m_view;
    QPointer<QFileDialog> m_dialog;
    QString m_folder; // where it opens: where it was last
};
