#include "LegacyTextReader.h"

#include <algorithm>

#include "InvisibleCharacters.h"
#include "LegacyValues.h"
#include "Version0Tables.h"
#include "VyrShownText.h"
#include "VyrUtf8.h"
#include "VyrXMLWriter.h"

namespace {

constexpr std::string_view kBlanks = " \t";

const VyrDrwParseKeyword& Keyword(int row) {
  return VyrDrwParseKeywordTable()[static_cast<std::size_t>(row)];
}

/// Row of a keyword or of a legacy name; -1 for what is neither.
int FindRow(std::string_view name) {
  const int row = FindKeywordRow(name);
  return row < 0 ? FindLegacyNameRow(name) : row;
}

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// The beginning of a line up to the first blank.
std::string_view NameOf(std::string_view line) {
  return line.substr(0, line.find_first_of(kBlanks));
}

/// The text between double quotes, a doubled quote read as one; nothing when the quotes do not
/// close at the end of `text`.
std::optional<std::string> Unquoted(std::string_view text) {
  std::string value;
  for (std::size_t i = 1; i < text.size(); ++i) {
    if (text[i] != '"') {
      value += text[i];
    } else if (i + 1 < text.size() && text[i + 1] == '"') {
      value += text[i++];
    } else {
      return i + 1 == text.size() ? std::optional(value) : std::nullopt;
    }
  }
  return std::nullopt;
}

}  // namespace

const std::array<LegacyTextReader::Section, 4> LegacyTextReader::kSections = {{
    {kParentStandardRow, kLastGeneralRow, "", -1},
    {0, 1, nullptr, -1},
    {kFirstToleranceRow, kFirstDisplayRow - 1, "TOLERANCE", kToleranceNameRow},
    {kFirstDisplayRow, kKeywordCount - 1, "NUMERICAL_DISPLAY", kDisplayNameRow},
}};

void LegacyTextReader::TellFault(int line, std::string text) {
  // Nothing will be made of them.
  parameters_.clear();
  ++faultCount_;
  if (faults_.size() < kMostFaults) faults_.push_back({line, std::move(text)});
}

std::array<int, kKeywordCount>& LegacyTextReader::Given() {
  return IsOutside() ? givenInGeneral_ : givenInGroup_;
}

bool LegacyTextReader::Read(std::string_view text) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  const char* const begin = text.data();
  if (text.starts_with(mark)) text.remove_prefix(mark.size());
  while (!text.empty() && !isNoText_) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    ++line_;
    if (const std::size_t bad = VyrFindInvalidUtf8(line); bad != std::string_view::npos) {
      const std::size_t offset = static_cast<std::size_t>(line.data() - begin) + bad;
      TellFault(line_,
                "is not valid UTF-8 at byte " + std::to_string(offset + 1) + "; save it as UTF-8");
      PassOver(line);
    } else {
      ReadLine(Trimmed(line));
    }
  }
  if (!isNoText_) Finish();
  return faultCount_ == 0;
}

/// A line that cannot be read may still show which marker it is, or which parameter it gives: what
/// follows the one is not misplaced, and the other not missing, too.
void LegacyTextReader::PassOver(std::string_view line) {
  // The rest of a text in another encoding, or of what is none, would be nothing but faults.
  isNoText_ = line.find('\0') != std::string_view::npos || line.starts_with("\xFF\xFE") ||
              line.starts_with("\xFE\xFF") || std::count(line.begin(), line.end(), '\r') > 1;
  const std::string_view name = NameOf(Trimmed(line.substr(0, line.find('\r'))));
  if (ReadMarker(name, {}) || IsComment()) return;
  const int row = FindRow(name);
  if (row < section_->firstRow || row > section_->lastRow) return;
  int& given = Given()[static_cast<std::size_t>(row)];
  if (given == 0) given = line_;
}

void LegacyTextReader::ReadLine(std::string_view line) {
  if (line.empty()) return;
  std::string meant;
  if (FindInvisible(NameOf(line)) != nullptr) {
    meant = ReplaceInvisible(line);
    line = Trimmed(meant);
    if (line.empty()) return;
  }
  const std::string_view name = NameOf(line);
  const std::string_view value = Trimmed(line.substr(name.size()));
  if (!IsComment() && !hasContent_ && line.starts_with('<')) {
    isNoText_ = true;
    return TellFault(line_, "is XML, and no text standard of the old generation");
  }
  if (!IsComment() && line.find('\0') != std::string_view::npos) {
    TellFault(line_, "holds a zero byte, as text in UTF-16 does; save it as UTF-8");
    return PassOver(line);
  }
  if (!IsComment() && line.find('\r') != std::string_view::npos) {
    TellFault(line_, "holds a carriage return (CR) that ends no line; lines end in LF or CR LF");
    return PassOver(line);
  }
  if (ReadMarker(name, value) || IsComment()) return;
  hasContent_ = true;
  if (VyrXMLWriter::FindUnwritable(line) != std::string_view::npos) {
    TellFault(line_, "holds a control character; a standard is plain text");
    return PassOver(line);
  }
  ReadParameter(name, value);
}

