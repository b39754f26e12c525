#include "DropZone.h"
#include "FileChooser.h"
#include "ViewFixture.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QMimeData>
#include <QSignalSpy>
#include <QTemporaryDir>

class DocumentTabTest : public ViewTest
{
protected:
    DocumentTabTest() { state->tab = Tab::document; }

    DropZone& zone() const { return find<DropZone>("dropZone"); }

    /// Sends the event of a drag to where the mouse is, as the desktop does: to the window.
    template <typename Event>
    bool drag(const QList<QUrl>& urls, const QPoint& point)
    {
        m_data.setUrls(urls);
        Event event(point, Qt::CopyAction, &m_data, Qt::LeftButton, Qt::NoModifier);
        event.setDropAction(Qt::CopyAction);
        event.ignore();
        QApplication::sendEvent(view->windowHandle(), &event);
        return event.isAccepted();
    }

    QFileDialog* chooser() const { return view->findChild<QFileDialog*>("fileChooser"); }

    std::vector<std::filesystem::path> files() const { return documents.arguments(); }
    void waitForFile(const std::filesystem::path& file)
    {
        EXPECT_TRUE(waitUntil([&] { return !files().empty(); }));
        EXPECT_EQ(files(), std::vector{file});
    }

private:
    QMimeData m_data;
};

TEST_F(DocumentTabTest, HasItsTexts)
{
    show();
    QStringList texts;
    for (const QLabel* label : zone().findChildren<QLabel*>())
        texts.push_back(label->text());
    EXPECT_EQ(texts, QStringList("Drop a PDF, TXT, DOCX, RTF or image here"));
    EXPECT_EQ(button("chooseFile").text(), QStringLiteral("Choose File…"));
    EXPECT_EQ(place(zone()), place(find("tabArea")));
    const QRect line = place(*zone().findChild<QLabel*>());
    const QRect choose = place(button("chooseFile"));
    EXPECT_EQ(choose.top() - line.bottom() - 1, 8);
    EXPECT_NEAR(choose.center().x(), place(zone()).center().x(), 1);
    EXPECT_NEAR(line.center().x(), place(zone()).center().x(), 1);
}

TEST_F(DocumentTabTest, TheFirstOfSeveralDroppedFilesIsLoaded)
{
    show();
    const QPoint middle = place(zone()).center();
    const QList<QUrl> urls = {QUrl("file:///a.txt"), QUrl("file:///b.txt")};
    EXPECT_TRUE(drag<QDragEnterEvent>(urls, middle));
    EXPECT_TRUE(zone().isHighlighted());
    EXPECT_TRUE(drag<QDropEvent>(urls, middle));
    EXPECT_FALSE(zone().isHighlighted());
    EXPECT_FALSE(state->isWorking) << "the drop is answered first";
    settle();
    EXPECT_EQ(state->status.get(), QStringLiteral("Reading a.txt…"));
    waitForFile("/a.txt");
}

TEST_F(DocumentTabTest, ADragThatBeganBeforeTheTabWasShownCanBeDropped)
{
    state->tab = Tab::clipboard;
    show();
    const QList<QUrl> urls = {QUrl("file:///a.txt")};
    const QPoint middle = place(find("tabArea")).center();
    drag<QDragEnterEvent>(urls, middle);
    open(Tab::document);
    EXPECT_TRUE(drag<QDragMoveEvent>(urls, place(zone()).center() + QPoint(1, 40)));
    EXPECT_TRUE(zone().isHighlighted());
    EXPECT_TRUE(drag<QDropEvent>(urls, place(zone()).center() + QPoint(1, 40)));
    settle();
    waitForFile("/a.txt");
}

TEST_F(DocumentTabTest, WhatIsNoFileIsNotAccepted)
{
    show();
    const QPoint middle = place(zone()).center();
    EXPECT_FALSE(drag<QDragEnterEvent>({QUrl("https://a.example")}, middle));
    EXPECT_FALSE(drag<QDragEnterEvent>({}, middle));
    EXPECT_FALSE(zone().isHighlighted());
    drag<QDropEvent>({}, middle);
    settle();
    EXPECT_FALSE(state->isWorking);
}

