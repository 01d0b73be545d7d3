// The sequences: ArrayOb, OrderedCltn, SortedCltn, Stack, their iteration, errors and conversions.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "quill/all.h"
#include "testutil.h"

namespace {

std::vector<int> values(const Collection& c) {
    std::vector<int> out;
    Iterator it(c);
    while (Object* el = it()) out.push_back(CAST(Integer, el)->value());
    return out;
}

struct Pool {
    std::vector<std::unique_ptr<Integer>> owned;
    Integer& operator()(int v) {
        owned.emplace_back(new Integer(v));
        return *owned.back();
    }
};

class ExposedCltn : public OrderedCltn {
public:
    explicit ExposedCltn(unsigned capacity) : OrderedCltn(capacity) {}
    Object* slot(int i) const { return contents->elem(i); }
};

// A collection that keeps only what Collection itself provides.
class BareCollection : public Collection {};

TEST(CollectionErrorTest, EachRefusalHasItsExactText) {
    Pool n;
    OrderedCltn empty;
    OrderedCltn three;
    three.add(n(1));
    three.add(n(2));
    three.add(n(3));
    Integer& absent = n(7);
    ArrayOb array(3);
    SortedCltn sorted;
    Stack stack;
    BareCollection bare;

    struct Row {
        const char* expected;
        std::function<void()> call;
    };
    const Row rows[] = {
        {"[CLTNEMPTY] Collection empty: OrderedCltn::first()", [&] { empty.first(); }},
        {"[CLTNEMPTY] Collection empty: OrderedCltn::removeLast()", [&] { empty.removeLast(); }},
        {"[CLTNEMPTY] Collection empty: Stack::removeLast()", [&] { stack.pop(); }},
        {"[OBNOTFOUND] Object not found: OrderedCltn::before(7)", [&] { three.before(absent); }},
        {"[OBNOTFOUND] Object not found: OrderedCltn::addAfter(7)", [&] { three.addAfter(absent, n(8)); }},
        {"[REMOVEERR] Tried to remove object not in collection: OrderedCltn::remove(7)",
         [&] { three.remove(absent); }},
        {"[REMOVEERR] Tried to remove object not in collection: OrderedCltn::removeSame(2)",
         [&] { three.removeSame(n(2)); }},
        {"[REMOVEERR] Tried to remove object not in collection: OrderedCltn::replace(7)",
         [&] { three.replace(absent, n(8)); }},
        {"[INDEXRANGE] Index out of range: OrderedCltn::addAtIndex(-1)", [&] { three.addAtIndex(-1, n(8)); }},
        {"[INDEXRANGE] Index out of range: OrderedCltn::operator[](3)", [&] { three[3]; }},
        {"[INDEXRANGE] Index out of range: OrderedCltn::at(3)", [&] { three.atInline(3); }},
        {"[INDEXRANGE] Index out of range: OrderedCltn::at(-1)", [&] { three.atInline(-1); }},
        {"[INDEXRANGE] Index out of range: ArrayOb::operator[](3)", [&] { array[3]; }},
        {"[ILLEGALMETHOD] Should not implement method ArrayOb::add()", [&] { array.add(n(1)); }},
        {"[ILLEGALMETHOD] Should not implement method SortedCltn::addFirst()",
         [&] { sorted.addFirst(n(1)); }},
        {"[ILLEGALMETHOD] Should not implement method Iterator::creator()", [&] { class_Iterator.create(); }},
        {"[DRVDCLASSRSP] Derived class responsability method Collection::add()", [&] { bare.add(n(1)); }},
        {"[DRVDCLASSRSP] Derived class responsability method Collection::doNext()",
         [&] {
             Iterator it(bare);
             it();
         }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.expected);
        EXPECT_EQ(raisedText(row.call), row.expected);
    }
    EXPECT_EQ(values(three), (std::vector<int>{1, 2, 3})) << "a refused call changed the collection";
}

TEST(OrderedCltnTest, GrowsByThirtyTwoWheneverFull) {
    struct Row {
        unsigned initial;
        int adds;
        unsigned expected;
    };
    const Row rows[] = {
        {0, 1, 32}, {0, 32, 32}, {0, 33, 64}, {5, 5, 5}, {5, 6, 37},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.initial << " + " << row.adds);
        Pool n;
        OrderedCltn c(row.initial);
        EXPECT_EQ(c.capacity(), row.initial);
        for (int i = 0; i < row.adds; ++i) c.add(n(i));
        EXPECT_EQ(c.capacity(), row.expected);
        EXPECT_EQ(c.size(), unsigned(row.adds));
    }
}

