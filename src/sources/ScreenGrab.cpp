#include "ScreenGrab.h"

#include "AppError.h"
#include "OCR.h"
#include "ScreenPermission.h"
#include "Screenshot.h"
#include "WindowList.h"

#include <QDir>
#include <QFile>
#include <QUuid>

#include <unistd.h>

namespace ScreenGrab {

namespace {

/// A name for a picture in the user's temporary folder. A file of that name is gone in the end.
class TemporaryPicture
{
public:
    TemporaryPicture()
    {
        const QString id = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
        const QString path = QDir(QDir::tempPath()).filePath("pithwise-" + id + ".png");
        m_path = QFile::encodeName(path).toStdString();
    }
    ~TemporaryPicture()
    {
        std::error_code ignored; // it may never have been there
        std::filesystem::remove(m_path, ignored);
    }
    TemporaryPicture(const TemporaryPicture&) = delete;
    TemporaryPicture& operator=(const TemporaryPicture&) = delete;

    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

/// Too small to hold text worth reading: tool palettes, floating buttons.
constexpr double smallSide = 120; // points

bool isEligible(const WindowList::Window& window)
{
    return window.layer == 0 && window.owner != ::getpid() && window.opacity > 0 &&
           window.width > smallSide && window.height > smallSide;
}

bool takeFrontWindow(const Tools& tools, const std::filesystem::path& file)
{
    const std::optional<std::uint32_t> window = frontWindowID(tools.windowList);
    if (!window)
        throw AppError("No window found to capture.");
    return tools.screenshot.takeWindow(*window, file);
}

/// Throws AppError unless the picture was taken.
void take(Kind kind, const Tools& tools, const std::filesystem::path& file)
{
    if (kind == Kind::selection) {
        if (!tools.screenshot.takeSelection(file))
            throw AppError("Capture cancelled.");
        return;
    }
    const bool isTaken =
        kind == Kind::window ? takeFrontWindow(tools, file) : tools.screenshot.takeScreen(file);
    if (!isTaken)
        throw AppError("Capture failed. Allow Screen Recording for this app in System Settings → "
                       "Privacy & Security.");
}

} // namespace

std::optional<std::uint32_t> frontWindowID(WindowList& windowList)
{
    for (const WindowList::Window& window : windowList.windows()) {
        if (isEligible(window))
            return window.id;
    }
    return std::nullopt;
}

std::optional<std::uint32_t> frontWindowID()
{
    return frontWindowID(*WindowList::create());
}

std::string captureText(Kind kind, const Tools& tools)
{
    // Without the permission the attempt is made all the same: it may be given meanwhile.
    if (kind != Kind::selection && !tools.permission.isGranted())
        tools.permission.request();
    const TemporaryPicture picture;
    take(kind, tools, picture.path());
    return tools.recognize(picture.path());
}

std::string captureText(Kind kind)
{
    const auto windowList = WindowList::create();
    const auto screenshot = Screenshot::create();
    const auto permission = ScreenPermission::create();
    return captureText(kind,
                       {*windowList, *screenshot, *permission,
                        [](const std::filesystem::path& file) { return OCR::recognize(file); }});
}

} // namespace ScreenGrab
