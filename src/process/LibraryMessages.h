#pragma once

#include <cstdio>

/// While alive, keeps what libraries print about damaged input off the standard error stream; the
/// program says it in its own words. Main thread, while no other runs.
class LibraryMessages
{
public:
    LibraryMessages();
    ~LibraryMessages();
    LibraryMessages(const LibraryMessages&) = delete;
    LibraryMessages& operator=(const LibraryMessages&) = delete;

private:
    std::FILE* m_standardError;
    std::FILE* m_nowhere; // null where it could not be opened, and then nothing is kept off
};
