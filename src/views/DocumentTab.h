#pragma once

#include <QUrl>
#include <QWidget>

class AppState;
class Theme;

/// The tab of the source that is a file, dropped or chosen. Main thread.
class DocumentTab : public QWidget
{
    Q_OBJECT

public:
    /// Requires: `state` outlives this view.
    DocumentTab(AppState& state, const Theme& theme, QWidget* parent = nullptr);

signals:
    /// The file chooser is on the screen from the first of these signals to the second.
    void chooserOpened();
    void chooserClosed();

private:
    void load(const QUrl& file);

    AppState& m_state;
};
