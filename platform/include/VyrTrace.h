#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <string_view>

#include "HolStandardInfraExport.h"

/// A named stream of trace lines, off until the host switches it on. An operation asks `IsOn`
/// first, so that a channel that is off costs one branch and formats nothing.
///
/// Channels are static objects of the library: they are made when it loads, where a host finds them
/// by name. They may be switched and written to from any thread.
class HOLSTANDARDINFRA_EXPORT VyrTrace {
 public:
  /// `name`, `title` and `destination` must outlive the process. Lines go to `destination`
  /// ("STDERR": the trace sink) and are cut at `lineSize` bytes, their end included; 0: never.
  VyrTrace(const char* name, const char* title, int level = 0, const char* destination = "STDERR",
           int lineSize = 0);
  VyrTrace(const VyrTrace&) = delete;
  VyrTrace& operator=(const VyrTrace&) = delete;
  ~VyrTrace();

  /// Whether lines are written. Off at first.
  bool IsOn() const { return on_.load(std::memory_order_relaxed); }
  /// Switches the channel on or off.
  void Switch(bool on) { on_.store(on, std::memory_order_relaxed); }
  /// The name by which a host asks for the channel.
  const char* GetName() const { return name_; }
  /// What the channel tells of, in a few words.
  const char* GetTitle() const { return title_; }

  /// The blanks that begin a line inside the blocks which are open on this thread: two a block.
  static std::string Indentation();
  /// Formats a line as `printf` does and sends it to the trace sink; nothing while the channel is
  /// off. The line end at its end belongs to the format; whatever else a terminal would obey shows
  /// as an escape.
  void Print(const char* format, ...) __attribute__((format(printf, 2, 3)));

  /// The channel of that name, borrowed; null when there is none.
  static VyrTrace* Find(std::string_view name);
  /// Calls `visit` for every channel of the process.
  static void ForEach(const std::function<void(VyrTrace&)>& visit);

 private:
  friend class VyrTraceBlock;
  static int& Depth();

  const char* name_;
  const char* title_;
  [[maybe_unused]] int level_;
  [[maybe_unused]] const char* destination_;
  int lineSize_;
  std::atomic<bool> on_{false};
};

/// Traces the start and the end of an operation and indents what is traced between them on this
/// thread. Does nothing at all when the channel is off as the block begins.
class HOLSTANDARDINFRA_EXPORT VyrTraceBlock {
 public:
  /// `channel` and `operation` must outlive the block.
  VyrTraceBlock(VyrTrace& channel, const char* operation);
  VyrTraceBlock(const VyrTraceBlock&) = delete;
  VyrTraceBlock& operator=(const VyrTraceBlock&) = delete;
  ~VyrTraceBlock();

 private:
  VyrTrace* channel_;
  const char* operation_;
};
