#include "GetAnswers.h"

#include <utility>

#include "UpgradeInputs.h"

std::size_t IndexAmong(std::size_t count, const GetOptions& options, const std::string& file) {
  const auto index = static_cast<std::size_t>(options.index - 1);
  if (index < count) return index;
  throw Failure{kNegativeAnswer, file, 0,
                Quoted(options.path) + " finds " + Counted(static_cast<long>(count), "element") +
                    "; there is no " + std::to_string(options.index) + " among them"};
}

GetAnswers::GetAnswers(const GetOptions& options, Session& session)
    : path_(options.path), session_(session), areOfMany_(NamesMany(options.files)) {}

void GetAnswers::PrintLine(const std::string& file, const std::string& line) {
  const std::string place = file == "-" ? "standard input" : Printable(file);
  session_.Print(areOfMany_ ? place + ":" + line + "\n" : line + "\n");
}

void GetAnswers::Add(const std::string& file, const Json& members) {
  Json object = {{"file", file}, {"path", path_}};
  object.update(members);
  AddDocument(std::move(object));
}

void GetAnswers::AddList(const std::string& file, Json list) {
  if (!areOfMany_) return AddDocument(std::move(list));
  Add(file, {{"values", std::move(list)}});
}

void GetAnswers::EndJson() {
  if (areOfMany_) session_.Print(JsonText(all_));
}

void GetAnswers::AddDocument(Json document) {
  if (!areOfMany_) return session_.Print(JsonText(document));
  all_.push_back(std::move(document));
}
