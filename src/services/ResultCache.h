#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

/// Values that queries have found, by path and 1-based index. Looking one up makes no text.
template <class Value>
class ScalarCache {
 public:
  /// Borrowed until the next `Store`; null when nothing is stored there.
  const Value* Find(std::string_view path, int index) const {
    const auto found = values_.find(Place{path, index});
    return found == values_.end() ? nullptr : &found->second;
  }
  void Store(std::string_view path, int index, Value value) {
    values_.insert_or_assign(Key{std::string(path), index}, std::move(value));
  }

 private:
  struct Place {
    std::string_view path;
    int index;
    friend bool operator==(const Place&, const Place&) = default;
  };
  struct Key {
    std::string path;
    int index;
    operator Place() const { return {path, index}; }  // NOLINT(google-explicit-constructor)
  };
  struct Hash {
    using is_transparent = void;
    // Without `noexcept` the library keeps the hash beside the key and compares that first.
    std::size_t operator()(const Place& place) const {
      return std::hash<std::string_view>()(place.path) + static_cast<std::size_t>(place.index);
    }
  };
  struct Equal {
    using is_transparent = void;
    bool operator()(const Place& a, const Place& b) const { return a == b; }
  };

  std::unordered_map<Key, Value, Hash, Equal> values_;
};

/// All values that a path finds, by path.
template <class Value>
class ArrayCache {
 public:
  /// Borrowed until the next `Store`; null when nothing is stored there.
  const std::vector<Value>* Find(std::string_view path) const {
    const auto found = values_.find(path);
    return found == values_.end() ? nullptr : &found->second;
  }
  const std::vector<Value>& Store(std::string_view path, std::vector<Value> values) {
    return values_.insert_or_assign(std::string(path), std::move(values)).first->second;
  }

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view path) const {
      return std::hash<std::string_view>()(path);
    }
  };

  std::unordered_map<std::string, std::vector<Value>, Hash, std::equal_to<>> values_;
};

/// What queries for one type of value have found.
template <class Value>
struct ResultCache {
  ScalarCache<Value> scalars;
  ArrayCache<Value> arrays;
};
