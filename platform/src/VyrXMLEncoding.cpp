#include "VyrXMLEncoding.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "VyrShownText.h"
#include "VyrUtf8.h"
#include "VyrWithinMemory.h"

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kUtf8 = "UTF-8";

/// First bytes that tell an encoding.
struct Signature {
  std::string_view bytes;
  const char* encoding;
  bool isMark;  // not part of the text
};

// The longer ones first: the mark of UTF-32 begins with that of UTF-16.
constexpr std::array<Signature, 9> kSignatures = {{
    {"\xEF\xBB\xBF"sv, "UTF-8", true},
    {"\xFF\xFE\0\0"sv, "UTF-32LE", true},
    {"\0\0\xFE\xFF"sv, "UTF-32BE", true},
    {"\xFF\xFE"sv, "UTF-16LE", true},
    {"\xFE\xFF"sv, "UTF-16BE", true},
    {"<\0\0\0"sv, "UTF-32LE", false},
    {"\0\0\0<"sv, "UTF-32BE", false},
    {"<\0"sv, "UTF-16LE", false},
    {"\0<"sv, "UTF-16BE", false},
}};

constexpr std::string_view kBlanks = " \t\r\n";

/// Whether a document begins with an XML declaration, not with another instruction of like name.
bool HasDeclaration(std::string_view document) {
  constexpr std::string_view begin = "<?xml";
  return document.starts_with(begin) && document.size() > begin.size() &&
         kBlanks.find(document[begin.size()]) != std::string_view::npos;
}

/// The name after "encoding" in the XML declaration, empty when there is none.
std::string_view DeclaredEncoding(std::string_view document) {
  if (!HasDeclaration(document)) return {};
  std::string_view rest = document.substr(0, document.find("?>"));
  const auto skip = [&rest](std::size_t count) {
    rest.remove_prefix(std::min(count, rest.size()));
  };
  constexpr std::string_view keyword = "encoding";
  skip(rest.find(keyword));
  skip(keyword.size());
  skip(rest.find_first_not_of(kBlanks));
  if (!rest.starts_with('=')) return {};
  skip(1);
  skip(rest.find_first_not_of(kBlanks));
  if (!rest.starts_with('"') && !rest.starts_with('\'')) return {};
  const std::size_t end = rest.find(rest[0], 1);
  return end == std::string_view::npos ? std::string_view() : rest.substr(1, end - 1);
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [=](char x, char y) { return lower(x) == lower(y); });
}

/// True for what the name of an encoding may look like; more would be an option of the converter.
bool IsEncodingName(std::string_view name) {
  constexpr std::size_t longest = 64;
  return name.size() <= longest && std::all_of(name.begin(), name.end(), [](char c) {
           return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                  c == '.' || c == '_' || c == '-';
         });
}

/// The name that the converter knows an encoding by.
///
/// Files of Windows call themselves by the name of a national standard and are written in the code
/// page that grew from it: with more characters and, in Japan, with "\" and "~" where the standard
/// has a yen sign and an overline. Read by the letter, their paths would change and their symbols
/// be refused.
std::string ConverterName(std::string_view encoding) {
  struct Page {
    std::string_view declared;
    std::string_view meant;
  };
  constexpr std::array<Page, 9> pages = {{{"Shift_JIS", "CP932"},
                                          {"Shift-JIS", "CP932"},
                                          {"SJIS", "CP932"},
                                          {"x-sjis", "CP932"},
                                          {"MS_Kanji", "CP932"},
                                          {"GB2312", "GB18030"},
                                          {"EUC-KR", "CP949"},
                                          {"ks_c_5601-1987", "CP949"},
                                          {"ks_c_5601", "CP949"}}};
  const auto page = std::find_if(pages.begin(), pages.end(), [=](const Page& entry) {
    return EqualsIgnoringCase(entry.declared, encoding);
  });
  return std::string(page == pages.end() ? encoding : page->meant);
}

