#pragma once

/// While it lives, OpenMP starts no threads for the thread that has made it. Tesseract's loops are
/// so short that its threads mostly wait for each other, which takes many times as long; OpenMP's
/// environment variables are read before main(), and Tesseract overrides the number of threads.
/// Destroyed on the same thread.
class OneThread
{
public:
    OneThread();
    ~OneThread();
    OneThread(const OneThread&) = delete;
    OneThread& operator=(const OneThread&) = delete;

private:
    int m_levels = 0;
};
