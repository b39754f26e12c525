#include "AppStateFixture.h"

#include <QCoreApplication>

namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using AppStateSourceTest = AppStateFixture;

TEST_F(AppStateSourceTest, TheClipboardsTextIsSummarized)
{
    clipboard = " some\u00A0text\n";
    state->useClipboard();
    waitForSource("some text", "Clipboard");
    expectWorking("Loading model…");
    EXPECT_EQ(state->tab, Tab::clipboard);
    QCoreApplication::processEvents();
    EXPECT_THAT(moments, Not(IsEmpty()));
    for (const std::string& moment : moments) // reading it is no work
        EXPECT_THAT(moment, AnyOf(HasSubstr("some text"), HasSubstr("idle")));
}

TEST_F(AppStateSourceTest, AnEmptyAbsentOrBlankClipboardIsSaidToHaveNoText)
{
    for (const std::optional<std::string>& text :
         {std::optional<std::string>(), std::optional<std::string>(""),
          std::optional<std::string>(" \n\u00A0")}) {
        makeState();
        state->status = "kept";
        state->isWorking = true;
        clipboard = text;
        state->useClipboard();
        waitForError("The clipboard has no text.");
        EXPECT_EQ(state->status.get(), "kept");
        EXPECT_TRUE(state->isWorking);
    }
}

TEST_F(AppStateSourceTest, AClipboardThatCannotBeReadIsExplained)
{
    state->status = "kept";
    clipboardError = "Its owner does not answer.";
    state->useClipboard();
    waitForError("Its owner does not answer.");
    EXPECT_EQ(state->status.get(), "kept");
}

TEST_F(AppStateSourceTest, AFileIsReadAndSummarizedUnderItsName)
{
    state->errorMessage = "earlier";
    state->loadFile("/folder/notes.txt");
    expectWorking("Reading notes.txt…");
    documents.answer(0, "a  text\r\n");
    waitForSource("a text", "notes.txt");
    EXPECT_THAT(documents.arguments(), ElementsAre("/folder/notes.txt"));
    expectWorking("Loading model…");
}

TEST_F(AppStateSourceTest, WhereOnlyAPartOfAFileWasReadItsLabelSaysSo)
{
    AppServices partial = services();
    partial.readDocument = [](auto&&) { return DocumentText("text", "pages 1–9 of 15"); };
    state = std::make_unique<AppState>(partial);
    state->loadFile("/folder/scan.pdf");
    waitForSource("text", "scan.pdf (pages 1–9 of 15)");
    partial.readDocument = [](auto&&) { return DocumentText("", "page 2 of 15"); };
    state = std::make_unique<AppState>(partial);
    state->loadFile("/folder/scan.pdf");
    waitForError("No text found in scan.pdf (page 2 of 15).");
}

TEST_F(AppStateSourceTest, AFilesNameMayBeAnything)
{
    const std::vector<std::pair<std::string, QString>> names = {
        {"/folder/a b\n👩.tar.gz", "a b\n👩.tar.gz"},
        {"/folder/na\xEFve.txt", "naïve.txt"},
        {"/folder/.pdf", ".pdf"},
        {"/folder/notes.rtfd/", "notes.rtfd"},
        {"relative", "relative"},
        {"/", "/"}};
    for (const auto& [path, label] : names) {
        state->loadFile(path);
        EXPECT_EQ(state->status.get(), "Reading " + label + "…");
    }
}

TEST_F(AppStateSourceTest, AFileThatCannotBeReadShowsTheReadersMessage)
{
    state->loadFile("/folder/notes.xyz");
    documents.fail(0, "Unsupported file type.");
    waitForError("Unsupported file type.");
    expectIdle("Unsupported file type.");
}

TEST_F(AppStateSourceTest, AFileOfBlankTextIsNamed)
{
    state->loadFile("/folder/blank.txt");
    documents.answer(0, " \n\n\t");
    waitForError("No text found in blank.txt.");
    expectIdle("No text found in blank.txt.");
    EXPECT_EQ(state->sourceText.get(), "");
}

TEST_F(AppStateSourceTest, APageIsFetchedFromTheAddressAsItWasTyped)
{
    state->urlString = " example.org/a\u00A0 ";
    state->fetchURL();
    expectWorking("Fetching page…");
    state->urlString = "another";
    EXPECT_THAT(addresses, ElementsAre(" example.org/a\u00A0 "));
    answer(pages[0], std::string("The page."));
    waitForSource("The page.", " example.org/a\u00A0 ");
    expectWorking("Loading model…");
}

