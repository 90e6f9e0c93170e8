#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>

#include "VyrBaseUnknown.h"
#include "VyrInstanceCounter.h"

namespace {

class Left : public IUnknown {
 public:
  static constexpr IID kIid = {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
  virtual int LeftNumber() = 0;

 protected:
  ~Left() = default;
};

class Right : public IUnknown {
 public:
  static constexpr IID kIid = {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 12}};
  virtual int RightNumber() = 0;

 protected:
  ~Right() = default;
};

class Other : public IUnknown {
 public:
  static constexpr IID kIid = {2, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};

 protected:
  ~Other() = default;
};

/// An object with two interfaces that tells a counter how many of its kind live.
class Object : public VyrFrameworkClass<Object, VyrImplements<Left, Right>>,
               VyrCountedInstance<Object> {
 public:
  static constexpr const char* kClassName = "TestObject";
  static constexpr const char* kLibrary = "TestLibrary";
  static int live;

  Object() { ++live; }
  int LeftNumber() override { return 1; }
  int RightNumber() override { return 2; }

 protected:
  ~Object() override { --live; }
};
int Object::live = 0;

class Derived : public VyrFrameworkClass<Derived, Object> {
 public:
  static constexpr const char* kClassName = "TestDerived";
  static constexpr const char* kLibrary = "TestLibrary";
};

/// A class that only its own operations make.
class Private : public VyrFrameworkClass<Private> {
 public:
  static constexpr const char* kClassName = "TestPrivate";
  static constexpr const char* kLibrary = "TestLibrary";

