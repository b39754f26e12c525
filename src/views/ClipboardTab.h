#pragma once

#include "StateView.h"

class PushButton;
class TextEditor;
class Theme;

/// The tab of the source that is typed or pasted. Main thread.
class ClipboardTab : public StateView
{
    Q_OBJECT

public:
    ClipboardTab(AppState& state, const Theme& theme, QWidget* parent = nullptr);

protected:
    void refresh() final;
    void showEvent(QShowEvent* event) override;

private:
    void takeTyped();
    void clear();
    void labelSource();

    TextEditor* m_editor;
    PushButton* m_clear;
    QString m_known; // the source text that this view last showed or took
    bool m_isShowing = false;
};
