// SPDX-License-Identifier: MIT
// The set and the map, which share everything but the value, in one suite; then what only the map can do.

#include "zeltools/foundation/hash_table.h"

#include "tests/support/printers.h"
#include "zeltools/foundation/hash_map.h"
#include "zeltools/foundation/int_map.h"
#include "zeltools/foundation/xexception.h"
#include "zeltools/foundation/xlc_string.h"
#include "zeltools/foundation/xstring.h"

#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>

namespace {

/// Opens the counter of a container and gives set and map one face; the value of key i is 10 * i.
template <class Container, class K>
struct Open : Container {
    using Container::Container;
    using Container::usedSlots;

    static constexpr bool IsMap = requires(Container & container, K key) { container.Insert(key, 0); };

    static K KeyOf(int i) {
        if constexpr (std::is_integral_v<K>)
            return static_cast<K>(i);
        else
            return K(std::to_string(i).c_str());
    }
    int Enter(int i) {
        if constexpr (IsMap)
            return this->Insert(KeyOf(i), 10 * i);
        else
            return this->Insert(KeyOf(i));
    }
    int Leave(int i, bool shrink = false) { return this->Remove(KeyOf(i), shrink); }
    bool Has(int i) const {
        bool const found = this->IsFound(KeyOf(i));
        if constexpr (IsMap) {
            int const* const value = this->Find(KeyOf(i));
            EXPECT_EQ(value != nullptr, found);
            EXPECT_TRUE(!value || *value == 10 * i) << "key " << i << " has the value " << *value;
        }
        return found;
    }
};

template <class Container>
class HashContainer : public testing::Test {};

using Wide = CXTString<char16_t>;
using Containers =
    testing::Types<Open<CHashTable<int>, int>, Open<CHashTable<unsigned long long>, unsigned long long>,
                   Open<CHashTable<Wide>, Wide>, Open<CIntMap, int>,
                   Open<CHashMap<long long, long long, int>, long long>, Open<CHashMap<Wide, Wide const&, int>, Wide>,
                   Open<CHashMap<CXTString<char>, CXTString<char> const&, int>, CXTString<char>>>;
TYPED_TEST_SUITE(HashContainer, Containers);

TYPED_TEST(HashContainer, WalkGoesOnWhenItsElementIsRemoved) {
    TypeParam table;
    for (int i = 0; i < 50; ++i)
        table.Enter(i);
    auto key = TypeParam::KeyOf(0);
    unsigned int seen = 0;
    for (unsigned int position = table.GetFirst(); position != 0xFFFFFFFF; ++seen) {
        EXPECT_TRUE(table.GetNext(position, key));
        EXPECT_EQ(table.Remove(key, false), 1);
    }
    EXPECT_EQ(seen, 50u);
    EXPECT_TRUE(table.IsEmpty());
    unsigned int position = 3; // of an element that is gone
    EXPECT_FALSE(table.GetNext(position, key));
    EXPECT_EQ(position, 0xFFFFFFFF);
}

TYPED_TEST(HashContainer, MergeAndRemoveOfAnother) {
    TypeParam table, other;
    for (int i = 0; i < 40; ++i)
        table.Enter(i);
    for (int i = 30; i < 60; ++i)
        other.Enter(i);
    table.Merge(other);
    table.Merge(table);
    EXPECT_EQ(table.GetCount(), 60u);
    EXPECT_TRUE(table.Has(59));
    table.Remove(other);
    EXPECT_EQ(table.GetCount(), 30u);
    EXPECT_FALSE(table.Has(30));
    table.Remove(table);
    EXPECT_TRUE(table.IsEmpty());
}

TYPED_TEST(HashContainer, BehavesLikeASetUnderRandomWork) {
    auto const seed = std::random_device{}();
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    TypeParam table;
    std::map<int, bool> model;
    for (int step = 0; step < 40000; ++step) {
        // Phases of growth and of decay, among few keys, pile up tombstones.
        bool const decay = step / 4000 % 2 != 0;
        int const i = static_cast<int>(random() % 500);
        int const work = static_cast<int>(random() % 1000);
        if (work < (decay ? 250 : 600))
            ASSERT_EQ(table.Enter(i), model.emplace(i, true).second) << "step " << step;
        else if (work < 850)
            ASSERT_EQ(table.Leave(i, work % 2 != 0), static_cast<int>(model.erase(i))) << "step " << step;
        else if (work < 990)
            ASSERT_EQ(table.Has(i), model.contains(i)) << "step " << step;
        else if (work < 997)
            table.Minimize();
        else if (work < 999)
            table = TypeParam(table);
        else
            table.Clear(), model.clear();
        ASSERT_EQ(table.GetCount(), model.size()) << "step " << step;
        ASSERT_LE(table.usedSlots, table.GetHashTableSize() / 2 + 1) << "step " << step;
        for (int key = 0; step % 1000 == 0 && key < 500; ++key)
            ASSERT_EQ(table.Has(key), model.contains(key)) << "step " << step;
    }
}

TEST(CHashMethods, HashesAreFixed) {
    // The mixes were worked out with big integers; the text hashes are the published FNV-1a answers for "", "a" and
    // "foobar", whose units are taken from the last to the first.
    EXPECT_EQ(CHashMethods<int>::Hash(0), 0xf7e009b6u);
    EXPECT_EQ(CHashMethods<int>::Hash(-1), 0xecb15967u);
    EXPECT_EQ(CHashMethods<unsigned long long>::Hash(0), 0x2aeaa2abu);
    EXPECT_EQ(CHashMethods<unsigned long long>::Hash(0x123456789ABCDEF0), 0x25e6125u);
    EXPECT_EQ(CHashMethods<Wide>::Hash(Wide()), 0x811C9DC5u);
    EXPECT_EQ(CHashMethods<Wide>::Hash(u"a"), 0xE40C292Cu);
    EXPECT_EQ(CHashMethods<Wide>::Hash(u"raboof"), 0xBF9CF968u);
    EXPECT_EQ(CHashMethods<CXTString<char>>::Hash("raboof"), 0xBF9CF968u);
    EXPECT_EQ(CHashMethods<CXTString<char>>::Hash("\xFF"), (0x811C9DC5u ^ 0xFF) * 16777619u);
    EXPECT_EQ(CHashMethods<CExLCString>::Hash(CExLCString(Wide(u"RABOOF"))), 0xBF9CF968u);
    EXPECT_TRUE(CHashMethods<Wide>::IsEqual(Wide(u"ab\0c", 4), Wide(u"ab"))) << "equal up to the zero";
    EXPECT_FALSE(CHashMethods<Wide>::IsEqual(Wide(u"abc"), Wide(u"ab")));
}

/// Equality by what the keys point to.
struct ByText {
    static unsigned int Hash(char const* key) { return HashText(key, std::strlen(key)); }
    static bool IsEqual(char const* a, char const* b) { return std::strcmp(a, b) == 0; }
};

TEST(CHashMap, AsksMethodsOfAHostOnlyAboutKeysThatAreThere) {
    CHashMap<char const*, char const*, int, ByText> map; // its empty slots have null for a key
    auto brief = std::make_unique<std::string>("brief");
    map.Insert(brief->c_str(), 1);
    map.Insert("kept", 2);
    EXPECT_EQ(map.Remove("brief"), 1);
    brief.reset();
    EXPECT_FALSE(map.Find("brief"));
    ASSERT_TRUE(map.Find(std::string("kept").c_str()));
}

/// A key or value whose n-th copy fails.
struct Fragile {
    static inline int copiesUntilFailure = -1;
    std::string text;
    Fragile() = default;
    Fragile(std::string t) : text(std::move(t)) {}
    Fragile(Fragile const& other) { *this = other; }
    Fragile& operator=(Fragile const& other) {
        if (copiesUntilFailure >= 0 && copiesUntilFailure-- == 0)
            throw std::runtime_error("copy");
        text = other.text;
        return *this;
    }
    bool operator==(Fragile const&) const = default;
};

} // namespace

