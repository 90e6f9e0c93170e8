#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "VyrBaseUnknown.h"
#include "VyrIDftElementWithStandard.h"
#include "VyrIDftElementWithStyle.h"
#include "VyrIDftStyle.h"
#include "VyrIDftStyleManager.h"
#include "VyrIVisProperties.h"
#include "VyrInstanceCounter.h"

// Stand-ins for the objects around the style toolbox. They are counted: none may be lost.

/// A style that holds what its maps hold, under whole paths.
class FakeStyle final : public VyrImplements<VyrIDftStyle>, VyrCountedInstance<FakeStyle> {
 public:
  static constexpr const char* kClassName = "FakeStyle";

  std::map<std::string, int> ints;
  std::map<std::string, std::string> texts;
  std::map<std::string, std::vector<int>> arrays;
  std::vector<std::string> asked;  ///< paths of all queries

  HRESULT GetName(unsigned short**) override { return E_NOTIMPL; }
  HRESULT GetType(unsigned short**) override { return E_NOTIMPL; }
  HRESULT GetValue(const char* path, int index, int& value) override {
    return Find(ints, path, index, value);
  }
  HRESULT GetValue(const char*, int, double&) override { return E_FAIL; }
  HRESULT GetValue(const char* path, int index, VyrUnicodeString& value) override {
    return Find(texts, path, index, value);
  }
  HRESULT GetValue(const char* path, int* values, int* count) override {
    asked.emplace_back(path);
    const auto found = arrays.find(path);
    if (found == arrays.end()) return E_FAIL;
    if (values != nullptr) std::copy(found->second.begin(), found->second.end(), values);
    *count = static_cast<int>(found->second.size());
    return S_OK;
  }
  HRESULT GetValue(const char*, double*, int*) override { return E_FAIL; }
  HRESULT GetValue(const char*, VyrUnicodeString**, int*) override { return E_FAIL; }
  HRESULT GetValueType(const char*, VyrDftStandardValueType*, int*) override { return E_FAIL; }
  unsigned char HasNode(const char*) override { return 0; }
  int GetStdVersion() override { return 220; }
  HRESULT GetStyleManager(VyrIDftStyleManager**) override { return E_NOTIMPL; }

 private:
  template <class Held, class Value>
  HRESULT Find(const std::map<std::string, Held>& held, const char* path, int index, Value& value) {
    asked.emplace_back(path);
    const auto found = held.find(path);
    if (found == held.end() || index != 1) return E_FAIL;
    value = found->second;
    return S_OK;
  }
};

/// A standard without styles.
class FakePlainStandard final : public VyrImplements<VyrIDftStandard>,
                                VyrCountedInstance<FakePlainStandard> {
 public:
  static constexpr const char* kClassName = "FakePlainStandard";

  HRESULT GetName(unsigned short**) override { return E_NOTIMPL; }
  HRESULT GetParentStandard(unsigned short**) override { return E_NOTIMPL; }
  HRESULT GetValueType(const char*, VyrDftStandardValueType*, int*) override { return E_FAIL; }
  HRESULT GetValue(const char*, int, VyrUnicodeString&) override { return E_FAIL; }
  HRESULT GetValue(const char*, VyrUnicodeString**, int*) override { return E_FAIL; }
  HRESULT GetValue(const char*, int, double&) override { return E_FAIL; }
  HRESULT GetValue(const char*, double*, int*) override { return E_FAIL; }
  HRESULT GetValue(const char*, int, int&) override { return E_FAIL; }
  HRESULT GetValue(const char*, int*, int*) override { return E_FAIL; }
  HRESULT ReservedA() override { return E_NOTIMPL; }
};

