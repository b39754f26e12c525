// Measures how fast documents become text and what memory that takes.

#include "DocumentReader.h"
#include "DocumentSamples.h"
#include "Figure.h"
#include "ResultRow.h"

#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <functional>
#include <stdexcept>
#include <vector>

namespace {

constexpr int rounds = 9;
constexpr double megabyte = 1e6;

/// Reads a document and makes sure that there was something to read.
void read(const std::filesystem::path& file)
{
    if (DocumentReader::read(file).size() < 1000)
        throw std::runtime_error("There is no text in " + file.string());
}

bool runPdftotext(const std::filesystem::path& file)
{
    QProcess process;
    process.setProgram(QStringLiteral("pdftotext"));
    process.setArguments({QString::fromStdString(file.string()), QStringLiteral("-")});
    process.start();
    return process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0 && process.readAllStandardOutput().size() > 1000;
}

/// Both take turns, so that what else the machine does falls on both.
void comparePdf(const std::filesystem::path& folder)
{
    constexpr int pages = 200;
    constexpr double mostRatio = 2;
    const std::filesystem::path file = folder / "prose.pdf";
    DocumentSamples::writePdf(file, pages);
    if (!runPdftotext(file)) {
        std::cerr << "bench: no pdftotext to compare with\n";
        return;
    }
    read(file);
    std::vector<double> ours;
    std::vector<double> theirs;
    for (int round = 0; round < rounds; ++round) {
        ours.push_back(Figure::seconds([&file] { read(file); }));
        theirs.push_back(Figure::seconds([&file] { runPdftotext(file); }));
    }
    const double ratio = Figure::median(ours) / Figure::median(theirs);
    ResultRow::print("PDF of 200 pages", Figure::fixed(Figure::median(ours) * 1e3, 0) + " ms");
    ResultRow::print("pdftotext, PDF of 200 pages",
                     Figure::fixed(Figure::median(theirs) * 1e3, 0) + " ms");
    ResultRow::print("PDF / pdftotext", Figure::fixed(ratio, 2), "<= 2", ratio <= mostRatio);
}

void measureRate(std::string_view what, const std::filesystem::path& file, std::size_t bytes)
{
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round)
        times.push_back(Figure::seconds([&file] { read(file); }));
    ResultRow::print(
        what,
        Figure::fixed(static_cast<double>(bytes) / Figure::median(times) / megabyte, 0) + " MB/s");
}

/// The peak of a process that does `action`, in bytes.
double peakMemory(const std::function<void()>& action)
{
    const pid_t child = ::fork();
    if (child == 0) {
        action();
        ::_exit(0);
    }
    int status = 0;
    rusage usage = {};
    if (child < 0 || ::wait4(child, &status, 0, &usage) != child || status != 0)
        throw std::runtime_error("The process whose memory is measured failed.");
    return static_cast<double>(usage.ru_maxrss) * 1024;
}

void measureMemory(const std::filesystem::path& folder)
{
    constexpr std::size_t bytes = 100'000'000;
    constexpr double mostTimes = 4;
    for (const bool isLatin1 : {false, true}) {
        const std::filesystem::path file = folder / "prose.txt";
        DocumentSamples::writeText(file, bytes, isLatin1);
        // What the process has before it reads is in both.
        const double before = peakMemory([] {});
        const double after = peakMemory([&file] { read(file); });
        const double times = (after - before) / static_cast<double>(bytes);
        ResultRow::print(isLatin1 ? "memory for 100 MB of Latin-1" : "memory for 100 MB of UTF-8",
                         Figure::fixed(times, 2) + " x", "<= 4 x", times <= mostTimes);
    }
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QTemporaryDir temporary;
    const std::filesystem::path folder = temporary.path().toStdString();
    measureMemory(folder);
    comparePdf(folder);
    constexpr std::size_t documentBytes = 20'000'000;
    const std::filesystem::path docx = folder / "prose.docx";
    measureRate("DOCX, of its XML", docx, DocumentSamples::writeDocx(docx, documentBytes));
    const std::filesystem::path rtf = folder / "prose.rtf";
    measureRate("RTF", rtf, DocumentSamples::writeRtf(rtf, documentBytes));
    return 0;
}
