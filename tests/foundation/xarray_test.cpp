// SPDX-License-Identifier: MIT
#include "zeltools/foundation/xarray.h"

#include "tests/support/printers.h"
#include "tests/support/thrown.h"
#include "zeltools/foundation/xstring.h"

#include <functional>
#include <gtest/gtest.h>
#include <initializer_list>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

/// An element that counts the living, can fail at the n-th copy, and points to itself, so that it may not be moved
/// as bytes.
struct Tracked {
    static inline int living = 0;
    static inline int copiesUntilFailure = -1;

    int value = 0;
    Tracked const* self = this;

    Tracked() { ++living; }
    Tracked(int v) : value(v) { ++living; }
    Tracked(Tracked const& other) : value(other.value) {
        CountCopy();
        ++living;
    }
    Tracked& operator=(Tracked const& other) {
        CountCopy();
        value = other.value;
        return *this;
    }
    ~Tracked() {
        EXPECT_EQ(self, this) << "an element was moved as bytes";
        --living;
    }
    bool operator==(Tracked const& other) const { return value == other.value; }

private:
    static void CountCopy() {
        if (copiesUntilFailure >= 0 && copiesUntilFailure-- == 0)
            throw std::runtime_error("copy");
    }
};

template <class T>
struct OpenArray : CXArray<T> {
    using CXArray<T>::CXArray;
    using CXArray<T>::capacity;
    using CXArray<T>::plainCopy;
    OpenArray() = default;
    OpenArray(std::initializer_list<T> elements) {
        for (T const& element : elements)
            this->Add(element);
    }
    std::vector<T> Content() const { return std::vector<T>(this->begin(), this->end()); }
};

TEST(CXArray, GrowsByItsRule) {
    struct {
        char const* name;
        int growBy;
        std::vector<int> sizes, capacities; // the capacity after each size
    } const rows[] = {
        {"a quarter, at least 4", 0, {1, 2, 6, 10}, {1, 5, 9, 13}},
        {"a quarter of the size, not of the capacity", 0, {100, 101, 126, 151}, {100, 125, 150, 181}},
        {"a quarter, at most 1024", 0, {10000, 10001, 11025}, {10000, 11024, 12048}},
        {"doubling", -2, {3, 4, 7, 13}, {3, 6, 12, 24}},
        {"a step, the first allocation too", 10, {1, 10, 11, 21}, {10, 10, 20, 30}},
        {"what the rule gives is too little", 4, {4, 100}, {4, 100}},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        OpenArray<short> array;
        array.SetSize(row.sizes[0], row.growBy); // which the later calls keep
        for (std::size_t i = 0; i < row.sizes.size(); ++i) {
            array.SetSize(row.sizes[i]);
            EXPECT_EQ(array.capacity, row.capacities[i]) << row.sizes[i];
        }
        array.SetSize(0);
        EXPECT_EQ(array.capacity, row.capacities.back());
        array.RemoveAll(true);
        array.SetSize(row.sizes[0]); // the rule outlives the memory
        EXPECT_EQ(array.capacity, row.capacities[0]);
        array.SetSize(0, 0);
        EXPECT_EQ(array.capacity, 0);
    }
}

TEST(CXArray, MisuseThrowsAndChangesNothing) {
    OpenArray<int> array = {1, 2, 3};
    std::vector<std::pair<char const*, std::function<void()>>> const rows = {
        {"index size", [&] { array[3] = 0; }},
        {"size -1", [&] { array.SetSize(-1); }},
        {"set at 2^31 - 1", [&] { array.SetAtGrow(0x7FFFFFFF, 0); }},
        {"insert beyond 2^31", [&] { array.InsertAt(0x7FFFFFFF, 0, 1); }},
        {"insert too many", [&] { array.InsertAt(0, 0, 0x7FFFFFFF); }},
        {"remove at -1", [&] { array.RemoveAt(-1); }},
        {"remove past the end", [&] { array.RemoveAt(2, 2); }},
        {"remove whose sum wraps", [&] { array.RemoveAt(1, 0x7FFFFFFF); }},
        {"capacity wraps", [&] { array.SetSize(array.capacity + 1, 0x7FFFFFFF); }},
    };
    for (auto const& [name, call] : rows) {
        EXPECT_EQ(support::Thrown(call), "argument") << name;
        EXPECT_EQ(array.Content(), (std::vector<int>{1, 2, 3})) << name;
    }
    array.RemoveAt(3, 0); // the end is a place, and nothing is there to remove
    EXPECT_EQ(array.GetSize(), 3);
}

