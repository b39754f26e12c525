#pragma once

#include <QWidget>

class AppState;

/// A view of the application's state. A change, which is announced before it is made, makes it
/// stale; it refreshes with the next turn of the event loop, once for all changes until then. Main
/// thread.
class StateView : public QWidget
{
    Q_OBJECT

public:
    /// Requires: `state` outlives this view.
    explicit StateView(AppState& state, QWidget* parent = nullptr);

protected:
    /// Shows what the state is now. Called by constructors too, at their end.
    virtual void refresh() = 0;

    AppState& state() const { return m_state; }

private:
    void markStale();

    AppState& m_state;
    bool m_isStale = false;
};
