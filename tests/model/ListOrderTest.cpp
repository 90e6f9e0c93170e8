#include "ListOrder.h"
#include "RandomTree.h"

// The order of a list against a plain list of numbers.

namespace {

using Id = ListOrder::Id;

void ExpectOrder(const ListOrder& order, const std::vector<Id>& expected) {
  ASSERT_EQ(order.GetCount(), expected.size());
  Id id = order.GetFirst();
  for (std::size_t place = 0; place < expected.size(); ++place) {
    ASSERT_EQ(id, expected[place]) << place;
    ASSERT_EQ(order.GetAt(place), id) << place;
    ASSERT_EQ(order.GetPlace(id), place);
    if (place > 0) {
      ASSERT_TRUE(order.ComesBefore(expected[place - 1], id)) << place;
      ASSERT_FALSE(order.ComesBefore(id, expected[place - 1])) << place;
    }
    id = order.GetNext(id);
  }
  EXPECT_EQ(id, ListOrder::kNone);
}

TEST(ListOrder, NumbersAListFromZeroInItsOrder) {
  for (const std::size_t count : {0u, 1u, 2u, 3u, 7u, 8u, 1000u}) {
    ListOrder order;
    order.Build(count);
    std::vector<Id> expected(count);
    for (std::size_t i = 0; i < count; ++i) expected[i] = static_cast<Id>(i);
    ExpectOrder(order, expected);
  }
}

TEST(ListOrder, IsThatOfAPlainListAfterAnyMixOfEdits) {
  for (std::uint32_t seed = 1; seed <= 6; ++seed) {
    modeltest::Choices choices(seed);
    ListOrder order;
    std::vector<Id> expected;
    if (seed % 2 == 0) {
      order.Build(50);
      for (Id i = 0; i < 50; ++i) expected.push_back(i);
    }
    for (int step = 0; step < 3000; ++step) {
      const auto count = static_cast<int>(expected.size());
      const bool grows = step / 500 % 2 == 0;
      if (count == 0 || choices.OneIn(4) != grows) {
        const int place = choices.OneIn(3) ? count : choices.Below(count + 1);
        order.Reserve();
        const Id id = order.Insert(static_cast<std::size_t>(place));
        ASSERT_EQ(std::count(expected.begin(), expected.end(), id), 0);
        expected.insert(expected.begin() + place, id);
      } else {
        const int place = choices.OneIn(3) ? 0 : choices.Below(count);
        order.Remove(expected[static_cast<std::size_t>(place)]);
        expected.erase(expected.begin() + place);
      }
      if (step % 50 == 0) ExpectOrder(order, expected);
    }
    ExpectOrder(order, expected);
    while (!expected.empty()) {
      order.Remove(expected.back());
      expected.pop_back();
    }
    ExpectOrder(order, expected);
  }
}

TEST(ListOrder, UsesTheNumbersOfRemovedItemsAgain) {
  ListOrder order;
  order.Build(10);
  for (int i = 0; i < 1000; ++i) {
    order.Remove(order.GetFirst());
    order.Insert(order.GetCount());
  }
  EXPECT_EQ(order.GetEndOfIds(), 10u);
}

}  // namespace