/// The line as it was meant, where its name holds what does not show. Of a comment only the end
/// counts.
std::string LegacyTextReader::ReplaceInvisible(std::string_view line) {
  const std::string_view name = NameOf(line);
  std::string meant = WithoutInvisible(name);
  if (IsComment() && Trimmed(meant) != Keyword(section_->firstRow + 1).keyword) return {};
  const InvisibleCharacter& found = *FindInvisible(name);
  TellFault(line_, (Trimmed(meant).empty() ? "has " : VyrQuoted(Trimmed(meant)) + " has ") +
                       found.name +
                       (found.isLikeABlank ? " in it, which is no blank; write a blank"
                                           : " in it, which does not show; take that out"));
  return meant.append(line.substr(name.size()));
}

/// True when the line was a marker that counts here.
bool LegacyTextReader::ReadMarker(std::string_view name, std::string_view value) {
  for (const Section& section : kSections) {
    if (&section == &GeneralSection()) continue;
    const bool begins = name == Keyword(section.firstRow).keyword;
    const bool ends = name == Keyword(section.firstRow + 1).keyword;
    if (!begins && !ends) continue;
    // Inside a comment only its own end counts.
    if (IsComment() && !(ends && &section == section_)) return true;
    hasContent_ = true;
    misplaced_ = nullptr;
    if (VyrXMLWriter::FindUnwritable(value) != std::string_view::npos) {
      TellFault(line_, "holds a control character; a standard is plain text");
    } else if (!value.empty()) {
      TellFault(line_, std::string(name) + " stands alone on its line");
    }
    begins ? BeginSection(section) : EndSection(section);
    return true;
  }
  return false;
}

void LegacyTextReader::BeginSection(const Section& section) {
  if (!IsOutside()) {
    TellFault(line_, std::string(Keyword(section.firstRow).keyword) +
                         " inside the section of line " + std::to_string(sectionLine_) + "; " +
                         Keyword(section_->firstRow + 1).keyword + " was expected first");
    if (section.name == nullptr) {
      aroundComment_ = section_;
      lineAroundComment_ = sectionLine_;
    } else {
      LeaveGroup();
    }
  }
  section_ = &section;
  sectionLine_ = line_;
}

void LegacyTextReader::EndSection(const Section& section) {
  if (section_ != &section) {
    TellFault(
        line_,
        std::string(Keyword(section.firstRow + 1).keyword) +
            (IsOutside() ? std::string(" without ") + Keyword(section.firstRow).keyword +
                               "; put that before what the section holds, or take the line out"
                         : " inside the section of line " + std::to_string(sectionLine_) + "; " +
                               Keyword(section_->firstRow + 1).keyword + " was expected"));
    if (section.name != nullptr && !IsOutside()) LeaveGroup();
    return;
  }
  if (section.name != nullptr) {
    CheckGroup();
    section_ = &GeneralSection();
  } else {
    section_ = aroundComment_;
    sectionLine_ = lineAroundComment_;
    aroundComment_ = &GeneralSection();
  }
}

/// Ends a group that has no end of its own, which was told. One that holds nothing is no group.
void LegacyTextReader::LeaveGroup() {
  const auto isGiven = [](int line) { return line != 0; };
  if (std::any_of(givenInGroup_.begin(), givenInGroup_.end(), isGiven)) CheckGroup();
  section_ = &GeneralSection();
}

void LegacyTextReader::ReadParameter(std::string_view name, std::string_view valueText) {
  const int row = FindRow(name);
  if (row < 0) {
    misplaced_ = nullptr;
    return TellFault(
        line_,
        VyrQuoted(name) +
            " is no parameter of a drafting standard; correct the name, or take the line out");
  }
  if (!BelongsHere(row, name) || !IsGivenOnce(row, name)) return;
  std::optional<std::string> value = ReadValue(name, Keyword(row).type, valueText);
  if (!value) return;
  entries_.push_back({row, line_, std::move(*value)});
  if (IsOutside()) StoreEntries(nullptr);
}

/// Of lines in a row that belong into one other section the first is told: what is wrong is a
/// marker before them.
bool LegacyTextReader::BelongsHere(int row, std::string_view name) {
  if (section_->firstRow <= row && row <= section_->lastRow) {
    misplaced_ = nullptr;
    return true;
  }
  const Section* const owner = std::find_if(
      kSections.begin(), kSections.end(),
      [=](const Section& section) { return section.firstRow <= row && row <= section.lastRow; });
  const bool isGeneral = owner == &GeneralSection();
  if (isGeneral && givenInGeneral_[static_cast<std::size_t>(row)] == 0) {
    givenInGeneral_[static_cast<std::size_t>(row)] = line_;
  }
  if (misplaced_ == owner) return false;
  misplaced_ = owner;
  const std::string place = isGeneral ? std::string("outside the sections")
                                      : std::string("after ") + Keyword(owner->firstRow).keyword;
  TellFault(line_, std::string(name) + " cannot stand here; it belongs " + place);
  return false;
}

