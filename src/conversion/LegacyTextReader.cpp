#include "LegacyTextReader.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "DecimalInteger.h"
#include "VyrShownText.h"
#include "VyrUtf8.h"
#include "VyrXMLWriter.h"

namespace {

using Type = VyrDrwParseKeyword::Type;

constexpr std::string_view kBlanks = " \t";
constexpr std::array<std::string_view, 4> kParentStandards = {"ISO", "JIS", "ANSI", "ASME"};

const VyrDrwParseKeyword& Keyword(int row) {
  return VyrDrwParseKeywordTable()[static_cast<std::size_t>(row)];
}

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool IsInteger(std::string_view text) {
  const std::size_t digits = text.find_first_of("0123456789");
  const bool isSigned = digits == 1 && (text[0] == '+' || text[0] == '-');
  if (digits != 0 && !isSigned) return false;
  return text.find_first_not_of("0123456789", digits) == std::string_view::npos &&
         ReadDecimalInteger(text).has_value();
}

bool IsDecimalNumber(std::string_view text) {
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  if (text.find_first_not_of("0123456789.eE+-") != std::string_view::npos) return false;
  double number = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() && std::isfinite(number);
}

/// What a value of the type would be; empty when `text` is one.
std::string Expected(Type type, std::string_view text) {
  switch (type) {
    case Type::Int:
      return IsInteger(text) ? "" : "a whole number, such as 1";
    case Type::Float:
      return IsDecimalNumber(text) ? "" : "a decimal number, such as 2.0";
    case Type::Word: {
      const bool isKnown = std::find(kParentStandards.begin(), kParentStandards.end(), text) !=
                           kParentStandards.end();
      return isKnown ? "" : "one of ISO, JIS, ANSI, ASME";
    }
    default:
      return "";
  }
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

int CountLines(std::string_view text) {
  return static_cast<int>(std::count(text.begin(), text.end(), '\n')) + 1;
}

}  // namespace

const std::array<LegacyTextReader::Section, 4> LegacyTextReader::kSections = {{
    {kParentStandardRow, kLastGeneralRow, "", -1},
    {0, 1, nullptr, -1},
    {kFirstToleranceRow, kFirstDisplayRow - 1, "TOLERANCE", kToleranceNameRow},
    {kFirstDisplayRow, kKeywordCount - 1, "NUMERICAL_DISPLAY", kDisplayNameRow},
}};

bool LegacyTextReader::Fail(int line, std::string text) {
  problem_ = {line, std::move(text)};
  parameters_.clear();
  return false;
}

bool LegacyTextReader::Read(std::string_view text) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  const std::size_t markSize = text.starts_with(mark) ? mark.size() : 0;
  text.remove_prefix(markSize);
  if (const std::size_t invalid = VyrFindInvalidUtf8(text); invalid != std::string_view::npos) {
    return Fail(CountLines(text.substr(0, invalid)), "is not valid UTF-8 at byte " +
                                                         std::to_string(markSize + invalid + 1) +
                                                         "; save it as UTF-8");
  }
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    ++line_;
    if (!ReadLine(line)) return false;
  }
  return Finish();
}

bool LegacyTextReader::ReadLine(std::string_view line) {
  line = Trimmed(line);
  if (line.empty()) return true;
  const std::size_t nameEnd = std::min(line.find_first_of(kBlanks), line.size());
  const std::string_view name = line.substr(0, nameEnd);
  const std::string_view value = Trimmed(line.substr(nameEnd));
  for (const Section& section : kSections) {
    if (&section == &GeneralSection()) continue;
    const bool begins = name == Keyword(section.firstRow).keyword;
    const bool ends = name == Keyword(section.firstRow + 1).keyword;
    if (!begins && !ends) continue;
    // Inside a comment only its own end counts.
    if (section_->name == nullptr && !(ends && &section == section_)) return true;
    if (!value.empty()) return Fail(line_, std::string(name) + " stands alone on its line");
    return begins ? BeginSection(section) : EndSection(section);
  }
  if (section_->name == nullptr) return true;
  if (VyrXMLWriter::FindUnwritable(line) != std::string_view::npos) {
    return Fail(line_, "holds a control character; a standard is plain text");
  }
  return ReadParameter(name, value);
}

bool LegacyTextReader::BeginSection(const Section& section) {
  if (section_ != &GeneralSection()) {
    return Fail(line_, std::string(Keyword(section.firstRow).keyword) +
                           " inside the section of line " + std::to_string(sectionLine_) + "; " +
                           Keyword(section_->firstRow + 1).keyword + " was expected first");
  }
  section_ = &section;
  sectionLine_ = line_;
  return true;
}

bool LegacyTextReader::EndSection(const Section& section) {
  if (section_ != &section) {
    const bool isOutside = section_ == &GeneralSection();
    return Fail(
        line_,
        std::string(Keyword(section.firstRow + 1).keyword) +
            (isOutside ? std::string(" without ") + Keyword(section.firstRow).keyword +
                             "; put that before what the section holds, or take the line out"
                       : " inside the section of line " + std::to_string(sectionLine_) + "; " +
                             Keyword(section_->firstRow + 1).keyword + " was expected"));
  }
  if (section.name != nullptr && !CheckGroup()) return false;
  section_ = &GeneralSection();
  return true;
}

