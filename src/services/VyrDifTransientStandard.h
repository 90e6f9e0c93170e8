#pragma once

#include <optional>
#include <string_view>
#include <tuple>
#include <vector>

#include "RecentMatches.h"
#include "ResultCache.h"
#include "VyrBaseUnknown.h"
#include "VyrDifTransientStandardUnit.h"
#include "VyrIDftStandard.h"
#include "VyrIDftStyleManager.h"
#include "VyrIDrwStandard.h"
#include "VyrIHolStandard.h"
#include "VyrInstanceCounter.h"
#include "VyrOmxKeyValueBlock.h"
#include "VyrXMLDOM.h"

/// One standard file, read once and then only asked: the object behind the interfaces of a
/// standard. Made by `VyrDftStandardServices` alone.
class VyrDifTransientStandard
    : public VyrFrameworkClass<
          VyrDifTransientStandard,
          VyrImplements<VyrIDftStandard, VyrIDftStyleManager, VyrIHolStandard, VyrIDrwStandard>>,
      VyrCountedInstance<VyrDifTransientStandard> {
 public:
  static constexpr const char* kClassName = "VyrDifTransientStandard";
  static constexpr const char* kLibrary = "HolStandardInfra";

  VyrDifTransientStandard(const VyrUnicodeString& fileName, const VyrUnicodeString& name);

  // The order of these operations is the order of the object's own table, which modules built
  // against earlier releases count on.
  HRESULT GetName(unsigned short** name) override;
  HRESULT GetName(VyrUnicodeString& name) override;
  HRESULT GetParentStandard(unsigned short** name) override;
  HRESULT GetParentStandard(VyrUnicodeString& name) override;
  unsigned char HasNode(const char* path) override;
  HRESULT GetValue(const char* path, int index, VyrUnicodeString& value) override;
  HRESULT GetValue(const char* path, VyrUnicodeString** values, int* count) override;
  HRESULT GetValue(const char* path, int index, double& value) override;
  HRESULT GetValue(const char* path, double* values, int* count) override;
  HRESULT GetValue(const char* path, int index, int& value) override;
  HRESULT GetValue(const char* path, int* values, int* count) override;
  HRESULT ReservedA() override { return ToBeImplemented(); }
  HRESULT GetValueType(const char* path, VyrDftStandardValueType* type) override;
  HRESULT GetValueType(const char* path, VyrDftStandardValueType* type, int* count) override;
  HRESULT GetLineThicknessIndex(double thicknessMm, int* index) override;
  HRESULT ReservedB() override { return ToBeImplemented(); }
  HRESULT ReservedC() override { return ToBeImplemented(); }
  HRESULT ReservedD() override { return ToBeImplemented(); }
  HRESULT GetVersion(int* version) override;
  int GetVersion() override;
  HRESULT GetAnnotationMode(int* mode) override;
  HRESULT ReservedE() override { return ToBeImplemented(); }
  HRESULT ReservedF() override { return ToBeImplemented(); }
  HRESULT ReservedG() override { return ToBeImplemented(); }
  HRESULT ReservedH() override { return ToBeImplemented(); }
  HRESULT ReservedI() override { return ToBeImplemented(); }
  HRESULT ReservedJ() override { return ToBeImplemented(); }
  HRESULT ReservedK() override { return ToBeImplemented(); }
  HRESULT ReservedL() override { return ToBeImplemented(); }
  HRESULT ReservedM() override { return ToBeImplemented(); }
  HRESULT GetStylesNames(const char* type, VyrListValVyrUnicodeString* names) override;
  HRESULT GetStylePath(char** first, char** second, char** standardName) override;
  HRESULT GetStyle(const unsigned short* name, const unsigned short* type,
                   VyrIDftStyle** style) override;
  HRESULT GetAvailableStyles(const unsigned short* type, VyrIUnknownList** list,
                             const unsigned short* extra) override;
  HRESULT ReservedN() override { return ToBeImplemented(); }
  HRESULT GetCurrentStyle(const unsigned short* type, unsigned short** name,
                          const unsigned short* extra) override;
  HRESULT SetCurrentStyle(const unsigned short* type, const unsigned short* name,
                          const unsigned short* extra) override;
  HRESULT ReservedO() override { return ToBeImplemented(); }
  /// Appends the style objects of a type, or of every type when it is empty. Styles that cannot be
  /// made are left out.
  virtual HRESULT FillAvailableStyles(const VyrUnicodeString& type, VyrIUnknownList* list);
  /// Name of the style that is set for a type, "Default" where none is. `E_UNEXPECTED`, reported,
  /// for an empty name.
  virtual HRESULT FindCurrentStyle(const VyrUnicodeString& type, VyrUnicodeString& name);
  /// `E_UNEXPECTED` for an empty type.
  virtual HRESULT StoreCurrentStyle(const VyrUnicodeString& type, const VyrUnicodeString& name);
  /// Reads the file, once. A failure is reported with the file, the line and the reason.
  virtual HRESULT Load();

 protected:
  ~VyrDifTransientStandard() override = default;

 private:
  static constexpr int kUnknownVersion = -1;

  static HRESULT ToBeImplemented();
  TracedOperation Traced(const char* operation) {
    return {transientStandardTrace, operation, name_, *this};
  }
  IUnknown* AsUnknown() { return static_cast<VyrIDftStandard*>(this); }

  // Operations that search keep this object first: a search may report.

  /// The nodes that a path finds. Null, reported, when the path makes no valid search; null for a
  /// standard without a document, of which loading told.
  MatchedNodes FindNodes(std::string_view path);
  /// The node at a 1-based index, null when there is none.
  VyrIDOMNode_var FindNode(std::string_view path, int index);
  bool Search(std::string_view path, StandardNodes& nodes);

  template <class Value>
  HRESULT GetScalar(const char* path, int index, Value& value);
  /// `values` is borrowed until the next query, trace or report.
  template <class Value>
  HRESULT GetArray(TracedOperation& traced, const char* path, const std::vector<Value>*& values);
  template <class Number>
  HRESULT GetNumbers(const char* path, Number* values, int* count);
  bool ReadThicknesses(std::vector<double>& thicknesses);

  HRESULT MakeStyle(const VyrUnicodeString& name, const VyrUnicodeString& type,
                    VyrIDftStyle_var& style);

  VyrIDOMDocument_var document_;
  VyrUnicodeString name_;
  VyrUnicodeString fileName_;
  int version_ = kUnknownVersion;
  VyrOmxKeyValueBlock currentStyles_;
  std::tuple<ResultCache<int>, ResultCache<double>, ResultCache<VyrUnicodeString>> results_;
  RecentMatches recentMatches_;
  std::optional<std::vector<double>> thicknesses_;
};
