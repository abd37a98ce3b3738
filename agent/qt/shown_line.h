#pragma once

#include <QString>
#include <vector>

#include "agent/speech_text.h"

namespace agent {

/// A line as a window can draw it: without control characters, a line separator for each line end.
struct ShownLine {
    QString text;
    std::vector<qsizetype> wordEnds;  ///< how far `text` reaches with each word of the line
};

/// Reads the shown text of a line: UTF-8, or else Windows-1252.
ShownLine toShown(const SpokenLine& line);

}  // namespace agent
