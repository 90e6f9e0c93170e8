#pragma once

/// Prints what the typed tree of each sample document occupies beside libxml2's document.
void PrintMemoryRatios();
