#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cctype>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <locale>
#include <stdexcept>

#include "VyrInstanceCounter.h"

/// Number of objects that tests did not give back; each kind is named on standard error.
static long CountLostObjects() {
  long lost = 0;
  VyrInstanceCounter::ForEach([&](const VyrInstanceCounter& counter) {
    if (counter.GetLive() == 0) return;
    std::fprintf(stderr, "%s: %ld objects are still alive\n", counter.GetName(), counter.GetLive());
    lost += counter.GetLive();
  });
  return lost;
}

/// Takes on the locale of a host far away, if the environment names one. False when this is not
/// the one that it should be: with a decimal comma, the case rules of Turkish, and folders listed
/// in an order of their own.
static bool GoElsewhere() {
  const char* const name = std::getenv("HOL_TEST_LOCALE");
  if (name == nullptr) return true;
  try {
    std::locale::global(std::locale(name));  // and that of the C library
  } catch (const std::runtime_error&) {
    return false;
  }
  return std::strtod("1,5", nullptr) == 1.5 && std::toupper('i') != 'I' &&
         ::dlsym(RTLD_DEFAULT, "hol_folders_are_reversed") != nullptr;
}

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (!GoElsewhere()) {
    std::fprintf(stderr, "the environment is not the one that HOL_TEST_LOCALE asks for\n");
    return 2;
  }
  const int result = RUN_ALL_TESTS();
  return CountLostObjects() != 0 ? 1 : result;
}
