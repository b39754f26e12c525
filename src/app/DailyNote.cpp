#include "DailyNote.h"

#include "NoteDate.h"
#include "NoteFile.h"

#include <stdexcept>
#include <string>
#include <system_error>

namespace DailyNote {

static std::string headerOf(const std::string& day)
{
    return "# Summaries — " + day + "\n\n";
}

static std::string textOf(const Entry& entry, const std::string& time)
{
    std::string text = "## " + time + " — ";
    text += entry.label.isEmpty() ? "Summary" : entry.label.toStdString();
    text += " (";
    text += rawValue(entry.mode);
    text += ")\n\n";
    text += entry.output.toStdString();
    text += "\n\n";
    return text;
}

void append(const std::filesystem::path& documents, const Entry& entry, const QDateTime& now)
{
    const std::string day = NoteDate::day(now);
    const std::string text = textOf(entry, NoteDate::time(now));
    try {
        const std::filesystem::path folder = documents / "Pithwise Notes";
        std::filesystem::create_directories(folder);
        NoteFile::append(folder / (day + ".md"), headerOf(day), text);
    } catch (const std::system_error& error) {
        // Its own text names functions and paths besides the cause.
        throw std::runtime_error(error.code().message() + ".");
    }
}

} // namespace DailyNote
