#pragma once

#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "TemporaryFolder.h"

/// While it lives, the C library writes and reads numbers with "," as the decimal separator. The
/// locale is made here, in the form in which the GNU C library loads one, so that a test need not
/// hope for one on the machine; `IsSet` tells whether the library took it.
class CommaLocale {
 public:
  CommaLocale() {
    before_ = std::setlocale(LC_NUMERIC, nullptr);
    const char* const path = std::getenv("LOCPATH");
    hadPath_ = path != nullptr;
    if (hadPath_) path_ = path;
    std::filesystem::create_directory(folder_.Path() / "comma");
    folder_.Write("comma/LC_NUMERIC", CategoryFile());
    ::setenv("LOCPATH", folder_.Path().c_str(), 1);
    isSet_ = std::setlocale(LC_NUMERIC, "comma") != nullptr && std::strtod("1,5", nullptr) == 1.5;
  }
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;
  ~CommaLocale() {
    if (hadPath_) {
      ::setenv("LOCPATH", path_.c_str(), 1);
    } else {
      ::unsetenv("LOCPATH");
    }
    std::setlocale(LC_NUMERIC, before_.c_str());
  }
  bool IsSet() const { return isSet_; }

 private:
  /// A magic number, the number of items, their offsets, the items, each at a multiple of 4.
  static std::string CategoryFile() {
    constexpr std::uint32_t magic = 0x20031115u ^ static_cast<std::uint32_t>(LC_NUMERIC);
    // Separator and thousands, as bytes and then, after the grouping, as characters; the charset.
    using namespace std::string_view_literals;
    constexpr std::string_view items[] = {",\0"sv,     "\0"sv,       "\0"sv,
                                          ",\0\0\0"sv, "\0\0\0\0"sv, "UTF-8\0"sv};
    std::string head;
    std::string data;
    const auto append = [&head](std::size_t number) {
      const auto word = static_cast<std::uint32_t>(number);
      head.append(reinterpret_cast<const char*>(&word), sizeof word);
    };
    append(magic);
    append(std::size(items));
    for (const std::string_view item : items) {
      append((2 + std::size(items)) * sizeof(std::uint32_t) + data.size());
      data.append(item);
      data.resize((data.size() + 3) / 4 * 4);
    }
    return head + data;
  }

  TemporaryFolder folder_;
  std::string before_;
  std::string path_;
  bool hadPath_ = false;
  bool isSet_ = false;
};
