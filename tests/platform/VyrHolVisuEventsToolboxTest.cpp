#include <gtest/gtest.h>

#include <utility>

#include "VyrBaseUnknown.h"
#include "VyrHolVisuEventsToolbox.h"

namespace {

class Element final : public VyrImplements<VyrIVisProperties> {
 public:
  HRESULT IsPropertyOnGeometryType(VyrVisPropertyType, VyrVisGeometryType) override { return S_OK; }
  HRESULT GetPropertiesAtt(VyrVisPropertyType, VyrVisGeometryType,
                           VyrVisPropertiesValues&) override {
    return S_OK;
  }
  HRESULT SetPropertiesAtt(VyrVisPropertyType, VyrVisGeometryType,
                           const VyrVisPropertiesValues&) override {
    return S_OK;
  }
};

class VisuEvents : public testing::Test {
 protected:
  VisuEvents() : previous_(VyrHolVisuEventsToolbox::SetModifyListener({})) {}
  ~VisuEvents() override { VyrHolVisuEventsToolbox::SetModifyListener(std::move(previous_)); }

  HRESULT Dispatch() {
    return VyrHolVisuEventsToolbox::DispatchModifyVisProperties(element.Get(), VyrVisAllProperties,
                                                                VyrVisPoints, values);
  }

  VyrVar<Element> element{new Element};
  VyrVisPropertiesValues values{1, 2, 3, VyrVisColor{4, 5, 6}};

 private:
  VyrHolVisuEventsToolbox::ModifyListener previous_;
};

TEST_F(VisuEvents, AreDispatchedToNobodyWithoutAListener) {
  EXPECT_EQ(Dispatch(), S_OK);
}

TEST_F(VisuEvents, ReachTheListenerAsTheyAre) {
  int calls = 0;
  VyrHolVisuEventsToolbox::SetModifyListener(
      [&](VyrIVisProperties* changed, VyrVisPropertyType property, VyrVisGeometryType geometry,
          const VyrVisPropertiesValues& given) {
        ++calls;
        EXPECT_EQ(changed, element.Get());
        EXPECT_EQ(property, VyrVisAllProperties);
        EXPECT_EQ(geometry, VyrVisPoints);
        EXPECT_EQ(given, values);
        return S_FALSE;
      });
  EXPECT_EQ(Dispatch(), S_FALSE) << "what the listener answers";
  EXPECT_EQ(calls, 1);
}

TEST_F(VisuEvents, OfNoElementAreInvalid) {
  int calls = 0;
  VyrHolVisuEventsToolbox::SetModifyListener([&](auto&&...) { return ++calls, S_OK; });
  EXPECT_EQ(VyrHolVisuEventsToolbox::DispatchModifyVisProperties(nullptr, VyrVisAllProperties,
                                                                 VyrVisPoints, values),
            E_INVALIDARG);
  EXPECT_EQ(calls, 0);
}

TEST_F(VisuEvents, ListenerOfBeforeIsHandedOut) {
  VyrHolVisuEventsToolbox::SetModifyListener([](auto&&...) { return E_FAIL; });
  const auto first =
      VyrHolVisuEventsToolbox::SetModifyListener([](auto&&...) { return E_NOTIMPL; });
  EXPECT_EQ(Dispatch(), E_NOTIMPL);
  VyrHolVisuEventsToolbox::SetModifyListener(first);
  EXPECT_EQ(Dispatch(), E_FAIL);
}

TEST_F(VisuEvents, ListenerMayInstallAnother) {
  // Larger than what a function object holds in place, so that replacing it frees its memory.
  struct {
    HRESULT result = S_FALSE;
    char room[200] = {};
  } state;
  VyrHolVisuEventsToolbox::SetModifyListener([state](auto&&...) {
    VyrHolVisuEventsToolbox::SetModifyListener({});
    return state.result;
  });
  EXPECT_EQ(Dispatch(), S_FALSE);
  EXPECT_EQ(Dispatch(), S_OK);
}

}  // namespace
