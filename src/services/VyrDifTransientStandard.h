#pragma once

#include "VyrBaseUnknown.h"
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
  HRESULT ReservedA() override;
  HRESULT GetValueType(const char* path, VyrDftStandardValueType* type) override;
  HRESULT GetValueType(const char* path, VyrDftStandardValueType* type, int* count) override;
  HRESULT GetLineThicknessIndex(double thicknessMm, int* index) override;
  HRESULT ReservedB() override;
  HRESULT ReservedC() override;
  HRESULT ReservedD() override;
  HRESULT GetVersion(int* version) override;
  int GetVersion() override;
  HRESULT GetAnnotationMode(int* mode) override;
  HRESULT ReservedE() override;
  HRESULT ReservedF() override;
  HRESULT ReservedG() override;
  HRESULT ReservedH() override;
  HRESULT ReservedI() override;
  HRESULT ReservedJ() override;
  HRESULT ReservedK() override;
  HRESULT ReservedL() override;
  HRESULT ReservedM() override;
  HRESULT GetStylesNames(const char* type, VyrListValVyrUnicodeString* names) override;
  HRESULT GetStylePath(char** first, char** second, char** standardName) override;
  HRESULT GetStyle(const unsigned short* name, const unsigned short* type,
                   VyrIDftStyle** style) override;
  HRESULT GetAvailableStyles(const unsigned short* type, VyrIUnknownList** list,
                             const unsigned short* extra) override;
  HRESULT ReservedN() override;
  HRESULT GetCurrentStyle(const unsigned short* type, unsigned short** name,
                          const unsigned short* extra) override;
  HRESULT SetCurrentStyle(const unsigned short* type, const unsigned short* name,
                          const unsigned short* extra) override;
  HRESULT ReservedO() override;
};
