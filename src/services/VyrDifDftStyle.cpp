#include "VyrDifDftStyle.h"

#include <cstring>
#include <string_view>
#include <utility>

#include "TracedOperation.h"
#include "VyrDiagnostics.h"

namespace {

constexpr VyrSourceUnit kUnit("VyrDifDftStyle");
VyrTrace styleTrace("DifFeatContStd", "VyrDifDftStyle traces");

/// What a standard without a known version says, too.
constexpr int kUnknownVersion = -1;

/// A path with what stands before it, on the stack as long as it has a usual length: queries of
/// styles are many. It is the query's own, as the host may ask the same style while it runs.
class JoinedPath {
 public:
  JoinedPath(std::string_view prefix, std::string_view path) {
    const std::size_t size = prefix.size() + path.size();
    if (size < sizeof usual_) {
      std::memcpy(usual_, prefix.data(), prefix.size());
      std::memcpy(usual_ + prefix.size(), path.data(), path.size());
      usual_[size] = '\0';
    } else {
      long_.append(prefix).append(path);
    }
  }
  const char* CString() const { return long_.empty() ? usual_ : long_.c_str(); }

 private:
  char usual_[256];
  std::string long_;
};

}  // namespace

HRESULT VyrDifDftStyle::Initialize(VyrIDrwStandard_var& standard, VyrUnicodeString name,
                                   VyrUnicodeString type) {
  const TracedOperation traced(styleTrace, "VyrDifDftStyle::Initialize", name, *this);
  if (standard_) return E_FAIL;
  if (!standard) return E_INVALIDARG;
  standard_ = standard;
  name_ = std::move(name);
  type_ = std::move(type);
  prefix_.append(type_.View()).append(".").append(name_.View()).append(".");
  return S_OK;
}

HRESULT VyrDifDftStyle::GetName(unsigned short** name) {
  const TracedOperation traced(styleTrace, "VyrDifDftStyle::GetName", name_, *this);
  if (name == nullptr) return E_INVALIDARG;
  *name = name_.NewUtf16Copy();
  return S_OK;
}

HRESULT VyrDifDftStyle::GetType(unsigned short** type) {
  const TracedOperation traced(styleTrace, "VyrDifDftStyle::GetType", name_, *this);
  if (type == nullptr) return E_INVALIDARG;
  *type = type_.NewUtf16Copy();
  return S_OK;
}

template <class... Arguments>
HRESULT VyrDifDftStyle::Forward(const char* operation,
                                HRESULT (VyrIDrwStandard::*query)(const char*, Arguments...),
                                const char* path, Arguments... arguments) {
  const TracedOperation traced(styleTrace, operation, name_, *this);
  if (!standard_) return E_FAIL;
  if (path == nullptr) return E_INVALIDARG;
  const JoinedPath whole(prefix_, path);
  return (standard_.Get()->*query)(whole.CString(), std::forward<Arguments>(arguments)...);
}

HRESULT VyrDifDftStyle::GetValue(const char* path, int index, int& value) {
  return Forward<int, int&>("VyrDifDftStyle::GetValue", &VyrIDrwStandard::GetValue, path, index,
                            value);
}

HRESULT VyrDifDftStyle::GetValue(const char* path, int index, double& value) {
  return Forward<int, double&>("VyrDifDftStyle::GetValue", &VyrIDrwStandard::GetValue, path, index,
                               value);
}

HRESULT VyrDifDftStyle::GetValue(const char* path, int index, VyrUnicodeString& value) {
  return Forward<int, VyrUnicodeString&>("VyrDifDftStyle::GetValue", &VyrIDrwStandard::GetValue,
                                         path, index, value);
}

HRESULT VyrDifDftStyle::GetValue(const char* path, int* values, int* count) {
  return Forward<int*, int*>("VyrDifDftStyle::GetValue", &VyrIDrwStandard::GetValue, path, values,
                             count);
}

HRESULT VyrDifDftStyle::GetValue(const char* path, double* values, int* count) {
  return Forward<double*, int*>("VyrDifDftStyle::GetValue", &VyrIDrwStandard::GetValue, path,
                                values, count);
}

HRESULT VyrDifDftStyle::GetValue(const char* path, VyrUnicodeString** values, int* count) {
  return Forward<VyrUnicodeString**, int*>("VyrDifDftStyle::GetValue", &VyrIDrwStandard::GetValue,
                                           path, values, count);
}

HRESULT VyrDifDftStyle::GetValueType(const char* path, VyrDftStandardValueType* type, int* count) {
  return Forward<VyrDftStandardValueType*, int*>("VyrDifDftStyle::GetValueType",
                                                 &VyrIDrwStandard::GetValueType, path, type, count);
}

unsigned char VyrDifDftStyle::HasNode(const char* path) {
  const TracedOperation traced(styleTrace, "VyrDifDftStyle::HasNode", name_, *this);
  // The path goes as it is, unlike those of the queries: callers ask for nodes outside the style.
  return standard_ ? standard_->HasNode(path) : 0;
}

int VyrDifDftStyle::GetStdVersion() {
  const TracedOperation traced(styleTrace, "VyrDifDftStyle::GetStdVersion", name_, *this);
  return standard_ ? standard_->GetVersion() : kUnknownVersion;
}

HRESULT VyrDifDftStyle::GetStyleManager(VyrIDftStyleManager** manager) {
  const TracedOperation traced(styleTrace, "VyrDifDftStyle::GetStyleManager", name_, *this);
  if (manager == nullptr || *manager != nullptr) return E_INVALIDARG;
  auto found = VyrQuery<VyrIDftStyleManager>(standard_.Get());
  if (!kUnit.CheckPointer(found.Get())) return E_UNEXPECTED;
  *manager = found.Detach();
  return S_OK;
}
