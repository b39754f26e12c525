#pragma once

#include "Screenshot.h"

#include <fstream>
#include <functional>
#include <string>
#include <utility>
#include <vector>

/// Stands in for the system's screenshots: records what is asked of it and writes what it is told.
class RecordingScreenshot : public Screenshot
{
public:
    /// What every `take` does with the file's name; by default it writes a few bytes there.
    using Take = std::function<bool(const std::filesystem::path&)>;

    RecordingScreenshot() : RecordingScreenshot(writeFile) {}
    explicit RecordingScreenshot(Take take) : m_take(std::move(take)) {}

    static bool writeFile(const std::filesystem::path& file)
    {
        std::ofstream(file) << "picture";
        return true;
    }

    bool takeScreen(const std::filesystem::path& file) override { return take("screen", file); }
    bool takeWindow(std::uint32_t id, const std::filesystem::path& file) override
    {
        return take("window " + std::to_string(id), file);
    }
    bool takeSelection(const std::filesystem::path& file) override
    {
        return take("selection", file);
    }
    void cancelSelection() override { m_calls.emplace_back("cancel"); }

    /// "screen", "window 7", "selection", "cancel".
    const std::vector<std::string>& calls() const { return m_calls; }
    const std::vector<std::filesystem::path>& files() const { return m_files; }

private:
    bool take(const std::string& call, const std::filesystem::path& file)
    {
        m_calls.push_back(call);
        m_files.push_back(file);
        return m_take(file);
    }

    Take m_take;
    std::vector<std::string> m_calls;
    std::vector<std::filesystem::path> m_files;
};
