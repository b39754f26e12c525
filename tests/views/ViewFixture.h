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
    ~ViewTest() override;

protected:
    ViewTest();

    void show();

    /// Lets the views take over what has changed.
    static void settle();

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

    void click(const char* name) const;

    /// A key, to what has the focus or else to the window.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;

    void type(const QString& typed) const;

    void open(Tab tab);

    /// The distance of the widget from the view's left, top, right and lower edge.
    QMargins margins(const QWidget& widget) const;
    QRect place(const QWidget& widget) const;

    Theme theme{{false, false, true, {}}};
    std::unique_ptr<ContentView> view;
    int quits = 0;
    std::vector<QUrl> opened;
    bool hasHotkey = true;
};
