#pragma once

#include <string>
#include <vector>

#include "Format.h"
#include "Session.h"

/// What is asked of `get`.
struct GetOptions {
  std::vector<std::string> files;
  std::string path;
  long index = 1;
  bool all = false;
  bool type = false;
  bool json = false;
};

/// Index from 0 of the value that the options ask for, among `count`. Throws `Failure`.
std::size_t IndexAmong(std::size_t count, const GetOptions& options, const std::string& file);

/// Prints what is told: of one file as it is; of several each line with its file before it, and in
/// JSON an array with an object for each file that has an answer.
class GetAnswers {
 public:
  GetAnswers(const GetOptions& options, Session& session);

  void PrintLine(const std::string& file, const std::string& line);
  /// The members of an answer of which there is one in a file.
  void Add(const std::string& file, const Json& members);
  /// The answers of a file of which there may be several.
  void AddList(const std::string& file, Json list);
  /// Of several files the array is printed, also when none of them has an answer.
  void EndJson();

 private:
  void AddDocument(Json document);

  const std::string& path_;
  Session& session_;
  bool areOfMany_;
  Json all_ = Json::array();
};
