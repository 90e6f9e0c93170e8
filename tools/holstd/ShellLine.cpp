#include "ShellLine.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

namespace {

constexpr std::string_view kBlanks = " \t\n";

std::string ValueOf(std::string_view variable) {
  const char* value = std::getenv(std::string(variable).c_str());
  return value == nullptr ? "" : value;
}

bool IsNameLetter(char c) {
  return c == '_' || std::isalnum(static_cast<unsigned char>(c)) != 0;
}

/// Reads a line from its beginning to its end.
class Reader {
 public:
  explicit Reader(std::string_view line) : rest_(line) {}

  std::vector<std::string> Words() {
    std::vector<std::string> words;
    for (;;) {
      rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlanks), rest_.size()));
      words.push_back(Word());
      if (rest_.empty()) return words;
    }
  }

 private:
  std::string Word() {
    std::string word;
    const bool isHome = rest_ == "~" || rest_.starts_with("~/") || rest_.starts_with("~ ");
    if (isHome) {
      rest_.remove_prefix(1);
      word = ValueOf("HOME");
    }
    while (!rest_.empty() && kBlanks.find(rest_.front()) == std::string_view::npos) AddPart(word);
    return word;
  }

  void AddPart(std::string& word) {
    const char c = Take();
    if (c == '\\') {
      if (!rest_.empty()) word += Take();
    } else if (c == '\'') {
      const std::size_t end = std::min(rest_.find('\''), rest_.size());
      word += rest_.substr(0, end);
      rest_.remove_prefix(std::min(end + 1, rest_.size()));
    } else if (c == '"') {
      AddQuoted(word);
    } else if (c == '$') {
      AddVariable(word);
    } else {
      word += c;
    }
  }

  /// What stands between double quotes, up to the end of the line when they are not closed.
  void AddQuoted(std::string& word) {
    constexpr std::string_view special = "\\\"$`";
    while (!rest_.empty()) {
      const char c = Take();
      if (c == '"') return;
      if (c == '$') {
        AddVariable(word);
      } else if (c == '\\' && !rest_.empty() && special.find(rest_.front()) != special.npos) {
        word += Take();
      } else {
        word += c;
      }
    }
  }

  /// "NAME" or "{NAME}" behind the dollar; anything else stays as it is.
  void AddVariable(std::string& word) {
    const bool hasBraces = rest_.starts_with('{');
    std::string_view name = rest_.substr(hasBraces ? 1 : 0);
    std::size_t size = 0;
    while (size < name.size() && IsNameLetter(name[size])) ++size;
    const bool isClosed = !hasBraces || (size < name.size() && name[size] == '}');
    if (size == 0 || !isClosed) {
      word += '$';
      return;
    }
    word += ValueOf(name.substr(0, size));
    rest_.remove_prefix(size + (hasBraces ? 2 : 0));
  }

  char Take() {
    const char c = rest_.front();
    rest_.remove_prefix(1);
    return c;
  }

  std::string_view rest_;
};

}  // namespace

std::vector<std::string> WordsOfShellLine(std::string_view line) {
  return Reader(line).Words();
}
