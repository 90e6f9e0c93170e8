#pragma once

#include <cstddef>

/// How many checks have failed on this thread: whoever has others work for it learns from two
/// counts whether they had something to report.
std::size_t VyrReportCount() noexcept;
