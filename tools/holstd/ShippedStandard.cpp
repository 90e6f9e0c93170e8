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
  const std::optional<std::string> file = FindShippedFile(name);
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
  counterparts_ = std::make_unique<Counterparts>(*items_);
  name_ = name;
  problem_.clear();
  return true;
}
