#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

/// Pictures of the user's screen as PNG files that are new and readable by the user alone.
///
/// Each `take` blocks, may be called from any thread and returns whether it wrote `file`; where it
/// did not, or threw, there is no file. Each throws std::runtime_error with a sentence for the user
/// when there was a picture that could not be written.
class Screenshot
{
public:
    virtual ~Screenshot() = default;

    /// All monitors, without the pointer. False where the system refuses.
    virtual bool takeScreen(const std::filesystem::path& file) = 0;

    /// The window that WindowList knows as `id`, without title bar and shadow. False also when it
    /// is gone.
    virtual bool takeWindow(std::uint32_t id, const std::filesystem::path& file) = 0;

    /// The rectangle that the user drags out, of the screen as it was at the call. False when the
    /// user cancels, and at once while another selection is under way. Shows its size only in a
    /// process with a QGuiApplication.
    virtual bool takeSelection(const std::filesystem::path& file) = 0;

    /// Cancels the selection of this object that is under way, else the next one. Any thread.
    virtual void cancelSelection() = 0;

    /// The system's way; one that always refuses where there is none.
    static std::unique_ptr<Screenshot> create();

protected:
    Screenshot() = default;
    Screenshot(const Screenshot&) = default;
    Screenshot& operator=(const Screenshot&) = default;
};
