#pragma once

#include <cstdint>
#include <memory>
#include <mutex>

#include "VyrUnicodeString.h"

struct SharedStandardDocument;

/// The slot that keeps the standard which was opened last. Its operations may be called from
/// several threads.
struct StandardDocumentCache {
  using Document = std::shared_ptr<SharedStandardDocument>;

  enum Status : int { Empty = 0, Valid = 1 };

  static StandardDocumentCache& OfProcess();

  /// Whether the slot holds what a file of this path and time gave: a document, or null when the
  /// file could not be loaded.
  bool Find(VyrUnicodeView path, std::int64_t stamp, Document& document);
  /// Replaces what the slot holds. False, reported, when its status makes no sense.
  bool Store(VyrUnicodeView path, std::int64_t stamp, Document document);
  void Release();

  std::mutex mutex;
  Document cachedParser;
  VyrUnicodeString cachedPath;
  std::int64_t cachedStamp = 0;  ///< modification time of the file
  int cacheStatus = Empty;
};
