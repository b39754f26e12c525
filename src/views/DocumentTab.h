#pragma once

#include <QUrl>
#include <QWidget>

class AppState;
class Theme;

/// The source that is a file: dropped, or chosen. Main thread.
class DocumentTab : public QWidget
{
    Q_OBJECT

public:
    /// Requires: `state` outlives this view.
    DocumentTab(AppState& state, const Theme& theme, QWidget* parent = nullptr);

signals:
    /// The file chooser is on the screen between these two.
    void chooserOpened();
    void chooserClosed();

private:
    void load(const QUrl& file);

    AppState& m_state;
};
