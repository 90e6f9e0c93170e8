#pragma once

#include <string>

#include "HolStandardInfraExport.h"
#include "VyrBaseUnknown.h"
#include "VyrIDftStyle.h"
#include "VyrIDftStyleManager.h"
#include "VyrIDrwStandard.h"
#include "VyrInstanceCounter.h"

/// A style of a standard: answers by asking the standard below the style's own path, which is the
/// type and the name ("Text.Default." and the caller's path). Reference-counted; holds a reference
/// to its standard. Used from one thread at a time, together with that.
class HOLSTANDARDINFRA_EXPORT VyrDifDftStyle
    : public VyrFrameworkClass<VyrDifDftStyle, VyrImplements<VyrIDftStyle>>,
      VyrCountedInstance<VyrDifDftStyle> {
 public:
  static constexpr const char* kClassName = "VyrDifDftStyle";  ///< of the meta-class
  static constexpr const char* kLibrary = "HolStandardInfra";  ///< of the meta-class

  /// A style of no standard, as the object framework makes it, with one reference for its creator.
  VyrDifDftStyle() = default;

  HRESULT GetName(unsigned short** name) override;
  HRESULT GetType(unsigned short** type) override;
  HRESULT GetValue(const char* path, int index, int& value) override;
  HRESULT GetValue(const char* path, int index, double& value) override;
  HRESULT GetValue(const char* path, int index, VyrUnicodeString& value) override;
  HRESULT GetValue(const char* path, int* values, int* count) override;
  HRESULT GetValue(const char* path, double* values, int* count) override;
  HRESULT GetValue(const char* path, VyrUnicodeString** values, int* count) override;
  HRESULT GetValueType(const char* path, VyrDftStandardValueType* type, int* count) override;
  unsigned char HasNode(const char* path) override;
  int GetStdVersion() override;
  HRESULT GetStyleManager(VyrIDftStyleManager** manager) override;
  /// Makes it the style `name` of the objects of `type` ("Text", ...), once; takes a reference to
  /// `standard`. `E_INVALIDARG` for a null standard, `E_FAIL` the second time. Whether the standard
  /// has such a style is told by the queries alone.
  virtual HRESULT Initialize(VyrIDrwStandard_var& standard, VyrUnicodeString name,
                             VyrUnicodeString type);

 protected:
  ~VyrDifDftStyle() override = default;

 private:
  template <class... Arguments>
  HOLSTANDARDINFRA_NO_EXPORT HRESULT Forward(const char* operation,
                                             HRESULT (VyrIDrwStandard::*query)(const char*,
                                                                               Arguments...),
                                             const char* path, Arguments... arguments);

  VyrIDrwStandard_var standard_;
  VyrUnicodeString name_;
  VyrUnicodeString type_;
  std::string prefix_;  ///< the style's own path, with the "." that ends it
};