TEST_F(AppStateSourceTest, APageThatFailsShowsTheErrorOfTheNetwork)
{
    state->urlString = "example.org";
    state->fetchURL();
    fail(pages[0], "Host example.org not found");
    waitForError("Host example.org not found");
    expectIdle("Host example.org not found");
}

TEST_F(AppStateSourceTest, EachKindOfCaptureHasItsLabel)
{
    const std::vector<std::pair<ScreenGrab::Kind, QString>> kinds = {
        {ScreenGrab::Kind::window, "Active window"},
        {ScreenGrab::Kind::screen, "Screen"},
        {ScreenGrab::Kind::region, "Selected area"}};
    std::size_t number = 0;
    for (const auto& [kind, label] : kinds) {
        state->capture(kind);
        expectWorking("Capturing and reading text…");
        captures.answer(number, std::to_string(number));
        waitForSource(QString::number(number), label);
        EXPECT_EQ(captures.arguments().back(), kind);
        ++number;
    }
    EXPECT_EQ(state->tab, Tab::clipboard);
}

TEST_F(AppStateSourceTest, ACaptureThatTheUserCancelsSaysSo)
{
    state->capture(ScreenGrab::Kind::region);
    captures.fail(0, "Capture cancelled.");
    waitForError("Capture cancelled.");
    expectIdle("Capture cancelled.");
    state->capture(ScreenGrab::Kind::screen);
    captures.answer(1, " \n");
    waitForError("No text found in Screen.");
}

TEST_F(AppStateSourceTest, OfTwoAtOnceTheOneThatEndsLastIsSummarized)
{
    state->loadFile("/first.txt");
    state->capture(ScreenGrab::Kind::screen);
    captures.answer(0, "captured");
    waitForSource("captured", "Screen");
    waitForCalls(1);
    const std::weak_ptr<const CancelToken> first = state->token();
    documents.answer(0, "read");
    waitForSource("read", "first.txt");
    EXPECT_TRUE(first.expired() || first.lock()->isCancelled());
    waitForCalls(2);
    engine.finish(0, "summary of the capture");
    engine.finish(1, "summary of the file");
    waitForOutput("summary of the file");
    expectIdle();
}

TEST_F(AppStateSourceTest, StopEndsNoReadingAndItsTextIsStillSummarized)
{
    state->loadFile("/notes.txt");
    state->stop();
    expectIdle();
    documents.answer(0, "read");
    waitForSource("read", "notes.txt");
    expectWorking("Loading model…");
    waitForCalls(1);
    engine.finish(0, "summary");
    waitForOutput("summary");
}

TEST_F(AppStateSourceTest, ADocumentThatFailsAfterANewerOneSaysSoAndTheSummaryGoesOn)
{
    state->loadFile("/older.pdf");
    EXPECT_TRUE(waitUntil([&] { return documents.arguments().size() == 1; }));
    state->loadFile("/newer.txt");
    documents.answer(1, "newer");
    waitForSource("newer", "newer.txt");
    documents.fail(0, "Could not open the PDF.");
    waitForError("Could not open the PDF.");
    expectIdle("Could not open the PDF.");
    EXPECT_FALSE(state->token()->isCancelled());
    engine.finish(0, "summary");
    waitForOutput("summary");
    EXPECT_EQ(state->sourceText.get(), "newer");
    EXPECT_EQ(state->errorMessage.get(), "Could not open the PDF.");
}

TEST_F(AppStateSourceTest, WhatIsReadForAStateThatIsGoneIsDropped)
{
    isModelReady = false;
    state->loadFile("/notes.txt");
    state->capture(ScreenGrab::Kind::screen);
    state->fetchURL();
    clipboard = "text";
    state->useClipboard();
    EXPECT_TRUE(waitUntil([&] {
        return documents.arguments().size() + captures.arguments().size() == 2 &&
               clipboardReads == 1;
    }));
    documents.answer(0, "text");
    captures.fail(0, "error");
    state.reset();
    fail(pages[0], "error");
    QCoreApplication::processEvents();
    EXPECT_EQ(engine.calls().size(), 0U);
}

TEST_F(AppStateSourceTest, TenFilesThatHangHoldUpNoOther)
{
    for (int i = 0; i < 10; ++i)
        state->loadFile("/hanging.pdf");
    EXPECT_TRUE(waitUntil([&] { return documents.arguments().size() == 10; }));
    documents.answer(10, "text");
    state->loadFile("/notes.txt");
    waitForSource("text", "notes.txt");
}

} // namespace
