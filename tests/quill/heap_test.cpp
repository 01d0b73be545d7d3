// Heap: the three orders, the stable tie-break, removal from inside, refusals and printing.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "quill/all.h"
#include "quill/intarray.h"
#include "testutil.h"

namespace {

class ExposedHeap : public Heap {
public:
    explicit ExposedHeap(unsigned capacity = DEFAULT_CAPACITY, int kind = FIFO) : Heap(capacity, kind) {}
    int& counter() { return sequence->elem(0); }
    unsigned number(int slot) const { return unsigned(sequence->elem(slot)); }

    // Every slot leaves no earlier than its parent; the numbers are told apart unsigned.
    bool ordered() const {
        for (int slot = 2; slot < endIndex; ++slot)
            if (compareSlots(slot / 2, slot) > 0) return false;
        return contents->elem(0) == nil;
    }
};

std::vector<Integer*> drain(Heap& h) {
    std::vector<Integer*> out;
    while (!h.isEmpty()) out.push_back(CAST(Integer, h.removeFirst()));
    return out;
}

class HeapOrderTest : public ::testing::Test {
protected:
    ~HeapOrderTest() override {
        for (Integer* i : owned) delete i;
    }
    // Integers with the given values, in that order of insertion.
    std::vector<Integer*> fill(Heap& h, const std::vector<int>& keys) {
        std::vector<Integer*> added;
        for (int k : keys) {
            owned.push_back(new Integer(k));
            added.push_back(owned.back());
            h.add(*owned.back());
        }
        return added;
    }
    std::vector<Integer*> owned;
};

// Equal keys must leave in the order of their insertion: the order of the
// expected pointers below, not merely their values, is checked.
TEST_F(HeapOrderTest, TheThreeKindsWithEqualKeys) {
    const std::vector<int> keys = {4, 2, 4, 9, 2, 4, 1, 9};
    struct Row {
        int kind;
        std::vector<int> order;
        const char* print;
    };
    const Row rows[] = {
        {Heap::FIFO, {0, 1, 2, 3, 4, 5, 6, 7}, "Heap(FIFO)["},
        {Heap::MIN, {6, 1, 4, 0, 2, 5, 3, 7}, "Heap (MIN)["},
        {Heap::MAX, {3, 7, 0, 2, 5, 1, 4, 6}, "Heap (MAX)["},
        {7, {6, 1, 4, 0, 2, 5, 3, 7}, "Heap (MIN)["},
        {-3, {3, 7, 0, 2, 5, 1, 4, 6}, "Heap (MAX)["},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.kind);
        Heap h(4, row.kind);
        std::vector<Integer*> added = fill(h, keys);
        EXPECT_EQ(printedText(h).rfind(row.print, 0), 0u) << printedText(h);
        EXPECT_EQ(h.first(), added[row.order[0]]);
        std::vector<Integer*> expected;
        for (int i : row.order) expected.push_back(added[i]);
        EXPECT_EQ(drain(h), expected);
    }
}

TEST_F(HeapOrderTest, GrowsByThirtyTwoAndIteratesAllSlots) {
    Heap h(0, Heap::MIN);
    EXPECT_EQ(h.capacity(), 0u);
    std::vector<int> keys;
    for (int i = 0; i < 33; ++i) keys.push_back((i * 7) % 11);
    fill(h, {keys[0]});
    EXPECT_EQ(h.capacity(), 32u);
    fill(h, std::vector<int>(keys.begin() + 1, keys.end()));
    EXPECT_EQ(h.capacity(), 64u);
    EXPECT_EQ(h.size(), 33u);

    std::vector<int> seen;
    Iterator it(h);
    while (Object* el = it()) seen.push_back(CAST(Integer, el)->value());
    std::sort(seen.begin(), seen.end());
    std::sort(keys.begin(), keys.end());
    EXPECT_EQ(seen, keys);
}

