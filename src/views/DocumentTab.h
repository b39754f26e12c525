#pragma once

#include <QUrl>
#include <QWidget>

class AppState;
class FileChooser;
class Theme;

/// The tab of the source that is a file, dropped or chosen. Main thread.
class DocumentTab : public QWidget
{
    Q_OBJECT

public:
    /// Requires: `state` and `chooser` outlive this view.
    DocumentTab(AppState& state, const Theme& theme, FileChooser& chooser,
                QWidget* parent = nullptr);

private:
    void load(const QUrl& file);

    AppState& m_state;
};