TEST(OrderedCltnTest, InsertionPositionsAndSort) {
    Pool n;
    OrderedCltn c;
    c.add(n(2));
    c.addAtIndex(100, n(4));  // clipped to the end
    c.addFirst(n(0));
    c.addAfter(n(0), n(1));
    c.addBefore(n(4), n(3));
    c.addLast(n(5));
    EXPECT_EQ(values(c), (std::vector<int>{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(printedText(c), "OrderedCltn[0, 1, 2, 3, 4, 5]");
    EXPECT_EQ(c.before(n(0)), nil);
    EXPECT_EQ(c.after(n(5)), nil);
    EXPECT_EQ(CAST(Integer, c.before(n(2)))->value(), 1);

    OrderedCltn unsorted(0);
    for (int v : {5, -1, 3, 3, 9, 0}) unsorted.add(n(v));
    unsorted.sort();
    EXPECT_EQ(values(unsorted), (std::vector<int>{-1, 0, 3, 3, 5, 9}));
}

// Removal must leave the unused part of the array nil: growth and the
// iteration of the array rely on it.
TEST(OrderedCltnTest, RemovalLeavesNilBehind) {
    Pool n;
    ExposedCltn c(8);
    for (int v = 0; v < 6; ++v) c.add(n(v));
    c.removeAtIndex(2);
    c.remove(n(4));
    c.removeFirst();
    c.removeLast();
    EXPECT_EQ(values(c), (std::vector<int>{1, 3}));
    for (int i = 2; i < 8; ++i) EXPECT_EQ(c.slot(i), nil) << "slot " << i;
    c.removeAll();
    for (int i = 0; i < 8; ++i) EXPECT_EQ(c.slot(i), nil) << "slot " << i;
}

// Look-ups and removals by equality take the first equal element; those by
// identity take that object only. The same object may be there twice.
TEST(OrderedCltnTest, EqualityAndIdentity) {
    Pool n;
    OrderedCltn c;
    Integer& first = n(3);
    Integer& second = n(3);
    for (Object* ob : std::initializer_list<Object*>{&first, &first, &second, nil, nil}) c.add(*ob);
    EXPECT_EQ(c.size(), 5u);
    EXPECT_EQ(c.occurrencesOf(n(3)), 3u);
    EXPECT_EQ(c.occurrencesOf(*nil), 2u);
    EXPECT_EQ(c.findSame(first), &first);
    EXPECT_EQ(c.findSame(n(3)), nil);
    EXPECT_EQ(c.find(n(3)), &first);

    EXPECT_EQ(c.remove(n(3)), &first);
    EXPECT_EQ(c.removeSame(first), &first);
    EXPECT_EQ(c.replace(n(3), n(6)), &second);
    EXPECT_EQ(c.size(), 3u);
    EXPECT_EQ(c.occurrencesOf(n(6)), 1u);
}

TEST(OrderedCltnTest, CopiesDoNotShareTheirArray) {
    Pool n;
    OrderedCltn c;
    for (int v : {1, 2}) c.add(n(v));
    OrderedCltn copy(c);
    copy.add(n(3));
    EXPECT_EQ(c.size(), 2u);

    OrderedCltn* shallow = CAST(OrderedCltn, c.shallowCopy());
    shallow->removeFirst();
    EXPECT_EQ(values(c), (std::vector<int>{1, 2}));
    EXPECT_EQ(shallow->first(), c.last());  // elements are shared
    delete shallow;

    OrderedCltn* deep = CAST(OrderedCltn, c.deepCopy());
    EXPECT_TRUE(deep->isEqual(c));
    EXPECT_NE(deep->first(), c.first());
    deep->deleteContents();
    delete deep;
}

TEST(OrderedCltnTest, DeleteContentsFreesTheElements) {
    OrderedCltn c;
    for (int v = 0; v < 40; ++v) c.add(*new Integer(v));
    c.add(*nil);  // nil is skipped, not deleted
    unsigned long before = bytesInUse();
    c.deleteContents();
    EXPECT_LT(bytesInUse(), before);
    EXPECT_EQ(c.size(), 0u);
}

// Removing the element that the iterator stands on lets its successor slide
// into that slot; the next step must answer it instead of skipping it.
TEST(SequenceIterationTest, RemovingTheCurrentElementSkipsNothing) {
    struct Row {
        const char* name;
        std::function<SeqCltn*()> make;
    };
    const Row rows[] = {
        {"OrderedCltn", [] { return new OrderedCltn; }},
        {"SortedCltn", [] { return new SortedCltn; }},
        {"Stack", [] { return new Stack; }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        Pool n;
        SeqCltn* c = row.make();
        for (int v = 0; v < 8; ++v) c->add(n(v));
        std::vector<int> seen;
        Iterator it(*c);
        while (Object* el = it()) {
            int v = CAST(Integer, el)->value();
            seen.push_back(v);
            if (v % 3 != 1) c->remove(*el);  // the current one, including the last
        }
        EXPECT_EQ(seen, (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7}));
        EXPECT_EQ(values(*c), (std::vector<int>{1, 4, 7}));
        EXPECT_EQ(it.count, 8);
        EXPECT_EQ(it(), nullptr) << "an ended iteration stays ended";
        delete c;
    }
}

TEST(SequenceIterationTest, IteratorEqualityFollowsThePosition) {
    Pool n;
    OrderedCltn c;
    for (int v = 0; v < 3; ++v) c.add(n(v));
    Iterator a(c), b(c);
    EXPECT_TRUE(a.isEqual(b));
    EXPECT_EQ(a.hash(), b.hash());
    a();
    EXPECT_FALSE(a.isEqual(b));
    b();
    EXPECT_TRUE(a.isEqual(b));
    a.reset();
    EXPECT_EQ(a.count, 0);
    EXPECT_EQ(CAST(Integer, a())->value(), 0);
}

TEST(ArrayObTest, SlotsAreNilAndAllCount) {
    Pool n;
    ArrayOb a(3);
    a[0] = &n(4);
    a.atIndexPut(2, n(6));
    EXPECT_EQ(printedText(a), "ArrayOb[4, NIL, 6]");
    a.reSize(5);
    EXPECT_EQ(printedText(a), "ArrayOb[4, NIL, 6, NIL, NIL]");
    a.reSize(0);
    EXPECT_EQ(printedText(a), "ArrayOb[]");
    ArrayOb empty(0);
    EXPECT_EQ(Iterator(empty)(), nullptr);
}

TEST(SortedCltnTest, EqualElementsKeepTheirInsertionOrder) {
    Pool n;
    SortedCltn c;
    std::vector<Integer*> threes;
    for (int v : {3, 1, 3, 5, 3, 1}) {
        Integer& i = n(v);
        if (v == 3) threes.push_back(&i);
        c.add(i);
    }
    EXPECT_EQ(values(c), (std::vector<int>{1, 1, 3, 3, 3, 5}));
    for (int k = 0; k < 3; ++k) EXPECT_EQ(c.at(2 + k), threes[k]) << "the " << k << "th 3";
}

int byLength(Object* const* a, Object* const* b) { return int((*a)->size()) - int((*b)->size()); }

int descending(Object* const* a, Object* const* b) { return (*b)->compare(**a); }

// Elements that compare equal but are not isEqual: indexOf must look along
// the whole run of them, on both sides of where the binary search lands.
TEST(SortedCltnTest, IndexOfWalksTheRunOfEqualKeys) {
    std::vector<String*> words;
    for (const char* w : {"b", "dd", "aa", "cc", "ee", "xyz", "ff", "gg", "hh"})
        words.push_back(new String(w));
    SortedCltn c;
    EXPECT_EQ(c.setCompareFunction(byLength), &SortedCltn::defaultCompare);
    for (String* s : words) c.add(*s);
    EXPECT_EQ(printedText(c), "SortedCltn[b, dd, aa, cc, ee, ff, gg, hh, xyz]");
    for (const char* w : {"b", "dd", "aa", "cc", "ee", "ff", "gg", "hh", "xyz"}) {
        SCOPED_TRACE(w);
        String key(w);
        int i = c.indexOf(key);
        ASSERT_GE(i, 0);
        EXPECT_TRUE(c.at(i)->isEqual(key));
    }
    EXPECT_EQ(c.indexOf(String("zz")), -1);
    EXPECT_EQ(c.indexOf(String("zzzz")), -1);
    delete c.remove(String("cc"));
    EXPECT_EQ(printedText(c), "SortedCltn[b, dd, aa, ee, ff, gg, hh, xyz]");
    c.deleteContents();
}

TEST(SortedCltnTest, ANewCompareFunctionResorts) {
    Pool n;
    SortedCltn c;
    for (int v : {2, 9, 4}) c.add(n(v));
    EXPECT_EQ(c.setCompareFunction(descending), &SortedCltn::defaultCompare);
    EXPECT_EQ(values(c), (std::vector<int>{9, 4, 2}));
    c.add(n(5));
    EXPECT_EQ(values(c), (std::vector<int>{9, 5, 4, 2}));
    EXPECT_EQ(c.setCompareFunction(0), &descending);
    EXPECT_EQ(c.compareFunctionOf(), &descending);
    EXPECT_EQ(c.indexOf(n(4)), 2);
}

TEST(ConversionTest, EachClassFromAnOrderedCltn) {
    Pool n;
    OrderedCltn c;
    for (int v : {3, 1, 2, 1}) c.add(n(v));

    ArrayOb a = c.asArrayOb();
    EXPECT_EQ(printedText(a), "ArrayOb[3, 1, 2, 1]");
    OrderedCltn o = c.asOrderedCltn();
    EXPECT_TRUE(o.isEqual(c));
    SortedCltn s = c.asSortedCltn();
    EXPECT_EQ(printedText(s), "SortedCltn[1, 1, 2, 3]");
    Set set = c.asSet();
    EXPECT_EQ(set.size(), 3u);
    for (int v : {1, 2, 3}) EXPECT_TRUE(set.includes(n(v))) << v;

    Collection* stack = c.convert(class_Stack);
    EXPECT_TRUE(stack->isMemberOf(class_Stack));
    EXPECT_EQ(values(*stack), (std::vector<int>{3, 1, 2, 1}));
    delete stack;

    OrderedCltn empty;
    EXPECT_EQ(empty.asSet().size(), 0u);
    EXPECT_EQ(empty.asArrayOb().size(), 0u);
}

TEST(CollectionTest, AddingAndRemovingItsOwnContents) {
    Pool n;
    OrderedCltn c;
    for (int v : {1, 2}) c.add(n(v));
    c.addContentsOf(c);
    EXPECT_EQ(values(c), (std::vector<int>{1, 2, 1, 2}));
    c.removeContentsOf(c);
    EXPECT_TRUE(c.isEmpty());
}

}  // namespace
