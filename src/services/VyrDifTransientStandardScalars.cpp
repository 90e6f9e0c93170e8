#include <type_traits>
#include <utility>

#include "ElementValue.h"
#include "VyrDifTransientStandard.h"

// Queries for one value.

template <class Value>
HRESULT VyrDifTransientStandard::GetScalar(const char* path, int index, Value& value) {
  TracedOperation traced = Traced("VyrDifTransientStandard::GetValue");
  if (path == nullptr) return E_INVALIDARG;
  ScalarCache<Value>& cache = std::get<ResultCache<Value>>(results_).scalars;
  if (const Value* const known = cache.Find(path, index)) [[likely]] {
    value = *known;
    return S_OK;
  }
  traced.KeepObject();
  const VyrIDOMNode_var node = FindNode(path, index);
  if (!node) {
    TraceLine(transientStandardTrace, "%sNo matching node found!\n");
    return E_FAIL;
  }
  ElementValue found;
  const HRESULT resolved = ReadElementValue(*node, found);
  if (resolved == S_FALSE) {
    if constexpr (std::is_same_v<Value, VyrUnicodeString>) {
      TraceLine(transientStandardTrace, "%sNo text node found!\n");
    }
    return E_FAIL;
  }
  if (VyrFailed(resolved)) return resolved;
  Value read{};
  if (const HRESULT result = ReadAs(found, read); VyrFailed(result)) return result;
  // Stored first: the caller's path may be the text that the value goes into.
  cache.Store(path, index, read);
  value = std::move(read);
  return S_OK;
}

HRESULT VyrDifTransientStandard::GetValue(const char* path, int index, VyrUnicodeString& value) {
  return GetScalar(path, index, value);
}

HRESULT VyrDifTransientStandard::GetValue(const char* path, int index, double& value) {
  return GetScalar(path, index, value);
}

HRESULT VyrDifTransientStandard::GetValue(const char* path, int index, int& value) {
  return GetScalar(path, index, value);
}
