// Tests of Set and IdentSet: capacity rule, probing, growth, deletion, iteration, set algebra.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <vector>

#include "quill/all.h"
#include "testutil.h"

extern Class class_HashKey;

// A key whose hash the test chooses, so that probe chains can be laid out
// slot by slot. Keys are equal when their ids are.
class HashKey : public Object {
    DECLARE_MEMBERS(HashKey)
public:
    HashKey(int id = 0, unsigned hashValue = 0) : id(id), hashValue(hashValue) {}
    bool isEqual(const Object& ob) const override {
        return ob.isMemberOf(class_HashKey) && static_cast<const HashKey&>(ob).id == id;
    }
    unsigned hash() const override { return hashValue; }
    void printOn(std::ostream& os) const override { os << "key" << id; }
    int id;
    unsigned hashValue;
};

DEFINE_CLASS(HashKey, Object, 1, 0)

namespace {

std::map<int, int> slotsOf(const Set& s) {
    std::map<int, int> slots;
    Iterator it(s);
    while (Object* ob = it()) slots[static_cast<HashKey*>(ob)->id] = it.index;
    return slots;
}

std::set<int> idsOf(const Set& s) {
    std::set<int> ids;
    Iterator it(s);
    while (Object* ob = it()) ids.insert(static_cast<HashKey*>(ob)->id);
    return ids;
}

std::set<int> valuesOf(const Set& s) {
    std::set<int> values;
    Iterator it(s);
    while (Object* ob = it()) values.insert(static_cast<Integer*>(ob)->value());
    return values;
}

}  // namespace

TEST(SetTest, CapacityIsTheNextPowerOfTwo) {
    struct Row {
        unsigned asked, threshold, slots, mask;
    } rows[] = {
        {1, 1, 2, 1}, {2, 2, 4, 3}, {3, 4, 8, 7}, {128, 128, 256, 255}, {129, 256, 512, 511},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.asked);
        Set s(row.asked);
        EXPECT_EQ(s.capacity(), row.threshold);
        EXPECT_EQ(s.tableSize(), row.slots);
        EXPECT_EQ(s.tableMask(), row.mask);
    }
    EXPECT_EQ(raisedText([] { Set s(0); }),
              "[ALLOCSIZE] Negative or zero object allocation size requested: Set::setCapacity()");
}

TEST(SetTest, The129thElementDoublesTheTable) {
    Set s(100);
    std::vector<std::unique_ptr<Integer>> numbers;
    for (int i = 0; i < 129; ++i) numbers.emplace_back(new Integer(i * 37));
    for (int i = 0; i < 128; ++i) s.add(*numbers[i]);
    EXPECT_EQ(s.capacity(), 128u);
    EXPECT_EQ(s.tableSize(), 256u);
    s.add(*numbers[128]);
    EXPECT_EQ(s.capacity(), 256u);
    EXPECT_EQ(s.tableSize(), 512u);
    for (auto& n : numbers) EXPECT_EQ(s.find(Integer(n->value())), n.get());
}

// Regression: a Set of capacity 1 did not grow on its second element (2 is
// not above the new size 2), its two slots filled, and a look-up of an
// absent element probed for ever.
TEST(SetTest, CapacityOneGrowsOnTheSecondElement) {
    Set s(1);
    Integer one(1), two(2);
    s.add(one);
    EXPECT_EQ(s.capacity(), 1u);
    s.add(two);
    EXPECT_EQ(s.capacity(), 2u);
    EXPECT_EQ(s.tableSize(), 4u);
    EXPECT_EQ(s.find(Integer(3)), nil);
    EXPECT_EQ(s.find(Integer(2)), &two);
}

TEST(SetTest, AddKeepsOneOfEqualElements) {
    Set s;
    Integer one(1), otherOne(1), two(2);
    EXPECT_EQ(s.add(one), &one);
    EXPECT_EQ(s.add(otherOne), &one);  // the stored element answers
    EXPECT_EQ(s.add(two), &two);
    EXPECT_EQ(s.add(*nil), nil);
    EXPECT_EQ(s.size(), 2u);
    EXPECT_EQ(s.occurrencesOf(otherOne), 1u);
    EXPECT_EQ(s.occurrencesOf(*nil), 0u);
    EXPECT_EQ(s.findSame(one), &one);
    EXPECT_EQ(s.findSame(otherOne), nil);
}

TEST(SetTest, RefusedAndFailingOperations) {
    Set s;
    Integer one(1), two(2);
    s.add(one);
    EXPECT_EQ(raisedText([&] { s.remove(two); }),
              "[REMOVEERR] Tried to remove object not in collection: Set::remove(2)");
    EXPECT_EQ(raisedText([&] { s.removeSame(one); }),
              "[ILLEGALMETHOD] Should not implement method Set::removeSame()");
    EXPECT_EQ(raisedText([&] { s.replace(one, two); }),
              "[ILLEGALMETHOD] Should not implement method Set::replace()");
    EXPECT_EQ(s.size(), 1u);
}

