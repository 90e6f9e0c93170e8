#pragma once

#include <map>
#include <utility>

#include "VyrUnicodeString.h"

/// A small table of texts by name.
class VyrOmxKeyValueBlock {
 public:
  /// Stores or replaces a value. False, and nothing is stored, for an empty key.
  bool Set(const VyrUnicodeString& key, VyrUnicodeString value) {
    if (key.IsEmpty()) return false;
    values_.insert_or_assign(key, std::move(value));
    return true;
  }
  /// The value of a key, borrowed until the table changes; null when there is none.
  const VyrUnicodeString* Find(const VyrUnicodeString& key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? nullptr : &found->second;
  }

 private:
  std::map<VyrUnicodeString, VyrUnicodeString> values_;
};