TEST_F(HeapOrderTest, RefusalsAndErrors) {
    Heap h(16, Heap::MIN);
    Integer seven(7);
    struct Row {
        const char* expected;
        std::function<void()> call;
    };
    const Row rows[] = {
        {"[CLTNEMPTY] Collection empty: Heap::first()", [&] { h.first(); }},
        {"[CLTNEMPTY] Collection empty: Heap::removeFirst()", [&] { h.removeFirst(); }},
        {"[REMOVEERR] Tried to remove object not in collection: Heap::remove(7)", [&] { h.remove(seven); }},
        {"[OBNOTFOUND] Object not found: Heap::touch(7)", [&] { h.touch(seven); }},
        {"[ILLEGALMETHOD] Should not implement method Heap::last()", [&] { h.last(); }},
        {"[ILLEGALMETHOD] Should not implement method Heap::removeLast()", [&] { h.removeLast(); }},
        {"[ILLEGALMETHOD] Should not implement method Heap::addFirst()", [&] { h.addFirst(seven); }},
        {"[INDEXRANGE] Index out of range: Heap::at(0)", [&] { h.at(0); }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.expected);
        EXPECT_EQ(raisedText(row.call), row.expected);
    }
    fill(h, {5, 9});
    EXPECT_EQ(raisedText([&] { h.remove(seven); }),
              "[REMOVEERR] Tried to remove object not in collection: Heap::remove(7)");
    EXPECT_EQ(h.size(), 2u);
}

// A changed key is put in its place by touch, many by reSort.
TEST_F(HeapOrderTest, TouchAndReSortAfterKeysChanged) {
    Heap h(16, Heap::MIN);
    std::vector<Integer*> added = fill(h, {10, 20, 30, 40, 50, 60});
    added[5]->value(5);  // 60 becomes the smallest
    h.touch(*added[5]);
    EXPECT_EQ(h.first(), added[5]);
    added[0]->value(45);  // the root becomes large
    h.touch(*added[0]);
    std::vector<int> order;
    for (Integer* i : drain(h)) order.push_back(i->value());
    EXPECT_EQ(order, (std::vector<int>{5, 20, 30, 40, 45, 50}));

    added = fill(h, {1, 2, 3, 4, 5, 6, 7});
    for (Integer* i : added) i->value(10 - i->value());
    h.reSort();
    order.clear();
    for (Integer* i : drain(h)) order.push_back(i->value());
    EXPECT_EQ(order, (std::vector<int>{3, 4, 5, 6, 7, 8, 9}));
}

// When the 32-bit insertion counter runs out, the heap numbers its elements
// again from 0 without changing the order in which they will leave.
TEST_F(HeapOrderTest, ExhaustedCounterKeepsTheOrder) {
    for (int kind : {Heap::FIFO, Heap::MIN}) {
        SCOPED_TRACE(kind);
        ExposedHeap h(4, kind);
        h.counter() = -4;
        std::vector<Integer*> added = fill(h, {2, 2, 1, 2, 1, 2});
        EXPECT_TRUE(h.ordered());
        EXPECT_LT(h.counter(), 10) << "numbered again";
        std::vector<int> order =
            kind == Heap::FIFO ? std::vector<int>{0, 1, 2, 3, 4, 5} : std::vector<int>{2, 4, 0, 1, 3, 5};
        std::vector<Integer*> expected;
        for (int i : order) expected.push_back(added[i]);
        EXPECT_EQ(drain(h), expected);
    }
}

