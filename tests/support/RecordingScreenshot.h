#pragma once

#include "Screenshot.h"

#include <sys/mman.h>

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Stands in for the system's screenshots: records what is asked of it and gives what it is told.
class RecordingScreenshot : public Screenshot
{
public:
    using Take = std::function<std::optional<FileDescriptor>()>;

    static constexpr std::string_view content = "picture";

    /// By default each `take` gives a file with `content`.
    RecordingScreenshot() : RecordingScreenshot(file) {}
    explicit RecordingScreenshot(Take take) : m_take(std::move(take)) {}

    static std::optional<FileDescriptor> file()
    {
        FileDescriptor file(::memfd_create("picture", MFD_CLOEXEC));
        if (::write(file.value(), content.data(), content.size()) < 0)
            return std::nullopt;
        return file;
    }

    std::optional<FileDescriptor> takeScreen() override { return take("screen"); }
    std::optional<FileDescriptor> takeWindow(std::uint32_t id) override
    {
        return take("window " + std::to_string(id));
    }
    std::optional<FileDescriptor> takeRegion() override { return take("region"); }
    void cancelRegion() override { m_calls.emplace_back("cancel"); }

    /// "screen", "window 7", "region", "cancel".
    const std::vector<std::string>& calls() const { return m_calls; }

private:
    std::optional<FileDescriptor> take(const std::string& call)
    {
        m_calls.push_back(call);
        return m_take();
    }

    Take m_take;
    std::vector<std::string> m_calls;
};
