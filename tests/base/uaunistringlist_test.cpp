#include "base/uaunistringlist.h"
#include "platform/allocator.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace {

UaUniStringList makeList(std::initializer_list<const char16_t*> texts)
{
    UaUniStringList list;
    for (const char16_t* text : texts) {
        list.append(text);
    }
    return list;
}

TEST(UniStringList, default_is_empty)
{
    UaUniStringList list;
    EXPECT_TRUE(list.isEmpty());
    EXPECT_EQ(list.size(), 0);
    EXPECT_EQ(list.begin(), list.end());
    EXPECT_TRUE(list.at(0).isNull());
    EXPECT_TRUE(list.join(u'/').isNull());
    list.removeLast();
    list.sort();
    list.clear();
    EXPECT_TRUE(list.isEmpty());
}

TEST(UniStringList, append_keeps_the_order)
{
    UaUniStringList list;
    for (int i = 0; i < 100; ++i) {
        EXPECT_TRUE(list.append(UaUniString::number(i)));
    }
    ASSERT_EQ(list.size(), 100);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(list.at(i).toInt32(), i);
    }
    EXPECT_TRUE(list.at(-1).isNull());
    EXPECT_TRUE(list.at(100).isNull());
}

TEST(UniStringList, first_append_makes_room_for_ten)
{
    UaUniStringList list;
    static std::size_t allocations;
    allocations = 0;
    const UaUniString text = u"a";
    OpcUa_Memory_SetFaultHook([](std::size_t) {
        ++allocations;
        return false;
    });
    for (int i = 0; i < UaUniStringList::InitialCapacity; ++i) {
        list.append(text);
    }
    EXPECT_EQ(allocations, 1u);
    list.append(text);
    EXPECT_EQ(allocations, 2u);
    OpcUa_Memory_SetFaultHook(nullptr);
}

TEST(UniStringList, copy_and_move)
{
    UaUniStringList list = makeList({u"a", u"b"});
    const UaUniStringList copy = list;
    EXPECT_EQ(copy, list);
    EXPECT_EQ(copy.at(0).utf16(), list.at(0).utf16());
    list.append(u"c");
    EXPECT_EQ(copy.size(), 2);
    EXPECT_FALSE(copy == list);
    UaUniStringList moved = std::move(list);
    // NOLINTNEXTLINE(bugprone-use-after-move): a moved-from list is empty.
    EXPECT_TRUE(list.isEmpty());
    EXPECT_EQ(moved.size(), 3);
    list = copy;
    EXPECT_EQ(list, copy);
    list = std::move(moved);
    EXPECT_EQ(list.size(), 3);
    UaUniStringList& self = list;
    list = self;
    list = std::move(self);
    EXPECT_EQ(list.size(), 3);
    const UaUniStringList ofEmpty = UaUniStringList();
    EXPECT_TRUE(ofEmpty.isEmpty());
}

TEST(UniStringList, sort_is_lexical)
{
    UaUniStringList list = makeList({u"b", u"ab", u"", u"a"});
    list.sort();
    EXPECT_EQ(list, makeList({u"", u"a", u"ab", u"b"}));
}

TEST(UniStringList, join_and_remove_last)
{
    UaUniStringList list = makeList({u"a", u"", u"c"});
    EXPECT_EQ(list.join(u'/'), u"a//c");
    list.removeLast();
    EXPECT_EQ(list.join(u'/'), u"a/");
    list.removeLast();
    EXPECT_EQ(list.join(u'/'), u"a");
    EXPECT_EQ(list.join(u'/').split(u'/'), list);
}

TEST(UniStringList, reserve_beyond_all_memory_fails)
{
    UaUniStringList list = makeList({u"a"});
    EXPECT_TRUE(list.reserve(-1));
    EXPECT_TRUE(list.reserve(1));
    OpcUa_Memory_SetFaultHook([](std::size_t size) { return size > 1000000; });
    EXPECT_FALSE(list.reserve(std::numeric_limits<OpcUa_Int32>::max()));
    OpcUa_Memory_SetFaultHook(nullptr);
    EXPECT_EQ(list, makeList({u"a"}));
}

TEST(UniStringList, every_failing_allocation_keeps_or_empties)
{
    const UaUniStringList source = makeList({u"a", u"b"});
    EXPECT_EQ(
        forEveryFailingAllocation([&] { return UaUniStringList(source); },
                                  [](const UaUniStringList& list) { EXPECT_TRUE(list.isEmpty()); }),
        1u);
    EXPECT_EQ(forEveryFailingAllocation(
                  [&] {
                      UaUniStringList list;
                      const bool isAppended = list.append(source.at(0));
                      return std::pair(isAppended, list.size());
                  },
                  [](const auto& result) {
                      EXPECT_FALSE(result.first);
                      EXPECT_EQ(result.second, 0);
                  }),
              1u);
    EXPECT_EQ(
        forEveryFailingAllocation([&] { return source.join(u'/'); },
                                  [](const UaUniString& text) { EXPECT_TRUE(text.isNull()); }),
        1u);
}

} // namespace
