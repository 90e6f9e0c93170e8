#include <gtest/gtest.h>

#include <initializer_list>

#include "VyrBaseUnknown.h"
#include "VyrIUnknownList.h"

namespace {

/// An object of whatever kind.
class Thing : public IUnknown {
 public:
  static constexpr IID kIid = {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 13}};

 protected:
  ~Thing() = default;
};
class ThingObject final : public VyrImplements<Thing> {};
using Thing_var = VyrVar<ThingObject>;

unsigned long CountOf(IUnknown& object) {
  object.AddRef();
  return object.Release();
}

unsigned int CountIn(VyrIUnknownList& list) {
  unsigned int count = 77;
  EXPECT_EQ(list.Count(&count), S_OK);
  return count;
}

class UnknownList : public testing::Test {
 protected:
  static Thing_var Make() { return Thing_var(new ThingObject); }
  static Thing* AsThing(const Thing_var& thing) { return thing.Get(); }

  void ExpectHolds(std::initializer_list<Thing_var> things) {
    ASSERT_EQ(CountIn(*list), things.size());
    unsigned int index = 0;
    for (const Thing_var& thing : things) {
      IUnknown* found = nullptr;
      ASSERT_EQ(list->Item(index++, &found), S_OK);
      EXPECT_EQ(VyrVar<IUnknown>(found).Get(), AsThing(thing)) << index;
    }
  }

  const VyrIUnknownList_var list = VyrMakeUnknownList();
};

TEST_F(UnknownList, IsNewAndEmpty) {
  EXPECT_EQ(CountOf(*list), 1u);
  EXPECT_EQ(CountIn(*list), 0u);
  EXPECT_EQ(VyrQuery<VyrIUnknownList>(list.Get()), list);
  EXPECT_FALSE(VyrMakeUnknownList() == list);
}

TEST_F(UnknownList, AddsBeforeTheObjectAtTheIndexOrAtTheEnd) {
  const Thing_var a = Make(), b = Make(), c = Make(), d = Make();
  EXPECT_EQ(list->Add(0, AsThing(b)), S_OK);
  EXPECT_EQ(list->Add(1, AsThing(d)), S_OK);
  EXPECT_EQ(list->Add(0, AsThing(a)), S_OK);
  EXPECT_EQ(list->Add(2, AsThing(c)), S_OK);
  ExpectHolds({a, b, c, d});
  EXPECT_EQ(list->Add(4, AsThing(a)), S_OK);
  ExpectHolds({a, b, c, d, a});
}

TEST_F(UnknownList, RefusesPlacesOutsideAndNullPointers) {
  const Thing_var a = Make();
  EXPECT_EQ(list->Add(1, AsThing(a)), E_INVALIDARG);
  EXPECT_EQ(list->Add(0, nullptr), E_INVALIDARG);
  EXPECT_EQ(list->Count(nullptr), E_INVALIDARG);
  EXPECT_EQ(list->Add(0, AsThing(a)), S_OK);
  EXPECT_EQ(list->Item(0, nullptr), E_INVALIDARG);
  for (const unsigned int index : {1u, 2u, ~0u}) {
    IUnknown* found = AsThing(a);
    EXPECT_EQ(list->Item(index, &found), E_INVALIDARG);
    EXPECT_EQ(found, AsThing(a));
    EXPECT_EQ(list->Add(index + (index == 1u), AsThing(a)), E_INVALIDARG);
  }
  ExpectHolds({a});
}

TEST_F(UnknownList, HoldsAReferenceToEachAndHandsOneOut) {
  const Thing_var a = Make();
  EXPECT_EQ(list->Add(0, AsThing(a)), S_OK);
  EXPECT_EQ(list->Add(0, AsThing(a)), S_OK);
  EXPECT_EQ(CountOf(*AsThing(a)), 3u);
  IUnknown* found = nullptr;
  EXPECT_EQ(list->Item(1, &found), S_OK);
  EXPECT_EQ(CountOf(*AsThing(a)), 4u);
  EXPECT_EQ(found->Release(), 3u);
  EXPECT_EQ(list->RemoveAll(), S_OK);
  EXPECT_EQ(CountOf(*AsThing(a)), 1u);
  EXPECT_EQ(CountIn(*list), 0u);
  EXPECT_EQ(list->RemoveAll(), S_OK);
}

TEST_F(UnknownList, GivesItsReferencesBackWhenItGoes) {
  const Thing_var a = Make();
  {
    const VyrIUnknownList_var other = VyrMakeUnknownList();
    EXPECT_EQ(other->Add(0, AsThing(a)), S_OK);
    EXPECT_EQ(CountOf(*AsThing(a)), 2u);
  }
  EXPECT_EQ(CountOf(*AsThing(a)), 1u);
}

/// An object that, going, looks at the list that held it.
class Looker final : public VyrImplements<Thing> {
 public:
  Looker(VyrIUnknownList& list, unsigned int& seen) : list_(list), seen_(seen) {}

 private:
  ~Looker() override { list_.Count(&seen_); }

  VyrIUnknownList& list_;
  unsigned int& seen_;
};

TEST_F(UnknownList, IsEmptyWhenTheObjectsGo) {
  unsigned int seen = 77;
  Thing* looker = new Looker(*list, seen);
  EXPECT_EQ(list->Add(0, looker), S_OK);
  looker->Release();
  EXPECT_EQ(list->RemoveAll(), S_OK);
  EXPECT_EQ(seen, 0u);
}

}  // namespace
