#pragma once

#include "HolStandardInfraExport.h"
#include "VyrProblem.h"
#include "VyrResult.h"
#include "VyrUnicodeString.h"

class VyrAnnStandardXMLNode;

/// Turns a file or a text into the three trees of a document and back. A host may install a codec
/// of its own by a factory. A codec belongs to one document (and its copies) and is used from one
/// thread at a time; it throws nothing.
///
/// Results are `S_OK`, or negative: `E_UNEXPECTED` for a codec that has not been bound or trees
/// that make no document, `E_FAIL` for an input that cannot be read or an output that cannot be
/// written.
class HOLSTANDARDINFRA_EXPORT VyrAnnStandardXMLParserCodec {
 public:
  virtual ~VyrAnnStandardXMLParserCodec() = default;

  /// Binds the codec to the top nodes of its document, once; it takes references of its own.
  /// `E_UNEXPECTED`, reported, when one is null.
  virtual HRESULT Init(VyrAnnStandardXMLNode* typeDefTop, VyrAnnStandardXMLNode* enumTop,
                       VyrAnnStandardXMLNode* rootTop) = 0;
  /// Appends what `text` (UTF-8) holds to the trees. After a failure they may hold a part of it.
  virtual HRESULT DecodeXMLString(VyrUnicodeView text) = 0;
  /// Appends what the file holds to the trees, likewise.
  virtual HRESULT DecodeXMLFile(VyrUnicodeView path) = 0;
  /// Writes the trees to a file. On failure the file is as it was.
  virtual HRESULT SaveInFile(VyrUnicodeView path) = 0;
  /// Writes the trees into `out`. On failure `out` is as it was.
  virtual HRESULT SaveInString(VyrUnicodeString& out) = 0;
  /// Why the last decode or save failed, for the one who has to mend the input; empty when it did
  /// not fail, or when the codec cannot say.
  virtual VyrProblem GetProblem() const { return {}; }
};

/// Creates the codecs of new documents, on the threads that make these.
class HOLSTANDARDINFRA_EXPORT VyrAnnStandardXMLParserCodecFactory {
 public:
  virtual ~VyrAnnStandardXMLParserCodecFactory() = default;
  /// A new codec, which the caller frees with `delete`; null, which the document reports, when none
  /// can be made.
  virtual VyrAnnStandardXMLParserCodec* CreateCodec() = 0;
};
