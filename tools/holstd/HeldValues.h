#pragma once

#include "GetAnswers.h"
#include "Standard.h"

/// Answers a path that has places in brackets. No query of the application takes them: the places
/// are found in the typed tree, and what is told is what the file holds there. Throws `Failure`.
ExitStatus PrintHeldValues(const GetOptions& options, Standard& standard, GetAnswers& answers);
