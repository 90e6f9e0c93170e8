#pragma once

// The tests are compiled without sanitizers, and only the runtime that they are linked with tells.
extern "C" [[gnu::weak]] void __asan_init();  // NOLINT(bugprone-reserved-identifier)
extern "C" [[gnu::weak]] void __tsan_init();  // NOLINT(bugprone-reserved-identifier)

/// Whether the library that is tested runs under sanitizers, which take memory and time of their
/// own.
inline const bool kIsSanitized = &__asan_init != nullptr || &__tsan_init != nullptr;