// Keys 1..5 form one chain that starts at slot 1 and wraps around slot 0:
// slots 1, 0, 15, 14 and 13; key 6 starts at 14 and lands at 12. After any
// removal, in any order, every remaining key must still be found.
TEST(SetTest, RemovalInAChainAroundSlotZeroKeepsOthersFindable) {
    std::vector<HashKey> keys = {{1, 1}, {2, 1}, {3, 0}, {4, 15}, {5, 14}, {6, 14}};
    std::map<int, int> layout = {{1, 1}, {2, 0}, {3, 15}, {4, 14}, {5, 13}, {6, 12}};
    std::vector<int> order = {0, 1, 2, 3, 4, 5};
    int permutations = 0;
    do {
        Set s(8);
        for (HashKey& k : keys) s.add(k);
        ASSERT_EQ(slotsOf(s), layout);
        std::set<int> left = {1, 2, 3, 4, 5, 6};
        for (int k : order) {
            EXPECT_EQ(s.remove(HashKey(keys[k].id, keys[k].hashValue)), &keys[k]);
            left.erase(keys[k].id);
            for (HashKey& other : keys) {
                Object* found = s.find(HashKey(other.id, other.hashValue));
                EXPECT_EQ(found, left.count(other.id) ? &other : nil)
                    << "key " << other.id << " after removing key " << keys[k].id;
            }
            EXPECT_EQ(s.size(), left.size());
        }
        ++permutations;
    } while (std::next_permutation(order.begin(), order.end()) && !HasFailure());
    EXPECT_EQ(permutations, 720);
}

// An element whose start lies between the walk and the hole stays put.
TEST(SetTest, RemovalLeavesElementsThatStayReachable) {
    Set s(8);
    HashKey a(1, 5), b(2, 4), c(3, 5);  // slots 5, 4, 3
    for (HashKey* k : {&a, &b, &c}) s.add(*k);
    ASSERT_EQ(slotsOf(s), (std::map<int, int>{{1, 5}, {2, 4}, {3, 3}}));
    s.remove(a);
    EXPECT_EQ(slotsOf(s), (std::map<int, int>{{2, 4}, {3, 5}}));
}

// Adds, removals and look-ups drawn at random, checked against std::set,
// with spread hashes and with hashes that pile into a few long chains.
TEST(SetTest, RandomOperationsAgreeWithStdSet) {
    struct Hashing {
        const char* name;
        unsigned (*hash)(int);
    } hashings[] = {
        {"spread", [](int id) { return unsigned(id) * 2654435761u; }},
        {"five chains", [](int id) { return unsigned(id % 5) * 100; }},
        {"multiples of the mask", [](int id) { return unsigned(id) * 255u; }},
    };
    for (const Hashing& hashing : hashings) {
        SCOPED_TRACE(hashing.name);
        std::mt19937 random(20240611);
        std::uniform_int_distribution<int> pickKey(0, 299), pickOp(0, 9);
        std::vector<std::unique_ptr<HashKey>> keys;
        for (int i = 0; i < 300; ++i) keys.emplace_back(new HashKey(i, hashing.hash(i)));
        Set s(1);
        std::set<int> model;
        for (int step = 0; step < 20000; ++step) {
            int id = pickKey(random);
            HashKey probe(id, hashing.hash(id));
            int op = pickOp(random);
            if (op < 5) {
                Object* answer = s.add(*keys[id]);
                ASSERT_EQ(answer, keys[id].get());
                model.insert(id);
            } else if (op < 8) {
                if (model.count(id)) {
                    ASSERT_EQ(s.remove(probe), keys[id].get());
                    model.erase(id);
                } else {
                    ASSERT_NE(raisedText([&] { s.remove(probe); }), "no error");
                }
            } else {
                ASSERT_EQ(s.find(probe), model.count(id) ? keys[id].get() : nil) << "step " << step;
            }
            ASSERT_EQ(s.size(), model.size());
        }
        EXPECT_EQ(idsOf(s), model);
        for (int id = 0; id < 300; ++id)
            EXPECT_EQ(s.includes(HashKey(id, hashing.hash(id))), model.count(id) == 1);
    }
}

TEST(SetTest, IterationVisitsEachElementOnce) {
    Set s(4);
    std::vector<std::unique_ptr<Integer>> numbers;
    std::multiset<int> added, seen;
    for (int i = 0; i < 50; ++i) {
        numbers.emplace_back(new Integer(i * 11));
        s.add(*numbers.back());
        added.insert(i * 11);
    }
    Iterator it(s);
    while (Object* ob = it()) seen.insert(static_cast<Integer*>(ob)->value());
    EXPECT_EQ(seen, added);
    EXPECT_EQ(it.count, 50);
    EXPECT_EQ(it(), nullptr);
}

// Removing the element the iterator stands on is refused at the next step;
// removing another is allowed.
TEST(SetTest, RemovalDuringIteration) {
    Set s;
    Integer one(1), two(2), three(3);
    for (Integer* n : {&one, &two, &three}) s.add(*n);
    Iterator it(s);
    ASSERT_EQ(it(), &one);
    s.remove(three);
    EXPECT_EQ(it(), &two);
    s.remove(two);
    std::string text = raisedText([&] { it(); });
    EXPECT_EQ(text.rfind("[ITEREMOVE] Cannot remove an object from a Set during an iteration\n", 0), 0u)
        << text;
}

