#pragma once

/// While alive, keeps OpenMP from starting threads for the thread that made this object.
/// Tesseract's loops are so short that its threads mostly wait for each other, which takes many
/// times as long. There is no simpler way: OpenMP reads its environment variables before main(),
/// and Tesseract overrides the number of threads. Destroyed on the thread that made it.
class SingleThreadedOpenMP
{
public:
    SingleThreadedOpenMP();
    ~SingleThreadedOpenMP();
    SingleThreadedOpenMP(const SingleThreadedOpenMP&) = delete;
    SingleThreadedOpenMP& operator=(const SingleThreadedOpenMP&) = delete;

private:
    void (*m_setLevels)(int); // null without OpenMP
    int m_levels = 0;
};
