#pragma once

#include "AppStateFixture.h"
#include "ContentView.h"
#include "Theme.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QUrl>

#include <string>
#include <vector>

/// The whole interface on a state of which the test holds all the strings.
class ViewTest : public AppStateFixture
{
public:
    ~ViewTest() override
    {
        view.reset(); // before the state, which it looks at
        // A page that nobody answers would go on in the next test's event loop.
        for (QPromise<std::string>& page : pages) {
            if (!page.future().isFinished())
                fail(page, "The test is over.");
        }
        settle();
    }

protected:
    ViewTest()
    {
        view = std::make_unique<ContentView>(
            *state, theme,
            ContentView::Actions{[this] { ++quits; },
                                 [this](const QUrl& url) { opened.push_back(url); }});
        view->setModelState(ModelManager::Ready{});
    }

    void show()
    {
        view->show();
        view->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(view.get()));
        settle();
    }

    /// Lets the views take over what has changed.
    static void settle()
    {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }

    template <typename Widget = QWidget>
    Widget& find(const char* name) const
    {
        auto* const widget = view->findChild<Widget*>(QString::fromUtf8(name));
        if (!widget)
            throw std::runtime_error(std::string("There is no ") + name);
        return *widget;
    }

    QPlainTextEdit& editor() const { return find<QPlainTextEdit>("editor"); }
    QPushButton& button(const char* name) const { return find<QPushButton>(name); }
    QString text(const char* label) const { return find<QLabel>(label).text(); }

    /// Whether it is on the page that is shown.
    bool isShown(const char* name) const { return find(name).isVisibleTo(view.get()); }

    void click(const char* name) const
    {
        QTest::mouseClick(&button(name), Qt::LeftButton);
        settle();
    }

    /// A key, to what has the focus or else to the window.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QWidget* const focused = view->focusWidget();
        QTest::keyClick(focused ? focused : view.get(), key, modifiers);
        settle();
    }

    void type(const QString& typed) const
    {
        QTest::keyClicks(view->focusWidget(), typed);
        settle();
    }

    void open(Tab tab)
    {
        state->tab = tab;
        settle();
    }

    /// The distance of the widget from the view's left, top, right and lower edge.
    QMargins margins(const QWidget& widget) const
    {
        const QRect place(widget.mapTo(view.get(), QPoint()), widget.size());
        return {place.left(), place.top(), view->width() - place.right() - 1,
                view->height() - place.bottom() - 1};
    }
    QRect place(const QWidget& widget) const
    {
        return {widget.mapTo(view.get(), QPoint()), widget.size()};
    }

    Theme theme{{false, false, true, {}}};
    std::unique_ptr<ContentView> view;
    int quits = 0;
    std::vector<QUrl> opened;
};
