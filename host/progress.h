// One line on standard error that says what the program is doing, and goes away at the end.
#ifndef QBREPORT_PROGRESS_H
#define QBREPORT_PROGRESS_H

#include <cstddef>
#include <string>

class Progress {
public:
    /// Shows nothing when `visible` is false.
    explicit Progress(bool visible) : m_visible(visible) {}
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Replaces the line: step `step` of `stepCount`, and its name.
    void Show(std::size_t step, std::size_t stepCount, const char* name);

private:
    void Replace(const std::string& line);

    bool m_visible;
    std::size_t m_shownLength = 0;
};

#endif
