#pragma once

#include "TallyfoxCore/Usage/HistoryLines.h"
#include "TallyfoxCore/Usage/UsageSample.h"

#include <vector>

namespace tallyfox {

/// Reads one history file of an assistant after the other. What it learns about the way records are written serves for
/// all of them; the samples of a file depend on that file alone.
class HistoryParser {
public:
    virtual ~HistoryParser() = default;

    /// Appends the samples of `lines`, which are those of one file.
    virtual void parse(const HistoryLines& lines, std::vector<UsageSample>& samples) = 0;
};

} // namespace tallyfox
