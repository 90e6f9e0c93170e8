#include "StdPath.h"

#include "VyrToken.h"

namespace {

constexpr char kSeparator = '.';

}  // namespace

StdPath::StdPath(VyrUnicodeView path) {
  VyrToken tokens(path, kSeparator);
  std::string_view token;
  while (tokens.Next(token)) components_.emplace_back(token);
  // The call that signals the end delivers the empty last component.
  components_.emplace_back(token);
}

unsigned int StdPath::GetLength() const {
  return static_cast<unsigned int>(components_.size());
}

VyrUnicodeString StdPath::operator[](int i) const {
  const bool isInside = i >= 1 && i <= static_cast<int>(components_.size());
  return isInside ? components_[static_cast<std::size_t>(i - 1)] : VyrUnicodeString();
}
