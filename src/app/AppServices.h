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

/// Everything outside that AppState works with. Text is valid UTF-8. Functions that block are
/// called on threads of their own, several at once; all others are called on the main thread.
/// Errors are exceptions whose text is a sentence fit to be shown.
struct AppServices
{
    /// The text of a file. Blocks.
    std::function<DocumentText(const std::filesystem::path&)> readDocument;
    /// The text on the screen. Blocks.
    std::function<std::string(ScreenGrab::Kind)> captureText;
    /// The plain text on the clipboard, if there is any. Throws if the program that owns the
    /// clipboard does not answer. Blocks, because that program may be this one.
    std::function<std::optional<std::string>()> clipboardText;
    /// The reader text of the web page at an address, which is given as the user typed it.
    std::function<QCoro::Task<std::string>(std::string)> fetchPage;
    /// The text selected in the application in front, if any. Throws nothing.
    std::function<QCoro::Task<std::optional<std::string>>()> grabSelection;
    /// Whether the screen may be captured, without asking the user.
    std::function<bool()> mayCaptureScreen;
    std::function<bool()> isModelReady;
    /// Makes the summaries. Blocks.
    Pithwise::Generate generate;
    /// Summaries are copied to it. What was copied may last only as long as this object.
    std::shared_ptr<Pasteboard> pasteboard;
    std::function<void(const std::filesystem::path&, const DailyNote::Entry&, const QDateTime&)>
        appendToNote;
    /// The user's folder for documents. Throws if there is no such folder.
    std::function<std::filesystem::path()> documentsFolder;
    std::function<QDateTime()> now;
    /// Calls the function once, after this time.
    std::function<void(std::chrono::milliseconds, std::function<void()>)> later;

    /// The services of the real system. Documents are read by another process of the running
    /// program, which must know DocumentProcess::command. Main thread, with an application object.
    static AppServices system();
};