/// The system's converter from an encoding to UTF-8.
class Converter {
 public:
  explicit Converter(std::string_view encoding)
      : handle_(IsEncodingName(encoding) ? ::iconv_open("UTF-8", ConverterName(encoding).c_str())
                                         : kNone) {
    if (!IsKnown() && errno == ENOMEM) VyrThrowOutOfMemory();
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() {
    if (IsKnown()) ::iconv_close(handle_);
  }

  bool IsKnown() const { return handle_ != kNone; }

  /// Appends the text of `bytes`; the count of bytes that were of the encoding.
  std::size_t Convert(std::string_view bytes, std::string& text) {
    char* next = const_cast<char*>(bytes.data());  // the call takes it so, and leaves it alone
    std::size_t left = bytes.size();
    while (left > 0) {
      if (!Step(&next, &left, text)) return bytes.size() - left;
    }
    Step(nullptr, nullptr, text);
    return bytes.size();
  }

 private:
  static inline const iconv_t kNone = reinterpret_cast<iconv_t>(-1);

  /// Converts as much as one block holds; false when the next byte is not of the encoding.
  bool Step(char** next, std::size_t* left, std::string& text) {
    std::array<char, 16384> block;
    char* end = block.data();
    std::size_t room = block.size();
    const std::size_t result = ::iconv(handle_, next, left, &end, &room);
    text.append(block.data(), block.size() - room);
    return result != static_cast<std::size_t>(-1) || errno == E2BIG;
  }

  iconv_t handle_;
};

int LineAt(std::string_view textBefore) {
  return static_cast<int>(std::count(textBefore.begin(), textBefore.end(), '\n')) + 1;
}

std::string AtByte(std::size_t offset) {
  return " at byte " + std::to_string(offset + 1);
}

bool RefuseZeroBytes(std::string_view utf8, VyrProblem& problem) {
  const std::size_t zero = utf8.find('\0');
  if (zero == std::string_view::npos) return true;
  problem = {LineAt(utf8.substr(0, zero)),
             "holds a zero byte; a standard is XML text, in UTF-8 or as it declares"};
  return false;
}

bool CheckUtf8(std::string_view document, std::size_t markSize, std::string_view& utf8,
               VyrProblem& problem) {
  utf8 = document.substr(markSize);
  const std::size_t invalid = VyrFindInvalidUtf8(utf8);
  if (invalid == std::string_view::npos) return RefuseZeroBytes(utf8, problem);
  problem = {LineAt(utf8.substr(0, invalid)),
             "is not valid UTF-8" + AtByte(markSize + invalid) +
                 "; declare the encoding that it is written in, or save it as UTF-8"};
  return false;
}

bool ConvertFrom(const std::string& encoding, bool isDeclared, std::string_view document,
                 std::size_t markSize, std::string& converted, VyrProblem& problem) {
  Converter converter(encoding);
  if (!converter.IsKnown()) {
    problem = {1, "declares the encoding " + VyrQuoted(encoding) +
                      ", which is not known; save it as UTF-8"};
    return false;
  }
  converted.reserve(document.size());
  const std::size_t read = converter.Convert(document.substr(markSize), converted) + markSize;
  // Two-byte encodings read anything as text; but then the declaration is no longer there.
  if (isDeclared && !HasDeclaration(converted)) {
    problem = {1, "declares the encoding " + VyrQuoted(encoding) +
                      " but is not written in it; declare the right one, or save it as UTF-8"};
    return false;
  }
  if (read == document.size()) return RefuseZeroBytes(converted, problem);
  problem = {LineAt(converted),
             "is not valid " + VyrShownText(encoding) + AtByte(read) +
                 "; declare the encoding that it is written in, or save it as UTF-8"};
  return false;
}

}  // namespace

bool VyrDecodeXMLText(std::string_view document, const char* encoding, std::string& converted,
                      std::string_view& utf8, VyrProblem& problem) {
  std::string_view name = encoding == nullptr ? std::string_view() : encoding;
  std::size_t markSize = 0;
  bool isDeclared = false;
  for (const Signature& signature : kSignatures) {
    if (!document.starts_with(signature.bytes)) continue;
    if (name.empty()) name = signature.encoding;
    if (signature.isMark && name == signature.encoding) markSize = signature.bytes.size();
    break;
  }
  if (name.empty()) {
    name = DeclaredEncoding(document);
    isDeclared = !name.empty();
  }
  if (name.empty() || EqualsIgnoringCase(name, kUtf8)) {
    return CheckUtf8(document, markSize, utf8, problem);
  }
  if (!ConvertFrom(std::string(name), isDeclared, document, markSize, converted, problem)) {
    return false;
  }
  utf8 = converted;
  return true;
}
