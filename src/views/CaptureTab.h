#pragma once

#include "StateView.h"

#include <QPointer>

class Theme;

/// The tab of the source that is read off the screen. Main thread.
class CaptureTab : public StateView
{
    Q_OBJECT

public:
    CaptureTab(AppState& state, const Theme& theme, QWidget* parent = nullptr);

protected:
    void refresh() final;

private:
    void disableButtons();
    void enableButtons();
    bool isWithHeir() const;

    QWidget* m_buttons;
    QPointer<QWidget> m_focused; // the button that lost the focus by being disabled
    QPointer<QWidget> m_heir;    // the widget that got the focus from it
};
