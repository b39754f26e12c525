#pragma once

#include <QWidget>

class AppState;

/// A view of the application's state. Every change of the state makes the view stale. It is
/// refreshed in the next turn of the event loop, once for all changes until then. Main thread.
class StateView : public QWidget
{
    Q_OBJECT

public:
    /// Requires: `state` outlives this view.
    explicit StateView(AppState& state, QWidget* parent = nullptr);

protected:
    /// Shows the present state. Constructors call this too, at their end.
    virtual void refresh() = 0;

    AppState& state() const { return m_state; }

private:
    void markStale();

    AppState& m_state;
    bool m_isStale = false;
};
