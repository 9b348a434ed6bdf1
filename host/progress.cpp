#include "progress.h"

#include <algorithm>
#include <cstdio>

#include "platform.h"

Progress::~Progress() {
    if (m_shownLength > 0) {
        Replace("");
    }
}

void Progress::Show(std::size_t step, std::size_t stepCount, const char* name) {
    if (m_visible) {
        Replace("qbreport: " + std::to_string(step) + '/' + std::to_string(stepCount) + ' ' + name);
    }
}

void Progress::Replace(const std::string& line) {
    std::string text = '\r' + line;
    // The blanks cover what the line before leaves over.
    text.append(std::max(m_shownLength, line.size()) - line.size(), ' ');
    if (line.empty()) {
        text += '\r';
    }
    m_shownLength = line.size();
    static_cast<void>(WriteText(stderr, text));
}
