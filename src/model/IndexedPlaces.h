#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <tuple>
#include <utility>

#include "VyrAnnStandardXMLNode.h"

/// Whoever has to hear when an item of a list takes another key.
class VyrKeyListener {
 public:
  VyrKeyListener() = default;
  VyrKeyListener(const VyrKeyListener&) = delete;
  VyrKeyListener& operator=(const VyrKeyListener&) = delete;
  virtual ~VyrKeyListener() = default;

  /// @{
  /// The item that the listener knows by this number is about to take another key, and has taken
  /// it. Neither asks for memory.
  virtual void KeyChanges(std::uint32_t item) = 0;
  virtual void KeyChanged(std::uint32_t item) = 0;
  /// @}
};

/// The places of one item that stands at several places of indexed lists.
class VyrSeveralPlaces final : public VyrKeyListener {
 public:
  using Place = std::pair<VyrKeyListener*, std::uint32_t>;

  void KeyChanges(std::uint32_t) override {
    for (const auto& [listener, item] : places) listener->KeyChanges(item);
  }
  void KeyChanged(std::uint32_t) override {
    for (const auto& [listener, item] : places) listener->KeyChanged(item);
  }

  std::set<Place> places;
};

/// Keeps, in the items, who listens to them. Most items stand at one place and know it by
/// themselves; one with several has them kept apart.
struct VyrIndexedPlaces {
  template <class Item>
  static void Add(Item& item, VyrKeyListener& listener, std::uint32_t number) {
    if (item.listener_ == nullptr) {
      item.listener_ = &listener;
      item.listenedAs_ = number;
    } else if (item.listenedAs_ == kSeveral) {
      Several(item).places.emplace(&listener, number);
    } else {
      auto several = std::make_unique<VyrSeveralPlaces>();
      several->places = {{item.listener_, item.listenedAs_}, {&listener, number}};
      item.listener_ = several.release();
      item.listenedAs_ = kSeveral;
    }
  }

  /// Gives an item another key, which `key` holds.
  template <class Item>
  static void Change(Item& item, VyrUnicodeString& key, VyrUnicodeView text) {
    if (item.listener_ == nullptr) {
      key = text;
      return;
    }
    VyrUnicodeString changed(text);
    item.listener_->KeyChanges(item.listenedAs_);
    key = std::move(changed);
    item.listener_->KeyChanged(item.listenedAs_);
  }

  template <class Item>
  static void Remove(Item& item, VyrKeyListener& listener, std::uint32_t number) {
    if (item.listenedAs_ != kSeveral) {
      item.listener_ = nullptr;
      return;
    }
    VyrSeveralPlaces& several = Several(item);
    several.places.erase({&listener, number});
    if (several.places.size() > 1) return;
    const std::unique_ptr<VyrSeveralPlaces> last(&several);
    std::tie(item.listener_, item.listenedAs_) = *several.places.begin();
  }

 private:
  static constexpr std::uint32_t kSeveral = ~std::uint32_t{0};

  template <class Item>
  static VyrSeveralPlaces& Several(Item& item) {
    return static_cast<VyrSeveralPlaces&>(*item.listener_);
  }
};
