#pragma once

#include <span>

// Tags of the symbols that steps of the upgrade append, by the version of the step.

std::span<const char* const> SymbolsOf130();
std::span<const char* const> SymbolsOf140();
std::span<const char* const> SymbolsOf220();
