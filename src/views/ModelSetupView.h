#pragma once

#include "ModelManager.h"

#include <QWidget>

class Label;
class MessageView;
class ProgressBar;
class PushButton;
class Theme;

/// The view that is shown until the model is on disk. Main thread.
class ModelSetupView : public QWidget
{
    Q_OBJECT

public:
    explicit ModelSetupView(const Theme& theme, QWidget* parent = nullptr);

    void setState(const ModelManager::State& state);

signals:
    /// The user wants the download to begin, or to begin again.
    void startRequested();

private:
    void addProgress(const Theme& theme);
    void addFailure(const Theme& theme);
    void showParts(bool isDownloading, bool isFailed);

    ProgressBar* m_bar;
    Label* m_percentage;
    QWidget* m_progress; // contains m_bar and m_percentage
    MessageView* m_message;
    PushButton* m_button;
};