TEST_F(DocumentTabTest, AFileWithoutAPathIsIgnoredSilently)
{
    show();
    const QPoint middle = place(zone()).center();
    drag<QDragEnterEvent>({QUrl("file:")}, middle);
    drag<QDropEvent>({QUrl("file:")}, middle);
    settle();
    EXPECT_FALSE(state->isWorking);
    EXPECT_EQ(state->errorMessage.get(), std::nullopt);
    EXPECT_TRUE(files().empty());
}

TEST_F(DocumentTabTest, TheHighlightEndsWithTheTab)
{
    show();
    drag<QDragEnterEvent>({QUrl("file:///a.txt")}, place(zone()).center());
    EXPECT_TRUE(zone().isHighlighted());
    open(Tab::web);
    open(Tab::document);
    EXPECT_FALSE(zone().isHighlighted());
}

TEST_F(DocumentTabTest, AFileMayHaveAnyName)
{
    show();
    const QList<QUrl> urls = {
        QUrl::fromEncoded("file://thishost/a%20%25%0A%FF%F0%9F%93%AC%23%3F.txt")};
    const QPoint middle = place(zone()).center();
    drag<QDragEnterEvent>(urls, middle);
    drag<QDropEvent>(urls, middle);
    settle();
    waitForFile("/a %\n\xFF\xF0\x9F\x93\xAC#?.txt");
}

TEST_F(DocumentTabTest, TheChosenFileIsLoaded)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("a.TXT")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    QSignalSpy openings(&view->chooser(), &FileChooser::opened);
    QSignalSpy closings(&view->chooser(), &FileChooser::closed);
    show();
    click("chooseFile");
    ASSERT_TRUE(chooser());
    EXPECT_EQ(openings.count(), 1);
    EXPECT_EQ(closings.count(), 0);
    EXPECT_EQ(chooser()->fileMode(), QFileDialog::ExistingFile) << "one, and no folder";
    EXPECT_TRUE(chooser()->isModal());
    chooser()->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(file.fileName());
    QMetaObject::invokeMethod(chooser(), "accept");
    EXPECT_EQ(closings.count(), 1);
    waitForFile(file.fileName().toStdString());
    settle();
    EXPECT_FALSE(chooser());
}

TEST_F(DocumentTabTest, ACancelledChooserChangesNothing)
{
    QSignalSpy closings(&view->chooser(), &FileChooser::closed);
    show();
    click("chooseFile");
    chooser()->reject();
    settle();
    EXPECT_EQ(closings.count(), 1);
    EXPECT_FALSE(state->isWorking);
    EXPECT_EQ(state->errorMessage.get(), std::nullopt);
    click("chooseFile");
    EXPECT_TRUE(chooser()) << "and can be opened again";
}

TEST_F(DocumentTabTest, ThereIsOneChooserAtATime)
{
    QSignalSpy openings(&view->chooser(), &FileChooser::opened);
    show();
    button("chooseFile").click();
    button("chooseFile").click();
    EXPECT_EQ(openings.count(), 1);
    EXPECT_EQ(view->findChildren<QFileDialog*>().size(), 1);
}

TEST_F(DocumentTabTest, TheChooserOffersDocumentsAndPicturesOnly)
{
    show();
    click("chooseFile");
    ASSERT_EQ(chooser()->nameFilters().size(), 1);
    const QString filter = chooser()->nameFilters().front();
    const QString inParentheses = filter.section(u'(', 1).section(u')', 0, 0);
    const QStringList patterns = inParentheses.split(u' '); // in any order
    for (const char* pattern : {"*.pdf", "*.txt", "*.rtf", "*.png", "*.jpg", "*.docx", "*.md"})
        EXPECT_TRUE(patterns.contains(QString::fromUtf8(pattern))) << pattern;
    for (const char* pattern : {"*.zip", "*.mp3", "*.exe", "*", ""})
        EXPECT_FALSE(patterns.contains(QString::fromUtf8(pattern))) << pattern;
}
