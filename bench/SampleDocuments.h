#pragma once

#include <array>
#include <string>

/// A standard file of a certain size, made of the shipped ISO standard's content.
struct SampleDocument {
  std::string name;  // as benchmarks are called after it
  std::string path;
  std::string text;
};

/// About 150 KB and about 12 MB.
const std::array<SampleDocument, 2>& SampleDocuments();

/// The shipped ISO standard, and one of about 12 MB in which the paths of the shipped one find the
/// same: all it has more are branches under other names.
const std::array<SampleDocument, 2>& QueryDocuments();