TEST(SetTest, ReSizeOnlyAboveTheSize) {
    Set s(4);
    Integer numbers[] = {1, 2, 3};
    for (Integer& n : numbers) s.add(n);
    s.reSize(3);
    EXPECT_EQ(s.capacity(), 4u);
    s.reSize(100);
    EXPECT_EQ(s.capacity(), 128u);
    s.reSize(4);
    EXPECT_EQ(s.capacity(), 4u);
    EXPECT_EQ(valuesOf(s), (std::set<int>{1, 2, 3}));
}

TEST(SetTest, AlgebraByMembership) {
    std::vector<std::unique_ptr<Integer>> pool;
    auto make = [&](std::initializer_list<int> values) {
        Set s;
        for (int v : values) {
            pool.emplace_back(new Integer(v));
            s.add(*pool.back());
        }
        return s;
    };
    Set a = make({1, 2, 3, 4, 5, 6});
    Set b = make({4, 5, 6, 7, 8, 9});
    EXPECT_EQ(valuesOf(a - b), (std::set<int>{1, 2, 3}));
    EXPECT_EQ(valuesOf(b - a), (std::set<int>{7, 8, 9}));
    EXPECT_EQ(valuesOf(a & b), (std::set<int>{4, 5, 6}));
    EXPECT_EQ(valuesOf(a | b), (std::set<int>{1, 2, 3, 4, 5, 6, 7, 8, 9}));

    Set c = a;
    c -= b;
    EXPECT_EQ(valuesOf(c), (std::set<int>{1, 2, 3}));
    c = a;
    c &= b;
    EXPECT_EQ(valuesOf(c), (std::set<int>{4, 5, 6}));
    c = a;
    c |= b;
    EXPECT_EQ(valuesOf(c), (std::set<int>{1, 2, 3, 4, 5, 6, 7, 8, 9}));

    c = a;
    c &= c;
    EXPECT_EQ(valuesOf(c), valuesOf(a));
    c |= c;
    EXPECT_EQ(c.size(), 6u);
    c -= c;
    EXPECT_EQ(c.size(), 0u);
}

TEST(IdentSetTest, MatchesByAddress) {
    IdentSet s;
    Integer one(1), otherOne(1);
    EXPECT_EQ(s.add(one), &one);
    EXPECT_EQ(s.add(otherOne), &otherOne);
    EXPECT_EQ(s.size(), 2u);
    EXPECT_EQ(s.find(Integer(1)), nil);
    EXPECT_EQ(s.find(otherOne), &otherOne);
    EXPECT_EQ(s.remove(one), &one);
    EXPECT_EQ(s.find(one), nil);
    EXPECT_EQ(raisedText([&] { s.remove(Integer(1)); }),
              "[REMOVEERR] Tried to remove object not in collection: IdentSet::remove(1)");
}

TEST(IdentSetTest, GrowsAndRemovesLikeASet) {
    IdentSet s(2);
    std::vector<std::unique_ptr<Integer>> numbers;
    for (int i = 0; i < 500; ++i) {
        numbers.emplace_back(new Integer(7));  // all equal, all distinct
        s.add(*numbers.back());
    }
    EXPECT_EQ(s.size(), 500u);
    EXPECT_EQ(s.capacity(), 512u);
    for (int i = 0; i < 500; i += 2) s.remove(*numbers[i]);
    for (int i = 0; i < 500; ++i) EXPECT_EQ(s.find(*numbers[i]), i % 2 ? numbers[i].get() : nil);
}

// A plain Set made from an IdentSet matches by equality: equal elements merge.
TEST(SetTest, CopiesKeepTheirOwnMatching) {
    IdentSet ident;
    Integer one(1), otherOne(1), two(2);
    for (Integer* n : {&one, &otherOne, &two}) ident.add(*n);
    IdentSet identCopy(ident);
    EXPECT_EQ(identCopy.size(), 3u);
    EXPECT_EQ(identCopy.find(otherOne), &otherOne);
    Set plain(ident);
    EXPECT_EQ(plain.size(), 2u);
    EXPECT_NE(plain.find(Integer(1)), nil);
}

TEST(SetTest, DeepCopyCopiesTheElements) {
    Set s;
    s.add(*new Integer(1));
    s.add(*new Integer(2));
    Set* copy = static_cast<Set*>(s.deepCopy());
    EXPECT_TRUE(copy->isMemberOf(class_Set));
    EXPECT_EQ(valuesOf(*copy), (std::set<int>{1, 2}));
    Iterator it(*copy);
    while (Object* ob = it()) EXPECT_EQ(s.findSame(*ob), nil);
    unsigned long before = bytesInUse();
    s.deleteContents();
    EXPECT_EQ(s.size(), 0u);
    EXPECT_LT(bytesInUse(), before);
    deepDelete(copy);
}
