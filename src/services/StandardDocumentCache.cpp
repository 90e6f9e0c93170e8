#include "StandardDocumentCache.h"

#include <utility>

#include "SharedStandardDocument.h"
#include "VyrAnnStandardServicesUnit.h"

// A replaced document dies, if nobody else uses it, after the lock was given back: that takes time.

StandardDocumentCache& StandardDocumentCache::OfProcess() {
  // Kept to the end of the process: static objects of a host may open standards in their end.
  static auto* const cache = new StandardDocumentCache();
  return *cache;
}

bool StandardDocumentCache::Find(VyrUnicodeView path, std::int64_t stamp, Document& document) {
  const std::lock_guard lock(mutex);
  if (cacheStatus != Valid || cachedStamp != stamp || cachedPath.View() != path) return false;
  document = cachedParser;
  return true;
}

bool StandardDocumentCache::Store(VyrUnicodeView path, std::int64_t stamp, Document document) {
  {
    const std::lock_guard lock(mutex);
    if (cacheStatus <= Valid) {
      cachedParser.swap(document);
      cachedPath = path;
      cachedStamp = stamp;
      cacheStatus = Valid;
      return true;
    }
  }
  kStandardServicesUnit.Raise("Cache status is invalid!");
  return false;
}

void StandardDocumentCache::Release() {
  Document released;
  const std::lock_guard lock(mutex);
  released.swap(cachedParser);
  cacheStatus = Empty;
}
