#include "DefinedLiterals.h"

#include <vector>

#include "Format.h"
#include "Nearest.h"

DefinedLiterals::DefinedLiterals(VyrAnnStandardXMLParser& document)
    : top_(document.GetNodeWithPath("Enum")) {}

std::string DefinedLiterals::ObjectionTo(const WrittenLiteral& written) {
  const VyrAnnStandardXMLNode_var enumeration(top_->GetNodeByName(written.enumeration));
  if (!enumeration) return written.isNew ? UnknownEnumeration(written) : std::string();
  if (TextsOf(*enumeration).contains(written.literal)) return {};
  return UnknownLiteral(written, *enumeration);
}

const DefinedLiterals::Texts& DefinedLiterals::TextsOf(const Node& enumeration) {
  const auto [found, isNew] = texts_.try_emplace(&enumeration);
  if (isNew) {
    for (const auto& literal : enumeration.GetValues()) {
      found->second.insert(literal->GetValue().View());
    }
  }
  return found->second;
}

std::string DefinedLiterals::UnknownEnumeration(const WrittenLiteral& written) const {
  NearestName nearest(written.enumeration);
  for (const auto& other : top_->GetNodes()) nearest.Consider(other->GetNodeName().View());
  return "there is no enumeration " + Quoted(written.enumeration) + " to take " +
         Quoted(written.literal) + " from; " +
         (nearest.Get().empty() ? "'holstd tree FILE Enum' shows what there is"
                                : "did you mean " + Quoted(nearest.Get()) + "?");
}

std::string DefinedLiterals::UnknownLiteral(const WrittenLiteral& written,
                                            const Node& enumeration) {
  constexpr std::size_t shortList = 12;
  const Node::Values& literals = enumeration.GetValues();
  NearestName nearest(written.literal);
  for (const auto& literal : literals) nearest.Consider(literal->GetValue().View());
  std::string text =
      Quoted(written.literal) + " is no literal of the enumeration " + Quoted(written.enumeration);
  std::vector<std::string> few;
  for (const std::string& literal : nearest.GetFew()) few.push_back(Quoted(literal));
  if (!few.empty()) text += (few.size() == 1 ? "; near is " : "; near are ") + Joined(few);
  if (literals.size() > shortList) {
    return text + "; 'holstd tree FILE Enum." + written.enumeration + "' shows all " +
           std::to_string(literals.size());
  }
  std::vector<std::string> all;
  for (const auto& literal : literals) all.push_back(Quoted(literal->GetValue().View()));
  return text + "; it has " + Joined(all);
}
