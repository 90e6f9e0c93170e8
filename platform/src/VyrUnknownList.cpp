#include <utility>
#include <vector>

#include "VyrBaseUnknown.h"
#include "VyrIUnknownList.h"
#include "VyrInstanceCounter.h"

namespace {

class UnknownList final : public VyrImplements<VyrIUnknownList>, VyrCountedInstance<UnknownList> {
 public:
  static constexpr const char* kClassName = "VyrUnknownList";

  HRESULT Count(unsigned int* count) override {
    if (count == nullptr) return E_INVALIDARG;
    *count = static_cast<unsigned int>(objects_.size());
    return S_OK;
  }

  HRESULT Item(unsigned int index, IUnknown** object) override {
    if (object == nullptr || index >= objects_.size()) return E_INVALIDARG;
    *object = objects_[index].NewReference();
    return S_OK;
  }

  HRESULT Add(unsigned int index, IUnknown* object) override {
    if (object == nullptr || index > objects_.size()) return E_INVALIDARG;
    objects_.insert(objects_.begin() + index, VyrVar<IUnknown>::Share(object));
    return S_OK;
  }

  HRESULT RemoveAll() override {
    // An object that goes with its last reference may look at the list, which is empty by then.
    const auto removed = std::exchange(objects_, {});
    return S_OK;
  }

 private:
  std::vector<VyrVar<IUnknown>> objects_;
};

}  // namespace

VyrIUnknownList_var VyrMakeUnknownList() {
  return VyrIUnknownList_var(new UnknownList);
}
