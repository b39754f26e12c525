#include "DailyNote.h"

#include "ControlCharacters.h"
#include "NoteDate.h"
#include "NoteFile.h"

#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace DailyNote {

/// The label as a heading: what would end the heading or change its writing direction becomes a
/// space.
static std::string headingOf(const QString& label)
{
    constexpr std::array<std::string_view, 2> separators = {"\u2028", "\u2029"};
    const std::string written = label.isEmpty() ? "Summary" : label.toStdString();
    std::string heading;
    for (std::string_view rest = written; !rest.empty();) {
        std::size_t replaced = ControlCharacters::lengthAt(rest);
        for (const std::string_view separator : separators) {
            if (rest.starts_with(separator))
                replaced = separator.size();
        }
        heading += replaced > 0 ? ' ' : rest[0];
        rest.remove_prefix(replaced > 0 ? replaced : 1);
    }
    return heading;
}

static std::string textOf(const Entry& entry, const std::string& time)
{
    return "## " + time + " — " + headingOf(entry.label) + " (" +
           std::string(rawValue(entry.mode)) + ")\n\n" + entry.output.toStdString() + "\n\n";
}

/// Makes the folder if it is missing. A new one is for the user alone, because notes may be
/// private.
static void makeFolder(const std::filesystem::path& folder)
{
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
        throw std::system_error(errno, std::generic_category());
}

void append(const std::filesystem::path& documents, const Entry& entry, const QDateTime& now)
{
    const std::string day = NoteDate::day(now);
    const std::string text = textOf(entry, NoteDate::time(now));
    try {
        const std::filesystem::path folder = documents / "Pithwise Notes";
        std::filesystem::create_directories(documents);
        makeFolder(folder);
        NoteFile::append(folder / (day + ".md"), "# Summaries — " + day + "\n\n", text);
    } catch (const std::system_error& error) {
        // The error's own text also names functions and paths.
        throw std::runtime_error(error.code().message() + ".");
    }
}

} // namespace DailyNote
