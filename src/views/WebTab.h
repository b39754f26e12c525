#pragma once

#include "StateView.h"

class PushButton;
class TextField;
class Theme;

/// The tab of the source that is a web page. Main thread.
class WebTab : public StateView
{
    Q_OBJECT

public:
    WebTab(AppState& state, const Theme& theme, QWidget* parent = nullptr);

protected:
    void refresh() final;

private:
    TextField* m_address;
    PushButton* m_fetch;
};
