#include "PathNames.h"

#include <algorithm>
#include <charconv>

namespace {

bool IsNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// 0, which is no place, for one that no list reaches.
std::uint32_t PlaceOf(std::string_view digits) {
  std::uint32_t place = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), place);
  return result.ec == std::errc() ? place : 0;
}

/// What stands between the bracket at `open` and the one that ends `text`.
std::string_view Inside(std::string_view text, std::size_t open) {
  return text.substr(open + 1, text.size() - open - 2);
}

}  // namespace

PathName::PathName(std::string_view written) : text(written), name(written) {
  if (!text.ends_with(']') || text.ends_with("[]")) return;
  // A name that ends in brackets itself may have a place after them.
  const std::size_t last = text.rfind('[');
  if (last == std::string_view::npos) return;
  const bool isPlace = IsNumber(Inside(text, last));
  const std::size_t open = isPlace ? last : text.find('[');
  name = text.substr(0, open);
  if (isPlace) {
    ordinal = PlaceOf(Inside(text, open));
  } else {
    entry = Inside(text, open);
  }
}

PathName PathName::Literal(std::string_view written) {
  PathName name;
  name.text = name.name = written;
  return name;
}

std::size_t LengthOfName(std::string_view text, std::string_view separators, Cut cut) {
  const std::size_t end = std::min(text.find_first_of(separators), text.size());
  if (cut == Cut::AtEachDot || text.substr(0, end).find('[') == std::string_view::npos) return end;
  for (std::size_t close = text.find(']'); close != std::string_view::npos;
       close = text.find(']', close + 1)) {
    const std::size_t behind = close + 1;
    if (behind == text.size() || separators.find(text[behind]) != std::string_view::npos) {
      return behind;
    }
  }
  return end;
}

std::vector<PathName> NamesOf(std::string_view path, Cut cut) {
  std::vector<PathName> names;
  while (!path.empty()) {
    const std::size_t length = LengthOfName(path, ".", cut);
    const std::string_view text = path.substr(0, length);
    names.push_back(cut == Cut::AtEachDot ? PathName::Literal(text) : PathName(text));
    path.remove_prefix(std::min(length + 1, path.size()));
  }
  return names;
}
