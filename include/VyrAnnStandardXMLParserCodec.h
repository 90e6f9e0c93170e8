#pragma once

#include "HolStandardInfraExport.h"
#include "VyrProblem.h"
#include "VyrResult.h"
#include "VyrUnicodeString.h"

class VyrAnnStandardXMLNode;

/// Turns a file or a text into the three trees of a document and back. A host may install a codec
/// of its own by a factory. A codec belongs to one document (and its copies) and is used from one
/// thread at a time; it throws nothing.
class HOLSTANDARDINFRA_EXPORT VyrAnnStandardXMLParserCodec {
 public:
  virtual ~VyrAnnStandardXMLParserCodec() = default;

  /// Binds the codec to the top nodes of its document; it takes references of its own.
  virtual HRESULT Init(VyrAnnStandardXMLNode* typeDefTop, VyrAnnStandardXMLNode* enumTop,
                       VyrAnnStandardXMLNode* rootTop) = 0;
  /// Appends what `text` (UTF-8) holds to the trees.
  virtual HRESULT DecodeXMLString(VyrUnicodeView text) = 0;
  /// Appends what the file holds to the trees.
  virtual HRESULT DecodeXMLFile(VyrUnicodeView path) = 0;
  /// Writes the trees to a file. On failure the file is as it was.
  virtual HRESULT SaveInFile(VyrUnicodeView path) = 0;
  /// Writes the trees into `out`. On failure `out` is as it was.
  virtual HRESULT SaveInString(VyrUnicodeString& out) = 0;
  /// Why the last decode or save failed, for the one who has to mend the input; empty when it did
  /// not fail, or when the codec cannot say.
  virtual VyrProblem GetProblem() const { return {}; }
};

/// Creates the codecs of new documents.
class HOLSTANDARDINFRA_EXPORT VyrAnnStandardXMLParserCodecFactory {
 public:
  virtual ~VyrAnnStandardXMLParserCodecFactory() = default;
  /// A new codec, owned by the caller.
  virtual VyrAnnStandardXMLParserCodec* CreateCodec() = 0;
};
