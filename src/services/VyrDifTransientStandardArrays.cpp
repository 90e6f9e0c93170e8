#include <algorithm>
#include <utility>

#include "ElementValue.h"
#include "VyrDifTransientStandard.h"

// Queries for all values that a path finds.

template <class Value>
HRESULT VyrDifTransientStandard::GetArray(TracedOperation& traced, const char* path,
                                          const std::vector<Value>*& values) {
  ArrayCache<Value>& cache = std::get<ResultCache<Value>>(results_).arrays;
  values = cache.Find(path);
  if (values != nullptr) return S_OK;
  traced.KeepObject();
  const MatchedNodes nodes = FindNodes(path);
  if (nodes == nullptr || nodes->empty()) {
    TraceLine(transientStandardTrace, "%sNo matching node found!\n");
    return E_FAIL;
  }
  std::vector<Value> read;
  read.reserve(nodes->size());
  for (const VyrIDOMNode_var& node : *nodes) {
    ElementValue found;
    const HRESULT resolved = ReadElementValue(*node, found);
    if (resolved == S_FALSE) return E_FAIL;
    if (VyrFailed(resolved)) return resolved;
    if (const HRESULT appended = AppendAs(found, read); VyrFailed(appended)) return appended;
  }
  values = &cache.Store(path, std::move(read));
  return S_OK;
}

HRESULT VyrDifTransientStandard::GetValue(const char* path, VyrUnicodeString** values, int* count) {
  TracedOperation traced = Traced("VyrDifTransientStandard::GetValue");
  if (path == nullptr || values == nullptr || count == nullptr) return E_INVALIDARG;
  const std::vector<VyrUnicodeString>* found = nullptr;
  if (const HRESULT result = GetArray(traced, path, found); VyrFailed(result)) return result;
  *values = new VyrUnicodeString[found->size()];
  std::copy(found->begin(), found->end(), *values);
  *count = static_cast<int>(found->size());
  return S_OK;
}

HRESULT VyrDifTransientStandard::GetValue(const char* path, double* values, int* count) {
  return GetNumbers(path, values, count);
}

HRESULT VyrDifTransientStandard::GetValue(const char* path, int* values, int* count) {
  return GetNumbers(path, values, count);
}

template <class Number>
HRESULT VyrDifTransientStandard::GetNumbers(const char* path, Number* values, int* count) {
  TracedOperation traced = Traced("VyrDifTransientStandard::GetValue");
  if (path == nullptr || count == nullptr) return E_INVALIDARG;
  const std::vector<Number>* found = nullptr;
  if (const HRESULT result = GetArray(traced, path, found); VyrFailed(result)) return result;
  if (values != nullptr) std::copy(found->begin(), found->end(), values);
  *count = static_cast<int>(found->size());
  return S_OK;
}
