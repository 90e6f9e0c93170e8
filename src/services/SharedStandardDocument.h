#pragma once

#include <memory>
#include <mutex>

#include "VyrAnnStandardXMLParser.h"

/// A document that several objects of the host may hold, perhaps on several threads. Reading one is
/// no constant operation: wide nodes make their indexes when they are first asked.
struct SharedStandardDocument {
  VyrAnnStandardXMLParser parser;
  /// Held while the document is read. A sink of the host may come back for more of the same
  /// standard while an operation reports; waiting for itself would stop the application.
  std::recursive_mutex mutex;
};

/// The document while one operation uses it, kept alive and kept from the other threads; it may be
/// none.
class StandardDocumentInUse {
 public:
  explicit StandardDocumentInUse(const std::shared_ptr<SharedStandardDocument>& document)
      : document_(document), lock_(document ? Lock(document->mutex) : Lock()) {}

  explicit operator bool() const { return document_ != nullptr; }
  VyrAnnStandardXMLParser* operator->() const { return &document_->parser; }
  VyrAnnStandardXMLParser& operator*() const { return document_->parser; }

 private:
  using Lock = std::unique_lock<std::recursive_mutex>;

  std::shared_ptr<SharedStandardDocument> document_;
  Lock lock_;  // after the document, which must outlive it
};
