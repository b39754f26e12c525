#include "ViewFixture.h"

#include <QCoreApplication>
#include <QTest>

ViewTest::~ViewTest()
{
    view.reset(); // before the state, which it looks at
    // A page that nobody answers would go on in the next test's event loop.
    for (QPromise<std::string>& page : pages) {
        if (!page.future().isFinished())
            fail(page, "The test is over.");
    }
    settle();
}

ViewTest::ViewTest()
{
    view = std::make_unique<ContentView>(
        *state, theme,
        ContentView::Actions{[this] { ++quits; },
                             [this](const QUrl& url) { opened.push_back(url); },
                             [this] { return hasHotkey; }});
    view->setModelState(ModelManager::Ready{});
}

void ViewTest::show()
{
    view->show();
    view->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(view.get()));
    settle();
}

void ViewTest::settle()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

void ViewTest::click(const char* name) const
{
    QTest::mouseClick(&button(name), Qt::LeftButton);
    settle();
}

void ViewTest::press(Qt::Key key, Qt::KeyboardModifiers modifiers) const
{
    QWidget* const focused = view->focusWidget();
    QTest::keyClick(focused ? focused : view.get(), key, modifiers);
    settle();
}

void ViewTest::type(const QString& typed) const
{
    QTest::keyClicks(view->focusWidget(), typed);
    settle();
}

void ViewTest::open(Tab tab)
{
    state->tab = tab;
    settle();
}

QMargins ViewTest::margins(const QWidget& widget) const
{
    const QRect place(widget.mapTo(view.get(), QPoint()), widget.size());
    return {place.left(), place.top(), view->width() - place.right() - 1,
            view->height() - place.bottom() - 1};
}

QRect ViewTest::place(const QWidget& widget) const
{
    return {widget.mapTo(view.get(), QPoint()), widget.size()};
}