bool LegacyTextReader::ReadParameter(std::string_view name, std::string_view valueText) {
  int row = FindKeywordRow(name);
  if (row < 0) row = FindLegacyNameRow(name);
  if (row < 0)
    return Fail(
        line_,
        VyrQuoted(name) +
            " is no parameter of a drafting standard; correct the name, or take the line out");
  if (row < section_->firstRow || row > section_->lastRow) {
    const auto owner = std::find_if(
        kSections.begin(), kSections.end(),
        [=](const Section& section) { return section.firstRow <= row && row <= section.lastRow; });
    const std::string place = owner == kSections.begin()
                                  ? std::string("outside the sections")
                                  : std::string("after ") + Keyword(owner->firstRow).keyword;
    return Fail(line_, std::string(name) + " cannot stand here; it belongs " + place);
  }
  const bool isGeneral = section_ == &GeneralSection();
  int& given = (isGeneral ? givenInGeneral_ : givenInGroup_)[static_cast<std::size_t>(row)];
  if (given != 0) {
    return Fail(line_, std::string(name) + " is given twice; keep this one or that of line " +
                           std::to_string(given));
  }
  given = line_;
  std::optional<std::string> value = ReadValue(Keyword(row), valueText);
  if (!value) return false;
  entries_.push_back({row, std::move(*value)});
  if (isGeneral) StoreEntries({});
  return true;
}

std::optional<std::string> LegacyTextReader::ReadValue(const VyrDrwParseKeyword& keyword,
                                                       std::string_view text) {
  const std::string name = keyword.keyword;
  std::string value(text);
  if (text.empty()) {
    Fail(line_, name + " has no value; an empty one is written \"\"");
    return std::nullopt;
  }
  if (text.starts_with('"')) {
    std::optional<std::string> unquoted = Unquoted(text);
    if (!unquoted) {
      Fail(line_, name +
                      ": the value does not end with its closing double quote; a double quote "
                      "inside a quoted value is doubled");
      return std::nullopt;
    }
    value = std::move(*unquoted);
  }
  if (const std::string expected = Expected(keyword.type, value); !expected.empty()) {
    Fail(line_, name + ": " + VyrQuoted(value) + " is not valid; expected is " + expected);
    return std::nullopt;
  }
  return value;
}

/// Makes parameters of what has been read of a group, or of one general line.
void LegacyTextReader::StoreEntries(std::string_view description) {
  for (const Entry& entry : entries_) {
    const VyrDrwParseKeyword& keyword = Keyword(entry.row);
    parameters_.push_back(std::make_unique<VyrDrwParseParameter>(
        keyword.keyword, keyword.type, entry.value, description, section_->name));
  }
  entries_.clear();
}

bool LegacyTextReader::CheckGroup() {
  const auto name = std::find_if(entries_.begin(), entries_.end(), [this](const Entry& entry) {
    return entry.row == section_->nameRow;
  });
  const char* nameKeyword = Keyword(section_->nameRow).keyword;
  if (name == entries_.end() || name->value.empty()) {
    return Fail(sectionLine_, std::string(Keyword(section_->firstRow).keyword) +
                                  ": the group has no name; it needs a " + nameKeyword);
  }
  const std::string description = name->value;
  const auto [given, isNew] =
      groupLines_.try_emplace(std::string(section_->name) + ":" + description, sectionLine_);
  if (!isNew) {
    return Fail(sectionLine_, std::string(nameKeyword) + " " + VyrQuoted(description) +
                                  " is given twice; name this section or that of line " +
                                  std::to_string(given->second) + " otherwise");
  }
  if (!CheckRequired(*section_, nameKeyword + (" " + VyrQuoted(description)) + ": ")) return false;
  StoreEntries(description);
  givenInGroup_ = {};
  return true;
}

bool LegacyTextReader::CheckRequired(const Section& section, const std::string& where) {
  const bool isGeneral = &section == &GeneralSection();
  const auto& given = isGeneral ? givenInGeneral_ : givenInGroup_;
  for (int row = section.firstRow; row <= section.lastRow; ++row) {
    if (Keyword(row).required == 0 || given[static_cast<std::size_t>(row)] != 0) continue;
    return Fail(isGeneral ? line_ : sectionLine_,
                where + "the required parameter " + Keyword(row).keyword + " is missing");
  }
  return true;
}

bool LegacyTextReader::Finish() {
  line_ = std::max(line_, 1);
  if (section_ != &GeneralSection()) {
    return Fail(sectionLine_, std::string(Keyword(section_->firstRow).keyword) +
                                  " is never ended; " + Keyword(section_->firstRow + 1).keyword +
                                  " was expected before the end of the file");
  }
  return CheckRequired(GeneralSection(), "");
}
