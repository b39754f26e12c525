#pragma once

#include "DailyNote.h"
#include "DocumentText.h"
#include "Pithwise.h"
#include "ScreenGrab.h"

#include <QCoroTask>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

class Pasteboard;

/// What AppState works with. Text is valid UTF-8. What blocks is called on a thread of its own and
/// several times at once, all else on the main thread. Errors are exceptions whose sentence is fit
/// to be shown.
struct AppServices
{
    /// The text of a file. Blocks.
    std::function<DocumentText(const std::filesystem::path&)> readDocument;
    /// The text on the screen. Blocks.
    std::function<std::string(ScreenGrab::Kind)> captureText;
    /// The plain text on the clipboard, if there is any. Throws where its owner does not answer.
    /// Blocks, because the program that has it may be this one.
    std::function<std::optional<std::string>()> clipboardText;
    /// The reader text of the page at an address as the user typed it.
    std::function<QCoro::Task<std::string>(std::string)> fetchPage;
    /// The text selected in the application in front, if any. Throws nothing.
    std::function<QCoro::Task<std::optional<std::string>>()> grabSelection;
    /// Whether the screen may be captured, without asking the user.
    std::function<bool()> mayCaptureScreen;
    std::function<bool()> isModelReady;
    /// Makes the summaries. Blocks.
    Pithwise::Generate generate;
    /// Where summaries are copied to; contents written there may last as long as it does.
    std::shared_ptr<Pasteboard> pasteboard;
    std::function<void(const std::filesystem::path&, const DailyNote::Entry&, const QDateTime&)>
        appendToNote;
    /// The user's folder for documents. Throws where there is none to be had.
    std::function<std::filesystem::path()> documentsFolder;
    std::function<QDateTime()> now;
    /// Calls the function after so long.
    std::function<void(std::chrono::milliseconds, std::function<void()>)> later;

    /// The real ones. Documents are read by another process of the running program, which must
    /// know DocumentProcess::command. Main thread, with an application object.
    static AppServices system();
};