/// A standard that hands out one style and remembers what it was asked for.
class FakeStandard final : public VyrImplements<VyrIDftStandard, VyrIDftStyleManager>,
                           VyrCountedInstance<FakeStandard> {
 public:
  static constexpr const char* kClassName = "FakeStandard";

  int version = 220;
  HRESULT versionResult = S_OK;
  HRESULT styleResult = S_OK;
  HRESULT currentStyleResult = S_OK;
  std::string currentStyle = "Default";
  VyrIDftStyle_var style = VyrIDftStyle_var(new FakeStyle);
  std::string askedType, askedName, askedCurrentType, askedExtra;

  HRESULT GetName(unsigned short**) override { return E_NOTIMPL; }
  HRESULT GetParentStandard(unsigned short**) override { return E_NOTIMPL; }
  HRESULT GetValueType(const char*, VyrDftStandardValueType*, int*) override { return E_FAIL; }
  HRESULT GetValue(const char*, int, VyrUnicodeString&) override { return E_FAIL; }
  HRESULT GetValue(const char*, VyrUnicodeString**, int*) override { return E_FAIL; }
  HRESULT GetValue(const char*, int, double&) override { return E_FAIL; }
  HRESULT GetValue(const char*, double*, int*) override { return E_FAIL; }
  HRESULT GetValue(const char*, int, int&) override { return E_FAIL; }
  HRESULT GetValue(const char*, int*, int*) override { return E_FAIL; }
  HRESULT ReservedA() override { return E_NOTIMPL; }

  HRESULT GetStyle(const unsigned short* name, const unsigned short* type,
                   VyrIDftStyle** found) override {
    askedName = VyrUnicodeString(name).View();
    askedType = VyrUnicodeString(type).View();
    if (VyrSucceeded(styleResult)) *found = style.NewReference();
    return styleResult;
  }
  HRESULT GetAvailableStyles(const unsigned short*, VyrIUnknownList**,
                             const unsigned short*) override {
    return E_NOTIMPL;
  }
  HRESULT ReservedN() override { return E_NOTIMPL; }
  HRESULT GetVersion(int* found) override {
    *found = version;
    return versionResult;
  }
  HRESULT GetCurrentStyle(const unsigned short* type, unsigned short** name,
                          const unsigned short* extra) override {
    askedCurrentType = VyrUnicodeString(type).View();
    askedExtra = VyrUnicodeString(extra).View();
    *name = VyrUnicodeString(currentStyle).NewUtf16Copy();
    return currentStyleResult;
  }
  HRESULT SetCurrentStyle(const unsigned short*, const unsigned short*,
                          const unsigned short*) override {
    return E_NOTIMPL;
  }
  HRESULT ReservedO() override { return E_NOTIMPL; }
};

/// An element that follows a standard and nothing more.
class FakePlainElement final : public VyrImplements<VyrIDftElementWithStandard>,
                               VyrCountedInstance<FakePlainElement> {
 public:
  static constexpr const char* kClassName = "FakePlainElement";

  explicit FakePlainElement(VyrIDftStandard_var standard) : standard_(std::move(standard)) {}

  HRESULT GetStandard(VyrIDftStandard** standard) override {
    *standard = standard_.NewReference();
    return S_OK;
  }

 private:
  VyrIDftStandard_var standard_;
};

/// An element that follows a standard and looks as a style says.
class FakeDraftingElement final
    : public VyrImplements<VyrIDftElementWithStandard, VyrIDftElementWithStyle, VyrIVisProperties>,
      VyrCountedInstance<FakeDraftingElement> {
 public:
  static constexpr const char* kClassName = "FakeDraftingElement";

  explicit FakeDraftingElement(VyrIDftStandard_var given = {}) : standard(std::move(given)) {}

  VyrIDftStandard_var standard;
  HRESULT standardResult = S_OK;

  HRESULT applyResult = S_OK;
  std::vector<VyrIDftStyle*> applied;  ///< never looked into
  DftStyleApplyMode mode = DftStyleApplyAll;
  DftStyleApplyContext context = DftStyleOnCreation;

  /// What it shows, and with which properties.
  std::map<VyrVisGeometryType, VyrVisPropertiesValues> shown;
  /// Changes what is written before it is kept.
  std::function<void(VyrVisPropertiesValues&)> onWrite;
  HRESULT presenceResult = S_OK;
  HRESULT readResult = S_OK;
  HRESULT writeResult = S_OK;
  HRESULT readBackResult = S_OK;  ///< of reads that follow a write
  std::vector<VyrVisGeometryType> written;
  std::vector<VyrVisPropertyType> kinds;  ///< of every operation

  HRESULT GetStandard(VyrIDftStandard** found) override {
    *found = standard.NewReference();
    return standardResult;
  }
  HRESULT ApplyStyle(VyrIDftStyle* style, DftStyleApplyMode givenMode,
                     DftStyleApplyContext givenContext) override {
    applied.push_back(style);
    mode = givenMode;
    context = givenContext;
    return applyResult;
  }
  HRESULT IsPropertyOnGeometryType(VyrVisPropertyType property,
                                   VyrVisGeometryType geometry) override {
    kinds.push_back(property);
    if (VyrFailed(presenceResult)) return presenceResult;
    return shown.contains(geometry) ? S_OK : S_FALSE;
  }
  HRESULT GetPropertiesAtt(VyrVisPropertyType property, VyrVisGeometryType geometry,
                           VyrVisPropertiesValues& values) override {
    kinds.push_back(property);
    const HRESULT result = written.empty() ? readResult : readBackResult;
    if (VyrSucceeded(result)) values = shown.at(geometry);
    return result;
  }
  HRESULT SetPropertiesAtt(VyrVisPropertyType property, VyrVisGeometryType geometry,
                           const VyrVisPropertiesValues& values) override {
    kinds.push_back(property);
    written.push_back(geometry);
    if (VyrFailed(writeResult)) return writeResult;
    VyrVisPropertiesValues& kept = shown.at(geometry) = values;
    if (onWrite) onWrite(kept);
    return S_OK;
  }
};
