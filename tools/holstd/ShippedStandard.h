#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Counterparts.h"
#include "Standard.h"
#include "StandardItems.h"

/// The shipped standard of the same parent standard: what a standard began as. It is the one that
/// came with the library, whatever a site has under its name.
class ShippedStandard {
 public:
  /// `parent` is the parent standard of the standard in question; empty when it does not say.
  explicit ShippedStandard(const std::string& parent);

  /// Its name; empty when there is none.
  const std::string& Name() const { return name_; }
  /// Why there is none.
  const std::string& Problem() const { return problem_; }
  const StandardItems& Items() const { return *items_; }

  /// What answers there to a place of `items`; nothing when nothing does.
  std::optional<StandardPlace> CounterpartOf(const StandardItems& items,
                                             const StandardPlace& place) const {
    return counterparts_->Of(items, place);
  }

 private:
  bool Read(const std::string& name, const std::string& parent);

  std::string name_;
  std::string problem_;
  std::unique_ptr<Standard> standard_;
  std::unique_ptr<StandardItems> items_;
  std::unique_ptr<Counterparts> counterparts_;
};
