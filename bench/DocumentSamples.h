#pragma once

#include <cstddef>
#include <filesystem>

/// Writes the documents that are measured: always the same for the same size.
namespace DocumentSamples {

/// A PDF of `pages` pages of prose with an embedded font. Needs a QGuiApplication.
void writePdf(const std::filesystem::path& file, int pages);

/// A scan of `pages` dense pages of prose (A4 at 144 dots an inch). Needs a QGuiApplication.
void writeScan(const std::filesystem::path& file, int pages);

/// A word processor's document whose main part has about `bytes` bytes of XML; returns how many.
std::size_t writeDocx(const std::filesystem::path& file, std::size_t bytes);

/// An RTF document of about `bytes` bytes; returns how many.
std::size_t writeRtf(const std::filesystem::path& file, std::size_t bytes);

/// ASCII prose, or as many letters of Latin-1 that take twice the space in UTF-8.
void writeText(const std::filesystem::path& file, std::size_t bytes, bool isLatin1);

} // namespace DocumentSamples