template <>
struct CHashMethods<Fragile> {
    static unsigned int Hash(Fragile const& key) { return HashText(key.text.c_str(), key.text.size()); }
    static bool IsEqual(Fragile const& a, Fragile const& b) { return a == b; }
};

namespace {

/// `key(i)` and `value(i)` make the parts of an element, either of which may be fragile.
template <class Map, class Key, class Value>
void ExpectFailingCopyToLeaveMapAsItWas(Key const& key, Value const& value) {
    bool failed = true;
    for (int failAt = 0; failed; ++failAt) {
        Map map;
        for (int i = 0; i < 11; ++i)
            map.Insert(key(i), value(i));
        auto const twelfth = key(12); // its insert grows the map, which copies all
        auto const itsValue = value(12);
        Fragile::copiesUntilFailure = failAt;
        try {
            map.Insert(twelfth, itsValue);
            failed = false;
        } catch (std::runtime_error const&) {
            EXPECT_EQ(map.GetHashTableSize(), 23u);
            EXPECT_FALSE(map.IsFound(twelfth));
        }
        Fragile::copiesUntilFailure = -1;
        EXPECT_EQ(map.GetCount(), failed ? 11u : 12u);
        for (int i = 0; i < 11; ++i) {
            ASSERT_TRUE(map.Find(key(i))) << i << " of the failure " << failAt;
            EXPECT_EQ(*map.Find(key(i)), value(i));
        }
    }
}

TEST(CHashMap, FailingCopyLeavesMapAsItWas) {
    auto const number = [](int i) { return i; };
    auto const text = [](int i) { return CXTString<char>(std::to_string(i).c_str()); };
    auto const fragile = [](int i) { return Fragile(std::to_string(i)); };
    ExpectFailingCopyToLeaveMapAsItWas<CHashMap<int, int, Fragile>>(number, fragile);
    // The part that cannot fail must not have moved when the other one does.
    ExpectFailingCopyToLeaveMapAsItWas<CHashMap<CXTString<char>, CXTString<char> const&, Fragile>>(text, fragile);
    ExpectFailingCopyToLeaveMapAsItWas<CHashMap<Fragile, Fragile const&, CXTString<char>>>(fragile, text);
}

} // namespace
