#include "ModelSetupView.h"

#include "ControlFixture.h"
#include "LinkButton.h"
#include "MessageView.h"
#include "ProgressBar.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>

class ModelSetupViewTest : public ControlTest
{
protected:
    using Downloading = ModelManager::Downloading;
    using Failed = ModelManager::Failed;

    template <typename Widget = QWidget>
    Widget& find(const char* name) const
    {
        return *view.findChild<Widget*>(QString::fromUtf8(name));
    }
    QPushButton& button() const { return find<QPushButton>("startDownload"); }
    QString percentageAt(double progress)
    {
        view.setState(Downloading{progress});
        return find<QLabel>("percentage").text();
    }
    bool isShown(const char* name) const { return find(name).isVisibleTo(&view); }

    ModelSetupView& view = add<ModelSetupView>();
};

TEST_F(ModelSetupViewTest, HasItsTexts)
{
    QStringList texts;
    for (const QLabel* label : view.findChildren<QLabel*>()) {
        if (!label->text().isEmpty())
            texts.push_back(label->text());
    }
    EXPECT_EQ(texts,
              QStringList({"Setting up the on-device model",
                           "A small language model (about 1 GB) is downloaded once. After that, "
                           "everything runs offline on your computer."}));
}

TEST_F(ModelSetupViewTest, IdleOffersTheDownload)
{
    view.setState(ModelManager::Idle{});
    EXPECT_TRUE(isShown("startDownload"));
    EXPECT_FALSE(isShown("download"));
    EXPECT_FALSE(isShown("setupError"));
    EXPECT_EQ(button().text(), QStringLiteral("Download model"));
}

TEST_F(ModelSetupViewTest, TheDownloadIsShownInWholePercents)
{
    view.setState(Downloading{0.25});
    EXPECT_FALSE(isShown("startDownload"));
    EXPECT_TRUE(isShown("download"));
    EXPECT_EQ(find<ProgressBar>("downloadBar").value(), 25);
    EXPECT_EQ(percentageAt(0), QStringLiteral("0%"));
    EXPECT_EQ(percentageAt(0.57), QStringLiteral("56%")) << "0.57 * 100 is less than 57";
    EXPECT_EQ(percentageAt(0.999), QStringLiteral("99%"));
    EXPECT_EQ(percentageAt(1), QStringLiteral("100%"));
}

TEST_F(ModelSetupViewTest, AFailureIsShownLiterallyWithRetry)
{
    view.setState(Failed{"<b>The</b> download failed."});
    EXPECT_TRUE(isShown("setupError"));
    EXPECT_FALSE(isShown("download"));
    EXPECT_EQ(find<MessageView>("setupError").toPlainText(),
              QStringLiteral("<b>The</b> download failed."));
    EXPECT_EQ(button().text(), QStringLiteral("Retry"));
    view.setState(Downloading{0});
    EXPECT_FALSE(isShown("setupError"));
}

TEST_F(ModelSetupViewTest, AfterAFailureTheDownloadCanBeginAnewAndBeOfferedAgain)
{
    view.setState(Failed{"It failed."});
    view.setState(Downloading{0.5});
    EXPECT_TRUE(isShown("download"));
    EXPECT_FALSE(isShown("startDownload"));
    view.setState(ModelManager::Idle{});
    EXPECT_FALSE(isShown("download"));
    EXPECT_FALSE(isShown("setupError"));
    EXPECT_TRUE(isShown("startDownload"));
    EXPECT_EQ(button().text(), QStringLiteral("Download model"));
}

TEST_F(ModelSetupViewTest, ThePercentageAndTheFailureAreCaptions)
{
    const auto& percentage = find<QLabel>("percentage");
    EXPECT_EQ(percentage.font(), theme.font(TextStyle::caption));
    EXPECT_EQ(percentage.palette().color(QPalette::WindowText), theme[ColorRole::secondary]);
    view.setState(Failed{"It failed."});
    const auto& message = find<MessageView>("setupError");
    EXPECT_EQ(message.font(), theme.font(TextStyle::caption));
    QTextCursor cursor(message.document());
    cursor.setPosition(1);
    EXPECT_EQ(cursor.charFormat().foreground().color(), theme[ColorRole::error]);
}

TEST_F(ModelSetupViewTest, ItsPartsAreFarEnoughApartAndInTheMiddle)
{
    window.setFixedSize(460, 560);
    layout->setContentsMargins(0, 0, 0, 0);
    view.setState(ModelManager::Idle{});
    show();
    std::vector<QRect> places;
    for (const QWidget* part : view.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (part->isVisible())
            places.push_back(part->geometry());
    }
    ASSERT_EQ(places.size(), 4u) << "symbol, title, text, button";
    EXPECT_EQ(places[0].size(), QSize(42, 42));
    for (std::size_t i = 1; i < places.size(); ++i)
        EXPECT_EQ(places[i].top() - places[i - 1].bottom() - 1, 14) << i;
    EXPECT_NEAR(places.front().top(), view.height() - places.back().bottom() - 1, 1);
}

TEST_F(ModelSetupViewTest, TheButtonStartsEachTimeItIsPressed)
{
    QSignalSpy starts(&view, &ModelSetupView::startRequested);
    show();
    view.setState(ModelManager::Idle{});
    QTest::mouseClick(&button(), Qt::LeftButton);
    QTest::mouseClick(&button(), Qt::LeftButton);
    EXPECT_EQ(starts.count(), 2);
    view.setState(Failed{"It failed."});
    QTest::mouseClick(&button(), Qt::LeftButton);
    EXPECT_EQ(starts.count(), 3);
}

TEST_F(ModelSetupViewTest, TheFocusDoesNotGoOnWhenTheDownloadBegins)
{
    auto& other = add<LinkButton>(QStringLiteral("Quit"));
    show();
    view.setFocus();
    ASSERT_TRUE(button().hasFocus());
    view.setState(Downloading{0});
    EXPECT_FALSE(other.hasFocus());
}

TEST_F(ModelSetupViewTest, AFailureCanBeFoundByAScreenReader)
{
    view.setState(Failed{"It failed."});
    EXPECT_EQ(find("setupError").accessibleName(), QStringLiteral("It failed."));
}

TEST_F(ModelSetupViewTest, TheTextsHaveTheirPaddings)
{
    window.setFixedSize(460, 560);
    layout->setContentsMargins(0, 0, 0, 0);
    view.setState(Downloading{0.5});
    show();
    const auto left = [this](const QWidget& widget) { return widget.mapTo(&view, QPoint()).x(); };
    EXPECT_EQ(left(find("downloadBar")), 50);
    EXPECT_EQ(find("downloadBar").width(), 360);
    view.setState(Failed{std::string(500, 'x')});
    layout->activate();
    QCoreApplication::processEvents();
    EXPECT_EQ(left(find("setupError")), 30);
    EXPECT_EQ(find("setupError").width(), 400);
    EXPECT_LT(find("setupError").height(), 250);
    EXPECT_GT(find("setupError").height(), 30);
}
