#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "TemporaryFolder.h"
#include "VyrDifTransientStandard.h"

using TransientStandard = VyrVar<VyrDifTransientStandard>;

/// The text of a standard file whose document element holds `content`.
inline std::string StandardText(const std::string& content) {
  return "<?xml version='1.0' encoding='UTF-8'?>\n"
         "<std:node xmlns:std='http://schemas.hol-standard.example/drafting/std'"
         " name='drafting'>\n" +
         content + "\n</std:node>\n";
}

/// A standard whose document element holds `content`. Its file is gone once it is read.
inline TransientStandard StandardOf(const std::string& content, const char* name = "Test") {
  const TemporaryFolder folder;
  const std::string file = folder.Write("standard.xml", StandardText(content));
  return TransientStandard(new VyrDifTransientStandard(file, name));
}

/// A standard that is shipped with the library, by the name of its file.
inline TransientStandard ShippedStandard(const std::string& file) {
  return TransientStandard(
      new VyrDifTransientStandard(std::string(HOL_STANDARDS "/") + file + ".xml", file));
}

/// A UTF-16 text that was handed out, as UTF-8; frees it.
inline std::string Taken(unsigned short* text) {
  const std::unique_ptr<unsigned short[]> owned(text);
  return text == nullptr ? "null" : VyrUnicodeString(text).CString();
}

/// A text in UTF-16, as operations of styles take it.
class Utf16 {
 public:
  Utf16(const char* text) : text_(VyrUnicodeString(text).NewUtf16Copy()) {}  // NOLINT
  operator const unsigned short*() const { return text_.get(); }             // NOLINT

 private:
  std::unique_ptr<unsigned short[]> text_;
};

/// Number of references to an object.
template <class Counted>
unsigned long CountOf(Counted& object) {
  object.AddRef();
  return object.Release();
}

/// The strings of a path, or none when they cannot be read.
template <class Object>
std::vector<std::string> TextsOf(Object& object, const char* path) {
  VyrUnicodeString* values = nullptr;
  int count = 0;
  if (object.GetValue(path, &values, &count) != S_OK) return {};
  const std::unique_ptr<VyrUnicodeString[]> owned(values);
  std::vector<std::string> texts;
  for (int i = 0; i < count; ++i) texts.emplace_back(values[i].View());
  return texts;
}

/// The numbers of a path, or none when they cannot be read.
template <class Number, class Object>
std::vector<Number> NumbersOf(Object& object, const char* path) {
  std::vector<Number> numbers(10000);
  int count = 0;
  if (object.GetValue(path, numbers.data(), &count) != S_OK) return {};
  numbers.resize(static_cast<std::size_t>(count));
  return numbers;
}