bool LegacyTextReader::IsGivenOnce(int row, std::string_view name) {
  int& given = Given()[static_cast<std::size_t>(row)];
  if (given == 0) {
    given = line_;
    return true;
  }
  TellFault(line_, std::string(name) + " is given twice; keep this one or that of line " +
                       std::to_string(given));
  return false;
}

std::optional<std::string> LegacyTextReader::ReadValue(std::string_view name,
                                                       VyrDrwParseKeyword::Type type,
                                                       std::string_view text) {
  const auto refuse = [&](const std::string& fault) {
    TellFault(line_, std::string(name) + fault);
    return std::nullopt;
  };
  if (text.empty()) return refuse(" has no value; an empty one is written \"\"");
  std::optional<std::string> value(text);
  if (text.starts_with('"')) value = Unquoted(text);
  if (!value) {
    return refuse(
        ": the value does not end with its closing double quote; a double quote inside a quoted "
        "value is doubled");
  }
  const std::string objection = ObjectionTo(type, *value);
  return objection.empty() ? std::move(value) : refuse(": " + objection);
}

/// Makes parameters of what has been read of a group, or of one general line.
void LegacyTextReader::StoreEntries(const std::shared_ptr<const VyrDrwParseGroup>& group) {
  for (const Entry& entry : entries_) {
    if (faultCount_ != 0) break;
    const VyrDrwParseKeyword& keyword = Keyword(entry.row);
    parameters_.push_back(group ? std::make_unique<VyrDrwParseParameter>(
                                      keyword.keyword, keyword.type, entry.value, group)
                                : std::make_unique<VyrDrwParseParameter>(
                                      keyword.keyword, keyword.type, entry.value, entry.line));
  }
  entries_.clear();
}

void LegacyTextReader::CheckGroup() {
  const std::string nameKeyword = Keyword(section_->nameRow).keyword;
  const auto name = std::find_if(entries_.begin(), entries_.end(), [this](const Entry& entry) {
    return entry.row == section_->nameRow;
  });
  const bool isNamed = name != entries_.end() && !name->value.empty();
  const bool isNameRefused =
      name == entries_.end() && givenInGroup_[static_cast<std::size_t>(section_->nameRow)] != 0;
  std::string where = std::string(Keyword(section_->firstRow).keyword) + ": ";
  if (isNamed) {
    const VyrUnicodeString description = name->value;
    where = nameKeyword + " " + VyrQuoted(description.View()) + ": ";
    const auto [given, isNew] =
        groupLines_[section_].try_emplace(std::string(description.View()), sectionLine_);
    if (!isNew) {
      TellFault(sectionLine_, nameKeyword + " " + VyrQuoted(description.View()) +
                                  " is given twice; name this section or that of line " +
                                  std::to_string(given->second) + " otherwise");
    } else if (IsPredefined(section_->name, description.View())) {
      notes_.push_back({VyrDrwConversionNote::NameTaken, name->line, nameKeyword, description, {}});
    }
    CheckRequired(*section_, where);
    StoreEntries(std::make_shared<VyrDrwParseGroup>(VyrDrwParseGroup{description, section_->name}));
  } else {
    if (!isNameRefused) {
      TellFault(sectionLine_, where + "the group has no name; it needs a " + nameKeyword);
    }
    if (!entries_.empty()) CheckRequired(*section_, where);
  }
  entries_.clear();
  givenInGroup_ = {};
}

void LegacyTextReader::CheckRequired(const Section& section, const std::string& where) {
  const bool isGeneral = &section == &GeneralSection();
  const auto& given = isGeneral ? givenInGeneral_ : givenInGroup_;
  for (int row = section.firstRow; row <= section.lastRow; ++row) {
    if (Keyword(row).required == 0 || given[static_cast<std::size_t>(row)] != 0) continue;
    if (row == section.nameRow) continue;  // which was told
    TellFault(isGeneral ? line_ : sectionLine_,
              where + "the required parameter " + Keyword(row).keyword + " is missing");
  }
}

void LegacyTextReader::Finish() {
  line_ = std::max(line_, 1);
  const bool isOpen = !IsOutside();
  if (isOpen) {
    TellFault(sectionLine_, std::string(Keyword(section_->firstRow).keyword) + " is never ended; " +
                                Keyword(section_->firstRow + 1).keyword +
                                " was expected before the end of the file");
  }
  // What a comment without an end has swallowed is not missing.
  if (IsComment()) return;
  if (parameters_.empty() && faultCount_ == 0) {
    return TellFault(line_, "holds no parameter of a drafting standard");
  }
  CheckRequired(GeneralSection(), "");
}
