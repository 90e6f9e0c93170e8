#include "HeldValues.h"

#include <set>

#include "PathSearch.h"
#include "StandardItems.h"

namespace {

using Value = VyrAnnStandardXMLValue;

/// The values that a path with places leads to.
class HeldValues {
 public:
  HeldValues(const GetOptions& options, Standard& standard, GetAnswers& answers)
      : options_(options),
        file_(standard.file),
        answers_(answers),
        items_(standard.document),
        places_(FindPlaces(items_, options.path)) {
    if (places_.empty()) throw Negative(MissingPlace(items_, options.path));
  }

  void PrintOne() {
    const StandardPlace& place = places_[IndexAmong(places_.size(), options_, file_)];
    const Value* value = FirstAt(place);
    if (!IsTold(value)) throw NotTold(place);
    if (!options_.json) return answers_.PrintLine(file_, Printable(value->GetValue().View()));
    Json members = Json::object();
    AddValueTo(members, *value);
    answers_.Add(file_, members);
  }

  void PrintAll() {
    Json list = Json::array();
    bool isAnyTold = false;
    for (const StandardPlace& place : places_) {
      const Value* value = FirstAt(place);
      if (!IsTold(value)) continue;
      isAnyTold = true;
      if (options_.json) {
        AddValueTo(list.emplace_back(Json::object()), *value);
      } else {
        answers_.PrintLine(file_, Printable(value->GetValue().View()));
      }
    }
    if (!isAnyTold) throw NotTold(places_.front());
    if (options_.json) answers_.AddList(file_, std::move(list));
  }

  /// As of what queries find: of all values of the first node, or of all that stand in none of
  /// their own.
  void PrintType() {
    const Value* first = FirstAt(places_.front());
    if (first == nullptr) throw NotTold(places_.front());
    std::vector<const Value*> values;
    if (places_.front().value) {
      for (const StandardPlace& place : places_) {
        if (place.value) values.push_back(FirstAt(place));
      }
    } else {
      for (const auto& value : items_[places_.front().item].node->GetValues()) {
        values.push_back(value.Get());
      }
    }
    std::set<std::string> types;
    for (const Value* value : values) types.insert(TypeOf(*value)["type"]);
    if (types.size() > 1) {
      throw Negative("the values of " + Quoted(options_.path) +
                     " are of mixed types: " + Joined({types.begin(), types.end()}));
    }
    Json members = TypeOf(*first);
    if (options_.json) {
      members["count"] = values.size();
      return answers_.Add(file_, members);
    }
    std::string line = members["type"];
    if (members.contains("enumeration")) line += " " + Printable(first->GetValueName().View());
    answers_.PrintLine(file_, line + " " + std::to_string(values.size()));
  }

 private:
  static bool IsTold(const Value* value) {
    return value != nullptr && !value->GetValue().IsEmpty();
  }

  static Json TypeOf(const Value& value) {
    Json members = Json::object();
    AddValueTo(members, value);
    members.erase("value");
    members.erase("minimum");
    return members;
  }

  /// As of what queries find: of a node the first value.
  const Value* FirstAt(const StandardPlace& place) const {
    const auto& values = items_[place.item].node->GetValues();
    if (place.value) return values[*place.value].Get();
    return values.empty() ? nullptr : values.front().Get();
  }

  Failure Negative(const std::string& text) const { return {kNegativeAnswer, file_, 0, text}; }

  Failure NotTold(const StandardPlace& place) const {
    const std::string path = Quoted(options_.path);
    if (FirstAt(place) != nullptr) {
      return Negative(path + " is empty, so that there is nothing to tell");
    }
    const auto nodes = static_cast<long>(items_.ChildCount(place.item));
    return Negative(path + " has no value of its own but " + Counted(nodes, "node") +
                    "; name one of them, see " +
                    Quoted("holstd tree " + file_ + " " + items_.PathOf(place)));
  }

  const GetOptions& options_;
  const std::string& file_;
  GetAnswers& answers_;
  const StandardItems items_;
  const std::vector<StandardPlace> places_;
};

}  // namespace

ExitStatus PrintHeldValues(const GetOptions& options, Standard& standard, GetAnswers& answers) {
  HeldValues values(options, standard, answers);
  if (options.type) {
    values.PrintType();
  } else if (options.all) {
    values.PrintAll();
  } else {
    values.PrintOne();
  }
  return kDone;
}
