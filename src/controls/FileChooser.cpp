#include "FileChooser.h"

#include <QEvent>
#include <QFile>
#include <QFileDialog>
#include <QMimeDatabase>
#include <QStandardPaths>

#include <set>

/// The name patterns of all documents and pictures.
static QString patterns()
{
    const auto isChoice = [](const QMimeType& type) {
        static const std::set<QString> names = {
            QStringLiteral("application/pdf"),
            QStringLiteral("application/rtf"),
            QStringLiteral(
                "application/vnd.openxmlformats-officedocument.wordprocessingml.document"),
            QStringLiteral("text/markdown"),
        };
        return names.count(type.name()) > 0 || type.name().startsWith(u"image/") ||
               type.name().startsWith(u"text/") || type.inherits(QStringLiteral("text/plain"));
    };
    QStringList patterns;
    const QList<QMimeType> types = QMimeDatabase().allMimeTypes();
    for (const QMimeType& type : types) {
        if (isChoice(type))
            patterns += type.globPatterns();
    }
    patterns.removeDuplicates();
    return patterns.join(u' ');
}

FileChooser::FileChooser(QWidget& view)
    : QObject(&view),
      m_view(view),
      m_folder(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation))
{}

void FileChooser::open()
{
    if (m_dialog) {
        m_dialog->raise();
        m_dialog->activateWindow();
        return;
    }
    m_dialog = new QFileDialog(m_view.window(), QStringLiteral("Choose File"), m_folder);
    m_dialog->setObjectName(QStringLiteral("fileChooser"));
    m_dialog->setAttribute(Qt::WA_DeleteOnClose);
    m_dialog->setAttribute(Qt::WA_WindowPropagation); // dark if the view is dark
    m_dialog->setFileMode(QFileDialog::ExistingFile);
    m_dialog->setOption(QFileDialog::HideNameFilterDetails);
    m_dialog->setNameFilter(QStringLiteral("Documents and pictures (%1)").arg(patterns()));
    connect(m_dialog, &QFileDialog::finished, this, &FileChooser::finish);
    m_view.window()->installEventFilter(this);
    emit opened();
    m_dialog->open();
}

bool FileChooser::eventFilter(QObject* window, QEvent* event)
{
    // On its own, the chooser would have nothing to belong to.
    if (m_dialog && event->type() == QEvent::Hide)
        m_dialog->hide();
    // Queued, because only then is there a window to lie over.
    if (m_dialog && event->type() == QEvent::Show)
        QMetaObject::invokeMethod(this, &FileChooser::comeBack, Qt::QueuedConnection);
    return QObject::eventFilter(window, event);
}

void FileChooser::comeBack()
{
    if (m_dialog && m_view.window()->isVisible())
        m_dialog->show();
}

void FileChooser::finish(int result)
{
    QFileDialog& dialog = *m_dialog;
    m_dialog = nullptr;
    m_view.window()->removeEventFilter(this);
    const QStringList files = dialog.selectedFiles();
    if (result == QDialog::Accepted && !files.isEmpty()) {
        m_folder = dialog.directory().path();
        emit chosen(QFile::encodeName(files.front()).toStdString());
    }
    emit closed();
}
