#include "base/uadiagnosticinfo.h"
#include "base/uapointerarray.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using DiagnosticInfos = UaPointerArray<UaDiagnosticInfo>;

static_assert(std::has_virtual_destructor_v<DiagnosticInfos>);
static_assert(!std::is_copy_constructible_v<DiagnosticInfos>);
static_assert(std::is_nothrow_move_constructible_v<DiagnosticInfos>);
static_assert(std::is_nothrow_move_assignable_v<DiagnosticInfos>);

std::unique_ptr<UaDiagnosticInfo> makeInfo(OpcUa_Int32 symbolicId)
{
    auto info = std::make_unique<UaDiagnosticInfo>();
    info->setSymbolicId(symbolicId);
    return info;
}

DiagnosticInfos filled(OpcUa_Int32 count)
{
    DiagnosticInfos infos;
    for (OpcUa_Int32 i = 0; i < count; ++i) {
        EXPECT_EQ(infos.append(makeInfo(i)), OpcUa_Good);
    }
    return infos;
}

std::vector<OpcUa_Int32> idsOf(const DiagnosticInfos& infos)
{
    std::vector<OpcUa_Int32> ids;
    for (OpcUa_UInt32 i = 0; i < infos.length(); ++i) {
        ids.push_back(infos[i]->symbolicId());
    }
    return ids;
}

/// Notes its number down when it dies.
struct Mortal
{
    int number;
    std::vector<int>* pDead;
    Mortal(int value, std::vector<int>* dead)
        : number(value)
        , pDead(dead)
    {
    }
    Mortal(const Mortal&) = delete;
    Mortal& operator=(const Mortal&) = delete;
    ~Mortal() { pDead->push_back(number); }
};

TEST(UaPointerArray, default_is_empty)
{
    DiagnosticInfos infos;
    EXPECT_TRUE(infos.isEmpty());
    EXPECT_EQ(infos.length(), 0u);
    EXPECT_EQ(infos.at(0), nullptr);
    EXPECT_EQ(infos.remove(0), nullptr);
    infos.clear();
    EXPECT_TRUE(infos.isEmpty());
}

TEST(UaPointerArray, grows_and_keeps_order_and_addresses)
{
    DiagnosticInfos infos;
    std::vector<const UaDiagnosticInfo*> addresses;
    for (OpcUa_Int32 i = 0; i < 1000; ++i) {
        auto info = makeInfo(i);
        addresses.push_back(info.get());
        ASSERT_EQ(infos.append(std::move(info)), OpcUa_Good);
        EXPECT_EQ(info, nullptr); // NOLINT(bugprone-use-after-move): the array took it
    }
    ASSERT_EQ(infos.length(), 1000u);
    for (OpcUa_UInt32 i = 0; i < 1000; ++i) {
        EXPECT_EQ(infos.at(i), addresses[i]);
        EXPECT_EQ(infos[i]->symbolicId(), static_cast<OpcUa_Int32>(i));
    }
    EXPECT_EQ(infos.at(1000), nullptr);
    EXPECT_EQ(infos.at(0xFFFFFFFFu), nullptr);
}

TEST(UaPointerArray, keeps_the_place_of_a_null_element)
{
    DiagnosticInfos infos;
    EXPECT_EQ(infos.append(nullptr), OpcUa_Good);
    EXPECT_EQ(infos.append(makeInfo(1)), OpcUa_Good);
    EXPECT_EQ(infos.length(), 2u);
    EXPECT_EQ(infos[0], nullptr);
    EXPECT_EQ(infos[1]->symbolicId(), 1);
}

TEST(UaPointerArray, remove_hands_an_element_over_and_closes_the_gap)
{
    DiagnosticInfos infos = filled(4);
    EXPECT_EQ(infos.remove(1)->symbolicId(), 1);
    EXPECT_EQ(idsOf(infos), (std::vector<OpcUa_Int32>{0, 2, 3}));
    EXPECT_EQ(infos.remove(2)->symbolicId(), 3);
    EXPECT_EQ(infos.remove(0)->symbolicId(), 0);
    EXPECT_EQ(idsOf(infos), (std::vector<OpcUa_Int32>{2}));
    EXPECT_EQ(infos.remove(1), nullptr);
}

TEST(UaPointerArray, elements_die_with_the_array_the_last_one_first)
{
    std::vector<int> dead;
    {
        UaPointerArray<Mortal> mortals;
        for (int i = 0; i < 3; ++i) {
            ASSERT_EQ(mortals.append(std::make_unique<Mortal>(i, &dead)), OpcUa_Good);
        }
        EXPECT_TRUE(dead.empty());
    }
    EXPECT_EQ(dead, (std::vector<int>{2, 1, 0}));
}

TEST(UaPointerArray, can_be_filled_again_after_clear)
{
    DiagnosticInfos infos = filled(20);
    infos.clear();
    EXPECT_TRUE(infos.isEmpty());
    EXPECT_EQ(infos.append(makeInfo(7)), OpcUa_Good);
    EXPECT_EQ(idsOf(infos), (std::vector<OpcUa_Int32>{7}));
}

TEST(UaPointerArray, moves_take_the_elements_and_leave_an_empty_array)
{
    DiagnosticInfos infos = filled(3);
    const UaDiagnosticInfo* first = infos[0];
    DiagnosticInfos moved = std::move(infos);
    EXPECT_TRUE(infos.isEmpty()); // NOLINT(bugprone-use-after-move): a moved one is empty
    EXPECT_EQ(moved[0], first);
    infos = filled(1);
    infos = std::move(moved);
    EXPECT_EQ(idsOf(infos), (std::vector<OpcUa_Int32>{0, 1, 2}));
    EXPECT_TRUE(moved.isEmpty()); // NOLINT(bugprone-use-after-move): a moved one is empty
    DiagnosticInfos& self = infos;
    infos = std::move(self);
    EXPECT_EQ(infos.length(), 3u);
}

TEST(UaPointerArray, without_memory_the_caller_keeps_the_element)
{
    DiagnosticInfos infos = filled(8); // the first block is full
    auto info = makeInfo(8);
    {
        const AllocationFaults noMemory(0);
        EXPECT_EQ(infos.append(std::move(info)), OpcUa_BadOutOfMemory);
    }
    ASSERT_NE(info, nullptr); // NOLINT(bugprone-use-after-move): not taken
    EXPECT_EQ(infos.length(), 8u);
    EXPECT_EQ(infos.append(std::move(info)), OpcUa_Good);
    EXPECT_EQ(infos[8]->symbolicId(), 8);
}

} // namespace