// Random adds, removals from inside (by equality and by identity) and
// removals of the first, against a model of what must leave next.
TEST_F(HeapOrderTest, RandomOperationsKeepTheHeapValid) {
    for (int kind : {Heap::FIFO, Heap::MIN, Heap::MAX}) {
        SCOPED_TRACE(kind);
        std::mt19937 random(20240611u + unsigned(kind));
        ExposedHeap h(0, kind);
        std::map<Integer*, unsigned> model;  // element -> its insertion number
        unsigned inserted = 0;
        auto expectedFirst = [&]() {
            Integer* best = 0;
            for (auto& [el, number] : model) {
                if (!best) {
                    best = el;
                    continue;
                }
                int c = kind == 0 ? 0 : el->compare(*best) * (kind > 0 ? 1 : -1);
                if (c < 0 || (c == 0 && number < model[best])) best = el;
            }
            return best;
        };
        for (int step = 0; step < 3000; ++step) {
            int op = int(random() % 10);
            if (model.empty() || op < 5) {
                owned.push_back(new Integer(int(random() % 13)));
                h.add(*owned.back());
                model[owned.back()] = ++inserted;
            } else if (op < 7) {
                auto victim = std::next(model.begin(), long(random() % model.size()));
                Integer key(victim->first->value());
                Integer* removed = CAST(Integer, h.remove(key));
                ASSERT_TRUE(model.count(removed));
                EXPECT_EQ(removed->value(), key.value());
                model.erase(removed);
            } else if (op < 8) {
                auto victim = std::next(model.begin(), long(random() % model.size()));
                EXPECT_EQ(h.removeSame(*victim->first), victim->first);
                model.erase(victim);
            } else {
                Integer* expected = expectedFirst();
                ASSERT_EQ(h.removeFirst(), expected) << "step " << step;
                model.erase(expected);
            }
            ASSERT_EQ(h.size(), model.size());
            ASSERT_TRUE(h.ordered()) << "step " << step;
        }
        while (!model.empty()) {
            Integer* expected = expectedFirst();
            ASSERT_EQ(h.removeFirst(), expected);
            model.erase(expected);
        }
    }
}

// Look-ups and printing go through the slots in their order.
TEST_F(HeapOrderTest, FindCountAndPrintBySlots) {
    Heap fifo;
    EXPECT_EQ(printedText(fifo), "Heap(FIFO)[]");
    fill(fifo, {3, 1, 2});
    EXPECT_EQ(printedText(fifo), "Heap(FIFO)[3, 1, 2]");
    Heap min(16, Heap::MIN);
    fill(min, {3, 1, 2});
    EXPECT_EQ(printedText(min), "Heap (MIN)[1, 3, 2]");

    Heap h(16, Heap::MAX);
    std::vector<Integer*> added = fill(h, {4, 8, 4, 1});
    Integer four(4), five(5);
    EXPECT_EQ(h.occurrencesOf(four), 2u);
    EXPECT_EQ(h.find(five), nil);
    EXPECT_EQ(h.findSame(*added[3]), added[3]);
    int i = h.indexOf(*added[1]);
    ASSERT_GE(i, 0);
    EXPECT_EQ(h.at(i), added[1]);
    h.removeAll();
    EXPECT_TRUE(h.isEmpty());
    EXPECT_EQ(printedText(h), "Heap (MAX)[]");
}

TEST_F(HeapOrderTest, CopiesAreIndependent) {
    ExposedHeap h(16, Heap::MIN);
    std::vector<Integer*> added = fill(h, {3, 1, 2});
    Heap copy(h);
    copy.removeFirst();
    EXPECT_EQ(h.size(), 3u);
    Heap* shallow = CAST(Heap, h.shallowCopy());
    EXPECT_EQ(drain(*shallow), (std::vector<Integer*>{added[1], added[2], added[0]}));
    EXPECT_EQ(h.size(), 3u);
    EXPECT_TRUE(h.ordered());
    delete shallow;
}

TEST(IntArrayTest, CheckedAccessAndResize) {
    IntArray a(3);
    a[0] = 4;
    a[2] = -1;
    EXPECT_EQ(printedText(a), "IntArray[4, 0, -1]");
    EXPECT_EQ(raisedText([&] { a[3]; }), "[INDEXRANGE] Index out of range: IntArray::operator[](3)");
    a.reSize(4);
    EXPECT_EQ(printedText(a), "IntArray[4, 0, -1, 0]");
    IntArray b(a);
    EXPECT_TRUE(b.isEqual(a));
    b[1] = 7;
    EXPECT_FALSE(b.isEqual(a));
    a.reSize(0);
    EXPECT_EQ(printedText(a), "IntArray[]");
}

}  // namespace
