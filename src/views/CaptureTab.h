#pragma once

#include "StateView.h"

class Theme;

/// The source that is read off the screen. Main thread.
class CaptureTab : public StateView
{
    Q_OBJECT

public:
    CaptureTab(AppState& state, const Theme& theme, QWidget* parent = nullptr);

protected:
    void refresh() final;

private:
    QWidget* m_buttons;
};
