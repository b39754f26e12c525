#include "ViewFixture.h"

#include <QAccessible>
#include <QLineEdit>

class WebTabTest : public ViewTest
{
protected:
    WebTabTest() { state->tab = Tab::web; }

    QLineEdit& address() const { return find<QLineEdit>("address"); }
};

TEST_F(WebTabTest, HasItsTextsAndSizes)
{
    show();
    EXPECT_EQ(address().placeholderText(), QStringLiteral("https://example.com/article"));
    const QAccessibleInterface* const fetch =
        QAccessible::queryAccessibleInterface(&button("fetch"));
    EXPECT_EQ(fetch->text(QAccessible::Name), QStringLiteral("Fetch & Summarize"));
    QLabel* note = nullptr;
    for (QLabel* label : view->findChildren<QLabel*>()) {
        if (label->text() ==
            u"Only the page you enter is downloaded, then reduced to reader-mode text. Summarizing "
            u"itself never uses the network.")
            note = label;
    }
    ASSERT_TRUE(note);
    EXPECT_TRUE(note->isVisible());
    EXPECT_EQ(place(button("fetch")).top() - place(address()).bottom() - 1, 8);
    EXPECT_EQ(place(*note).top() - place(button("fetch")).bottom() - 1, 8);
    EXPECT_EQ(place(address()).width(), 436);
    EXPECT_EQ(place(button("fetch")).left(), 12);
}

TEST_F(WebTabTest, TheAddressIsBothWaysTheStates)
{
    show();
    view->takeFocus();
    QTest::keyClicks(&address(), QStringLiteral("a.example"));
    EXPECT_EQ(state->urlString.get(), QStringLiteral("a.example"));
    press(Qt::Key_Home);
    type(QStringLiteral("b"));
    EXPECT_EQ(address().cursorPosition(), 1);
    EXPECT_EQ(state->urlString.get(), QStringLiteral("ba.example"));
    state->urlString = QStringLiteral("c.example");
    settle();
    EXPECT_EQ(address().text(), QStringLiteral("c.example"));
}

TEST_F(WebTabTest, FetchNeedsMoreThanSpacesAndTabs)
{
    show();
    const std::vector<std::pair<QString, bool>> expected = {
        {"", false}, {" ", false},  {" \t \u00A0\u3000", false},
        {"a", true}, {" a ", true}, {"\n", true}};
    for (const auto& [typed, isEnabled] : expected) {
        state->urlString = typed;
        settle();
        EXPECT_EQ(button("fetch").isEnabled(), isEnabled) << typed.toStdString();
    }
}

TEST_F(WebTabTest, FetchFetches)
{
    show();
    state->urlString = QStringLiteral("a.example");
    settle();
    click("fetch");
    EXPECT_EQ(addresses, std::vector<std::string>{"a.example"});
    EXPECT_TRUE(state->isWorking);
    EXPECT_FALSE(button("fetch").isEnabled());
    fail(pages.front(), "It failed.");
    waitForError(QStringLiteral("It failed."));
    settle();
    EXPECT_TRUE(button("fetch").isEnabled());
}

TEST_F(WebTabTest, ReturnFetchesAlsoWhereTheButtonIsDisabled)
{
    show();
    view->takeFocus();
    type(QStringLiteral("  "));
    EXPECT_FALSE(button("fetch").isEnabled());
    press(Qt::Key_Return);
    EXPECT_EQ(addresses, std::vector<std::string>{"  "});
    press(Qt::Key_Return);
    EXPECT_EQ(addresses.size(), 2u) << "also while working";
}

TEST_F(WebTabTest, ReturnInTheFieldOnlyFetches)
{
    show();
    state->sourceText = QStringLiteral("A text.");
    settle();
    view->takeFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(addresses.size(), 1u);
    EXPECT_EQ(state->token(), nullptr) << "and summarises nothing";
}

TEST_F(WebTabTest, FetchedWithTheKeyboardTheFocusIsInTheField)
{
    show();
    state->urlString = QStringLiteral("a.example");
    settle();
    button("fetch").setFocus();
    press(Qt::Key_Space);
    EXPECT_TRUE(address().hasFocus());
}
