#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "VyrDrwParseKeywordTable.h"
#include "VyrDrwParseParameter.h"
#include "VyrProblem.h"

/// Reads a text standard of the old generation: one parameter a line, a name, blanks and a value
/// to the end of the line; tolerances and numerical displays in sections of their own.
class LegacyTextReader {
 public:
  using Parameters = std::vector<std::unique_ptr<VyrDrwParseParameter>>;

  /// False when the text is not a valid standard; `GetProblem` then says where and why, and there
  /// are no parameters.
  bool Read(std::string_view text);

  /// The parameters in the order of the file, the groups' among them.
  Parameters TakeParameters() { return std::move(parameters_); }
  const VyrProblem& GetProblem() const { return problem_; }

 private:
  /// A stretch of the file between two markers; the general parameters stand outside all others.
  struct Section {
    int firstRow;  // of its keywords, markers included
    int lastRow;
    const char* name;  // as parameters know it; null for the comment block
    int nameRow;       // of the parameter that names a group; -1 when there is none
  };
  static const std::array<Section, 4> kSections;
  static const Section& GeneralSection() { return kSections[0]; }

  struct Entry {
    int row;
    std::string value;
  };

  bool ReadLine(std::string_view line);
  bool BeginSection(const Section& section);
  bool EndSection(const Section& section);
  bool ReadParameter(std::string_view name, std::string_view valueText);
  bool CheckGroup();
  bool CheckRequired(const Section& section, const std::string& where);
  bool Finish();
  void StoreEntries(std::string_view description);
  std::optional<std::string> ReadValue(const VyrDrwParseKeyword& keyword, std::string_view text);
  bool Fail(int line, std::string text);

  const Section* section_ = &kSections[0];
  int line_ = 0;
  int sectionLine_ = 0;
  std::vector<Entry> entries_;                       // of the group being read
  std::array<int, kKeywordCount> givenInGeneral_{};  // line of each row; 0: not given
  std::array<int, kKeywordCount> givenInGroup_{};
  std::unordered_map<std::string, int> groupLines_;  // by section and name
  Parameters parameters_;
  VyrProblem problem_;
};
