#pragma once

#include "FocusRing.h"
#include "Theme.h"

#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

/// A window in which every change of state is done at once.
class ControlTest : public testing::Test
{
protected:
    ControlTest()
    {
        theme.applyTo(window);
        window.resize(400, 300);
    }

    template <typename Control, typename... Arguments>
    Control& add(Arguments&&... arguments)
    {
        auto* const control = new Control(theme, std::forward<Arguments>(arguments)...);
        layout->addWidget(control);
        return *control;
    }

    void show()
    {
        ring = new FocusRing(theme, window);
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    void press(Qt::Key key) { QTest::keyClick(window.focusWidget(), key); }

    static QColor pixel(QWidget& widget, const QPoint& point)
    {
        return widget.grab().toImage().pixelColor(point);
    }

    Theme theme{{false, false, true, {}}};
    QWidget window;
    QVBoxLayout* layout = new QVBoxLayout(&window);
    FocusRing* ring = nullptr;
};