 private:
  Private() = default;
};

template <class Counted>
unsigned long CountOf(Counted& object) {
  object.AddRef();
  return object.Release();
}

class Handle : public testing::Test {
 protected:
  ~Handle() override { EXPECT_EQ(Object::live, 0); }
};

TEST_F(Handle, MadeFromAPointerItAdoptsThatReference) {
  const VyrVar<Object> handle(new Object);
  EXPECT_EQ(CountOf(*handle), 1u);
  EXPECT_TRUE(handle->IsOnlyReference());
}

TEST_F(Handle, SharedItAddsAReferenceToABorrowedPointer) {
  const VyrVar<Object> owner(new Object);
  {
    const auto shared = VyrVar<Object>::Share(owner.Get());
    EXPECT_EQ(CountOf(*owner), 2u);
    EXPECT_FALSE(owner->IsOnlyReference());
  }
  EXPECT_EQ(CountOf(*owner), 1u);
  EXPECT_EQ(VyrVar<Object>::Share(nullptr), nullptr);
}

TEST_F(Handle, CopyAddsAReferenceAndMoveDoesNot) {
  VyrVar<Object> first(new Object);
  VyrVar<Object> second = first;
  EXPECT_EQ(CountOf(*first), 2u);
  EXPECT_EQ(first, second);
  const VyrVar<Object> third = std::move(first);
  EXPECT_EQ(first, nullptr);
  EXPECT_EQ(CountOf(*third), 2u);
  second = nullptr;
  EXPECT_EQ(CountOf(*third), 1u);
}

TEST_F(Handle, AssignmentGivesTheOldReferenceBack) {
  VyrVar<Object> handle(new Object);
  const VyrVar<Object> other(new Object);
  handle = other;
  EXPECT_EQ(Object::live, 1);
  EXPECT_EQ(CountOf(*other), 2u);
  VyrVar<Object>& itself = handle;
  handle = itself;
  EXPECT_EQ(CountOf(*other), 2u);
  handle = std::move(itself);
  EXPECT_EQ(handle, other);
}

TEST_F(Handle, ConversionToABaseSharesTheObject) {
  const VyrVar<Derived> derived(new Derived);
  const VyrVar<Object> object = derived;
  const VyrVar<Right> right = derived;
  EXPECT_EQ(CountOf(*derived), 3u);
  EXPECT_EQ(right->RightNumber(), 2);
  const VyrVar<Left> none = VyrVar<Object>();
  EXPECT_FALSE(none);
}

TEST_F(Handle, DetachHandsTheReferenceOverAndNewReferenceAddsOne) {
  VyrVar<Object> handle(new Object);
  Object* extra = handle.NewReference();
  EXPECT_EQ(extra->Release(), 1u);
  Object* detached = handle.Detach();
  EXPECT_FALSE(handle);
  EXPECT_EQ(handle.Detach(), nullptr);
  EXPECT_EQ(handle.NewReference(), nullptr);
  EXPECT_EQ(Object::live, 1);
  EXPECT_EQ(detached->Release(), 0u);
}

TEST_F(Handle, LastReleaseThroughAnyInterfaceDestroysTheObject) {
  auto* object = new Object;
  Right* right = object;
  EXPECT_EQ(right->AddRef(), 2u);
  EXPECT_EQ(static_cast<Left*>(object)->Release(), 1u);
  EXPECT_EQ(Object::live, 1);
  EXPECT_EQ(right->Release(), 0u);
  EXPECT_EQ(Object::live, 0);
}

TEST_F(Handle, QueryInterfaceAnswersEveryInterfaceWithACountedReference) {
  const VyrVar<Object> object(new Object);
  const VyrVar<Left> left = VyrQuery<Left>(static_cast<Right*>(object.Get()));
  const VyrVar<Right> right = VyrQuery<Right>(left.Get());
  ASSERT_TRUE(left && right);
  EXPECT_EQ(left->LeftNumber(), 1);
  EXPECT_EQ(right->RightNumber(), 2);
  EXPECT_EQ(CountOf(*object), 3u);
}

TEST_F(Handle, RootInterfaceIsTheSamePointerWhoeverIsAsked) {
  const VyrVar<Object> object(new Object);
  const auto root = VyrQuery<IUnknown>(static_cast<Left*>(object.Get()));
  EXPECT_EQ(root.Get(), VyrQuery<IUnknown>(static_cast<Right*>(object.Get())).Get());
  const VyrVar<VyrBaseUnknown> plain(Derived::CreateItself());
  void* found = nullptr;
  EXPECT_EQ(plain->QueryInterface(IUnknown::kIid, &found), S_OK);
  static_cast<IUnknown*>(found)->Release();
}

TEST_F(Handle, QueryInterfaceRefusesWhatItDoesNotKnow) {
  const VyrVar<Object> object(new Object);
  void* found = object.Get();
  EXPECT_EQ(object->QueryInterface(Other::kIid, &found), E_NOINTERFACE);
  EXPECT_EQ(found, nullptr);
  EXPECT_EQ(object->QueryInterface(Left::kIid, nullptr), E_INVALIDARG);
  EXPECT_FALSE(VyrQuery<Other>(static_cast<Left*>(object.Get())));
  EXPECT_FALSE(VyrQuery<Left>(nullptr));
  EXPECT_EQ(CountOf(*object), 1u);
}

TEST(MetaClass, ObjectKnowsItsOwnClassAndEveryClassAboveIt) {
  const VyrVar<Derived> derived(new Derived);
  EXPECT_STREQ(Derived::ClassName(), "TestDerived");
  EXPECT_STREQ(derived->IsA(), "TestDerived");
  EXPECT_STREQ(VyrVar<Object>(derived)->IsA(), "TestDerived");
  for (const char* name : {"TestDerived", "TestObject", "VyrBaseUnknown"}) {
    EXPECT_EQ(derived->IsAKindOf(name), 1) << name;
  }
  for (const char* name : {"", "testderived", "TestPrivate", "TestDerived2"}) {
    EXPECT_EQ(derived->IsAKindOf(name), 0) << name;
  }
  EXPECT_EQ(derived->IsAKindOf(nullptr), 0);
  EXPECT_EQ(VyrVar<Object>(new Object)->IsAKindOf("TestDerived"), 0);
  EXPECT_EQ(Derived::MetaObject().GetBase(), &Object::MetaObject());
  EXPECT_EQ(VyrBaseUnknown::MetaObject().GetBase(), nullptr);
  EXPECT_STREQ(Derived::MetaObject().GetLibrary(), "TestLibrary");
}

TEST(MetaClass, ExtendsNoOtherClassAfterwards) {
  for (const VyrMetaClass* meta : {&Derived::MetaObject(), &VyrBaseUnknown::MetaObject()}) {
    EXPECT_STREQ(meta->GetLateType(), "VyrNull");
  }
}

TEST(MetaClass, ClassIdComesFromTheNameAlone) {
  static constexpr VyrMetaClass sameName("TestDerived", "AnotherLibrary", nullptr, nullptr);
  EXPECT_EQ(Derived::ClassId(), sameName.GetClassId());
  EXPECT_FALSE(Derived::ClassId() == Object::ClassId());
  EXPECT_FALSE(Private::ClassId() == Object::ClassId());
  // FNV-1a of the empty text is its start value, so an empty name shows how the parts are filled.
  static constexpr VyrMetaClass nameless("", "", nullptr, nullptr);
  EXPECT_EQ(nameless.GetClassId().data1, 0x84222325u);
  EXPECT_EQ(nameless.GetClassId().data2, 0x9CE4u);
  EXPECT_EQ(nameless.GetClassId().data3, 0xCBF2u);
}

TEST(MetaClass, FrameworkMakesObjectsOfClassesWithAPublicConstructor) {
  const VyrVar<VyrBaseUnknown> made(Derived::MetaObject().CreateInstance());
  ASSERT_TRUE(made);
  EXPECT_STREQ(made->IsA(), "TestDerived");
  EXPECT_TRUE(made->IsOnlyReference());
  EXPECT_EQ(Private::MetaObject().CreateInstance(), nullptr);
  EXPECT_EQ(Private::CreateItself(), nullptr);
  EXPECT_EQ(VyrBaseUnknown::MetaObject().CreateInstance(), nullptr);
}

TEST(InstanceCounter, CountsTheLiveObjectsOfADevelopmentBuild) {
  const auto liveByName = [](const std::string& name) {
    long live = 0;
    VyrInstanceCounter::ForEach([&](const VyrInstanceCounter& counter) {
      if (counter.GetName() == name) live += counter.GetLive();
    });
    return live;
  };
#ifdef HOL_DEVELOPMENT_BUILD
  constexpr long perObject = 1;
#else
  constexpr long perObject = 0;
#endif
  const VyrVar<Object> first(new Object);
  {
    const VyrVar<Object> second(new Object);
    EXPECT_EQ(liveByName("TestObject"), 2 * perObject);
  }
  EXPECT_EQ(liveByName("TestObject"), perObject);
}

TEST(Result, FailuresAreNegativeAndEqualTheirSpelling) {
  EXPECT_EQ(static_cast<std::uint32_t>(E_NOTIMPL), 0x80004001u);
  EXPECT_EQ(static_cast<std::uint32_t>(E_FAIL), 0x80004005u);
  EXPECT_EQ(static_cast<std::uint32_t>(E_UNEXPECTED), 0x8000FFFFu);
  EXPECT_EQ(static_cast<std::uint32_t>(E_INVALIDARG), 0x80070057u);
  for (const HRESULT failure : {E_NOTIMPL, E_FAIL, E_UNEXPECTED, E_INVALIDARG, E_NOINTERFACE}) {
    EXPECT_TRUE(VyrFailed(failure) && !VyrSucceeded(failure)) << failure;
  }
  for (const HRESULT success : {S_OK, S_FALSE}) {
    EXPECT_TRUE(VyrSucceeded(success) && !VyrFailed(success)) << success;
  }
  EXPECT_EQ(S_FALSE, 1);
}

}  // namespace