template <class T>
class CXArrayOf : public testing::Test {
public:
    static T Value(int i) {
        if constexpr (std::is_same_v<T, CXTString<char16_t>>)
            return T(std::u16string(static_cast<std::size_t>(i) + 1, u'x').c_str());
        else if constexpr (std::is_same_v<T, std::string>)
            return std::to_string(i);
        else
            return T(i);
    }
};

using ElementTypes = testing::Types<int, Tracked, std::string, CXTString<char16_t>>;
TYPED_TEST_SUITE(CXArrayOf, ElementTypes);

TYPED_TEST(CXArrayOf, BehavesLikeAVector) {
    for (bool blockMoves : {true, false}) {
        auto const seed = std::random_device{}();
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        auto const below = [&](int n) { return n > 0 ? static_cast<int>(random() % static_cast<unsigned>(n)) : 0; };
        OpenArray<TypeParam> array(blockMoves);
        std::vector<TypeParam> model;
        for (int step = 0; step < 3000; ++step) {
            int const size = static_cast<int>(model.size());
            int const index = below(size + 1);
            // Half of the values are elements of the array itself.
            TypeParam const fresh = this->Value(below(20));
            TypeParam const& value = size > 0 && below(2) ? std::as_const(array)[below(size)] : fresh;
            TypeParam const copy = value;
            switch (below(9)) {
            case 0:
            case 1:
                EXPECT_EQ(array.Add(value), size);
                model.push_back(copy);
                break;
            case 2: {
                int const count = 1 + below(3);
                array.InsertAt(index, value, count);
                model.insert(model.begin() + index, static_cast<std::size_t>(count), copy);
                break;
            }
            case 3: {
                array.InsertAt(size + 2, value);
                model.resize(model.size() + 2);
                model.push_back(copy);
                break;
            }
            case 4: {
                int const count = below(std::min(4, size - index + 1));
                array.RemoveAt(index, count);
                model.erase(model.begin() + index, model.begin() + index + count);
                break;
            }
            case 5: {
                bool const firstOnly = below(2) != 0;
                auto const first = std::find(model.begin(), model.end(), copy);
                EXPECT_EQ(array.Remove(value, firstOnly), first != model.end());
                if (!firstOnly)
                    model.erase(std::remove(model.begin(), model.end(), copy), model.end());
                else if (first != model.end())
                    model.erase(first);
                break;
            }
            case 6:
                array.SetAtGrow(index, value);
                model.resize(std::max(model.size(), static_cast<std::size_t>(index) + 1));
                model[static_cast<std::size_t>(index)] = copy;
                break;
            case 7:
                if (size < 200) {
                    EXPECT_EQ(array.AddArray(array), size);
                    model.reserve(2 * model.size());
                    model.insert(model.end(), model.begin(), model.begin() + size);
                }
                break;
            default:
                array.Copy(array.GetData() + index, size - index); // its own tail
                model.erase(model.begin(), model.begin() + index);
            }
            ASSERT_EQ(array.Content(), model) << "step " << step;
        }
        OpenArray<TypeParam> const taken = std::move(array);
        EXPECT_EQ(taken.plainCopy, blockMoves);
    }
    EXPECT_EQ(Tracked::living, 0);
}

TEST(CXArray, FailingCopyLeaksNothingAndKeepsElements) {
    std::pair<char const*, std::function<void(OpenArray<Tracked>&)>> const calls[] = {
        {"Add", [](auto& array) { array.Add(array[0]); }},
        {"AddArray", [](auto& array) { array.AddArray(array); }},
        {"Copy",
         [](auto& array) {
             array.Copy(OpenArray<Tracked>{4, 5, 6, 7, 8});
         }},
        {"InsertAt", [](auto& array) { array.InsertAt(3, array[0], 3); }},
        {"SetSize", [](auto& array) { array.SetSize(30); }},
    };
    for (auto const& [name, call] : calls) {
        int failures = 0;
        for (bool failed = true; failed; ++failures) {
            OpenArray<Tracked> array = {1, 2, 3};
            array.FreeExtra();
            Tracked::copiesUntilFailure = failures;
            try {
                call(array);
                failed = false;
            } catch (std::runtime_error const&) {
                std::vector<Tracked> const content = (Tracked::copiesUntilFailure = -1, array.Content());
                ASSERT_GE(content.size(), 3u) << name;
                for (int i = 0; i < 3; ++i)
                    ASSERT_EQ(content[static_cast<std::size_t>(i)].value, i + 1) << name << " failing at " << failures;
            }
            Tracked::copiesUntilFailure = -1;
        }
        EXPECT_GT(failures, 1) << name << " never copied";
        EXPECT_EQ(Tracked::living, 0) << name;
    }
}

} // namespace
