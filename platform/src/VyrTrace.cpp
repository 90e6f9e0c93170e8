#include "VyrTrace.h"

#include <locale.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <vector>

#include "VyrDiagnostics.h"
#include "VyrShownText.h"
#include "VyrUtf8.h"

namespace {

std::vector<VyrTrace*>& Channels() {
  static std::vector<VyrTrace*> channels;
  return channels;
}

constexpr int kBlanksPerBlock = 2;

}  // namespace

VyrTrace::VyrTrace(const char* name, const char* title, int level, const char* destination,
                   int lineSize)
    : name_(name), title_(title), level_(level), destination_(destination), lineSize_(lineSize) {
  Channels().push_back(this);
}

VyrTrace::~VyrTrace() {
  std::erase(Channels(), this);
}

int& VyrTrace::Depth() {
  thread_local int depth = 0;
  return depth;
}

std::string VyrTrace::Indentation() {
  return std::string(static_cast<std::size_t>(Depth()) * kBlanksPerBlock, ' ');
}

namespace {

/// While it lives, this thread writes numbers as every file has them, whatever the host's locale.
class PlainNumbers {
 public:
  PlainNumbers() : before_(::uselocale(Plain())) {}
  PlainNumbers(const PlainNumbers&) = delete;
  PlainNumbers& operator=(const PlainNumbers&) = delete;
  ~PlainNumbers() { ::uselocale(before_); }

 private:
  static locale_t Plain() {
    static const locale_t plain = ::newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return plain;
  }
  locale_t before_;
};

std::string Formatted(const char* format, std::va_list arguments) {
  const PlainNumbers plain;
  std::va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  std::string line(static_cast<std::size_t>(std::max(length, 0)), '\0');
  std::vsnprintf(line.data(), line.size() + 1, format, again);
  va_end(again);
  return line;
}

/// What a line is about comes out of files, and must neither forge lines nor be obeyed. Its end is
/// its own, and the tabs between its columns where it has some.
void EscapeBeforeEnd(std::string& line, bool hasColumns) {
  const std::size_t end = line.size() - (line.ends_with('\n') ? 1 : 0);
  const auto isOwn = [&](const VyrUnshown& unshown) {
    return unshown.at >= end || (hasColumns && unshown.code == '\t');
  };
  std::string escaped;
  std::size_t done = 0;
  for (VyrUnshown unshown = VyrFindUnshown(line); unshown.at < line.size();
       unshown = VyrFindUnshown(line, unshown.at + unshown.size)) {
    if (isOwn(unshown)) continue;
    escaped.append(line, done, unshown.at - done);
    done = unshown.at + unshown.size;
    escaped += VyrShownText(std::string_view(line).substr(unshown.at, unshown.size));
  }
  if (done > 0) line = escaped.append(line, done, std::string::npos);
}

}  // namespace

void VyrTrace::Print(const char* format, ...) {
  if (!IsOn()) return;
  std::va_list arguments;
  va_start(arguments, format);
  std::string line = Formatted(format, arguments);
  va_end(arguments);
  EscapeBeforeEnd(line, std::string_view(format).find('\t') != std::string_view::npos);
  const auto most = static_cast<std::size_t>(std::max(lineSize_ - 1, 0));
  if (lineSize_ > 0 && line.size() > most) {
    line.resize(VyrCutUtf8(line, most - 1).size());
    line += '\n';
  }
  VyrTraceOutput(line);
}

VyrTrace* VyrTrace::Find(std::string_view name) {
  const auto found = std::find_if(Channels().begin(), Channels().end(),
                                  [&](VyrTrace* channel) { return name == channel->name_; });
  return found == Channels().end() ? nullptr : *found;
}

void VyrTrace::ForEach(const std::function<void(VyrTrace&)>& visit) {
  for (VyrTrace* channel : Channels()) visit(*channel);
}

VyrTraceBlock::VyrTraceBlock(VyrTrace& channel, const char* operation)
    : channel_(channel.IsOn() ? &channel : nullptr), operation_(operation) {
  if (channel_ == nullptr) return;
  channel_->Print("%s{ %s\n", VyrTrace::Indentation().c_str(), operation_);
  ++VyrTrace::Depth();
}

VyrTraceBlock::~VyrTraceBlock() {
  if (channel_ == nullptr) return;
  --VyrTrace::Depth();
  channel_->Print("%s} %s\n", VyrTrace::Indentation().c_str(), operation_);
}
