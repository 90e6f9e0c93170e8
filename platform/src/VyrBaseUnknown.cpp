#include "VyrBaseUnknown.h"

#include <cstring>

HRESULT VyrBaseUnknown::QueryInterface(const IID& iid, void** object) {
  if (object == nullptr) return E_INVALIDARG;
  *object = iid == IUnknown::kIid ? static_cast<IUnknown*>(this) : nullptr;
  if (*object == nullptr) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

unsigned long VyrBaseUnknown::Release() {
  const unsigned int left = count_.fetch_sub(1, std::memory_order_acq_rel) - 1;
  if (left == 0) delete this;
  return left;
}

const VyrMetaClass& VyrBaseUnknown::MetaObject() {
  static constexpr VyrMetaClass meta("VyrBaseUnknown", "HolStandardInfra", nullptr, nullptr);
  return meta;
}

bool VyrMetaClass::IsAKindOf(std::string_view className) const {
  for (const VyrMetaClass* meta = this; meta != nullptr; meta = meta->base_) {
    if (className == meta->name_) return true;
  }
  return false;
}

IID VyrMetaClass::GetClassId() const {
  // Two FNV-1a hashes of the name from different starts fill the 16 bytes.
  std::uint64_t halves[2] = {14695981039346656037u, 1099511628211u};
  for (std::uint64_t& hash : halves) {
    for (const char* c = name_; *c != '\0'; ++c) {
      hash = (hash ^ static_cast<unsigned char>(*c)) * 1099511628211u;
    }
  }
  IID id{};
  id.data1 = static_cast<std::uint32_t>(halves[0]);
  id.data2 = static_cast<std::uint16_t>(halves[0] >> 32);
  id.data3 = static_cast<std::uint16_t>(halves[0] >> 48);
  std::memcpy(id.data4.data(), &halves[1], id.data4.size());
  return id;
}
