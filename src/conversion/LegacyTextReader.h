#pragma once

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "VyrDrwConversionNote.h"
#include "VyrDrwParseKeywordTable.h"
#include "VyrDrwParseParameter.h"
#include "VyrProblem.h"

/// Reads a text standard of the old generation: one parameter a line, a name, blanks and a value
/// to the end of the line; tolerances and numerical displays in sections of their own.
class LegacyTextReader {
 public:
  using Parameters = std::vector<std::unique_ptr<VyrDrwParseParameter>>;

  /// Of the faults of a text, so many are kept; whoever mends them asks again.
  static constexpr std::size_t kMostFaults = 20;

  /// False when the text is not a valid standard; `GetFaults` then says where and why, and there
  /// are no parameters.
  bool Read(std::string_view text);

  /// The parameters in the order of the file, the groups' among them.
  Parameters TakeParameters() { return std::move(parameters_); }
  /// The first faults, in the order in which they are met.
  const std::vector<VyrProblem>& GetFaults() const { return faults_; }
  /// All of them, those that are not kept, too.
  std::size_t GetFaultCount() const { return faultCount_; }
  /// What will not be found under the name that it has in the text.
  const std::vector<VyrDrwConversionNote>& GetNotes() const { return notes_; }

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
    int line;
    std::string value;
  };

  void ReadLine(std::string_view line);
  bool ReadMarker(std::string_view name, std::string_view value);
  void BeginSection(const Section& section);
  void EndSection(const Section& section);
  void ReadParameter(std::string_view name, std::string_view valueText);
  bool BelongsHere(int row, std::string_view name);
  bool IsGivenOnce(int row, std::string_view name);
  std::optional<std::string> ReadValue(std::string_view name, VyrDrwParseKeyword::Type type,
                                       std::string_view text);
  std::string ReplaceInvisible(std::string_view line);
  void PassOver(std::string_view line);
  void CheckGroup();
  void CheckRequired(const Section& section, const std::string& where);
  void Finish();
  void LeaveGroup();
  void StoreEntries(const std::shared_ptr<const VyrDrwParseGroup>& group);
  void TellFault(int line, std::string text);
  std::array<int, kKeywordCount>& Given();

  bool IsOutside() const { return section_ == &GeneralSection(); }
  bool IsComment() const { return section_->name == nullptr; }

  const Section* section_ = &GeneralSection();
  int line_ = 0;
  int sectionLine_ = 0;
  /// The section that a comment block was begun in, wrongly, and goes on after it.
  const Section* aroundComment_ = &GeneralSection();
  int lineAroundComment_ = 0;
  const Section* misplaced_ = nullptr;  // into which the lines before belong
  bool hasContent_ = false;
  bool isNoText_ = false;                            // nothing more is read
  std::vector<Entry> entries_;                       // of the group being read
  std::array<int, kKeywordCount> givenInGeneral_{};  // line of each row; 0: not given
  std::array<int, kKeywordCount> givenInGroup_{};
  std::map<const Section*, std::unordered_map<std::string, int>> groupLines_;
  Parameters parameters_;
  std::vector<VyrProblem> faults_;
  std::size_t faultCount_ = 0;
  std::vector<VyrDrwConversionNote> notes_;
};
