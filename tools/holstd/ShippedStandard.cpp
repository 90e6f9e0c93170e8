#include "ShippedStandard.h"

#include "Failure.h"
#include "Format.h"
#include "StandardFiles.h"
#include "VyrDftStandardServices.h"
#include "VyrListValVyrUnicodeString.h"

ShippedStandard::ShippedStandard(const std::string& parent) {
  if (parent.empty()) {
    problem_ = "the standard does not say its parent standard";
    return;
  }
  VyrListValVyrUnicodeString names;
  VyrDftStandardServices::ListOOTBStandards(names);
  for (const VyrUnicodeString& name : names) {
    if (name.View().find(parent) == std::string_view::npos) continue;
    if (Read(std::string(name.View()), parent)) return;
  }
  if (problem_.empty()) {
    problem_ = "there is no shipped standard of the parent standard " + Quoted(parent);
  }
}

bool ShippedStandard::Read(const std::string& name, const std::string& parent) {
  const std::optional<std::string> file = FindStandardFile(name);
  if (!file) return false;
  try {
    auto standard = std::make_unique<Standard>(ReadStandard(*file));
    if (standard->parent != parent) return false;
    standard_ = std::move(standard);
  } catch (const Failure& failure) {
    problem_ = failure.place + ": " + failure.text;
    return false;
  }
  items_ = std::make_unique<StandardItems>(standard_->document);
  name_ = name;
  problem_.clear();
  return true;
}

std::optional<StandardPlace> ShippedStandard::CounterpartOf(const StandardItems& items,
                                                            const StandardPlace& place) const {
  std::vector<StandardItems::Index> chain;
  StandardItems::Index item = place.item;
  for (; item >= StandardItems::kTops; item = items[item].parent) chain.push_back(item);
  StandardItems::Index answer = item;  // the trees are the same
  for (auto at = chain.rbegin(); at != chain.rend(); ++at) {
    answer = FindCounterpart(items, *at, *items_, answer);
    if (answer == StandardItems::kNone) return std::nullopt;
  }
  if (!place.value) return StandardPlace{answer, {}};
  const auto value = FindCounterpartOfValue(items, place, *items_, answer);
  if (!value) return std::nullopt;
  return StandardPlace{answer, value};
}
