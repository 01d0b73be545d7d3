// Stream forms of the collections, pairs and iterators: round trips, exact text, sharing, cycles.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "iotest.h"
#include "quill/all.h"
#include "quill/objio.h"
#include "testutil.h"

namespace {

class CltnioTest : public ::testing::Test {
protected:
    void SetUp() override { resetReadEnvironment(); }
};

Object* roundTrip(const Object& ob, bool binary) {
    std::string error;
    Object* copy = binary ? readBinary(storedBinary(ob), &error) : readText(storedText(ob), &error);
    EXPECT_EQ(error, "");
    return copy;
}

// The printed elements in the order of iteration, or sorted for the hashed classes.
std::vector<std::string> elementTexts(const Collection& c, bool sorted) {
    std::vector<std::string> texts;
    Iterator it(c);
    while (Object* el = it()) texts.push_back(printedText(*el));
    if (sorted) std::sort(texts.begin(), texts.end());
    return texts;
}

// The elements that leave a heap, in order; the heap is emptied and its elements deleted.
std::vector<std::string> drain(Heap& h) {
    std::vector<std::string> texts;
    while (!h.isEmpty()) {
        Object* el = h.removeFirst();
        texts.push_back(printedText(*el));
        delete el;
    }
    return texts;
}

// One collection with its elements: Integers 3, 1, 2 or Strings "c", "a", "b";
// the dictionaries hold pairs of a String key and such a value.
Collection* filled(const Class& c, bool strings) {
    Collection* cltn = CAST(Collection, c.create());
    const char* words[] = {"c", "a", "b"};
    int numbers[] = {3, 1, 2};
    for (int i = 0; i < 3; ++i) {
        Object* el = strings ? static_cast<Object*>(new String(words[i]))
                             : static_cast<Object*>(new Integer(numbers[i]));
        if (c.name() == std::string("Dictionary") || c.name() == std::string("IdentDict"))
            el = new Assoc(*new String(words[i]), *el);
        if (cltn->isKindOf(class_ArrayOb))
            static_cast<ArrayOb*>(cltn)->atIndexPut(i, *el);
        else
            cltn->add(*el);
    }
    return cltn;
}

TEST_F(CltnioTest, EveryCollectionClassRoundTrips) {
    const Class* classes[] = {&class_OrderedCltn, &class_SortedCltn, &class_Stack,
                              &class_Heap,        &class_Set,        &class_IdentSet,
                              &class_ArrayOb,     &class_Dictionary, &class_IdentDict};
    for (const Class* c : classes) {
        bool hashed =
            c == &class_Set || c == &class_IdentSet || c == &class_Dictionary || c == &class_IdentDict;
        for (bool strings : {false, true}) {
            for (bool binary : {false, true}) {
                SCOPED_TRACE(std::string(c->name()) + (strings ? " of Strings" : " of Integers") +
                             (binary ? ", binary" : ", text"));
                Collection* original = filled(*c, strings);
                Collection* copy = CAST(Collection, roundTrip(*original, binary));
                ASSERT_TRUE(copy);
                EXPECT_EQ(copy->isA(), c);
                EXPECT_EQ(copy->size(), original->size());
                EXPECT_EQ(copy->capacity(), original->capacity());
                EXPECT_EQ(elementTexts(*copy, hashed), elementTexts(*original, hashed));
                deepDelete(copy);
                deepDelete(original);
            }
        }
    }
}

TEST_F(CltnioTest, TextOfEachFieldLayout) {
    Integer three(3), one(1);
    OrderedCltn ordered;
    ordered.add(three);
    ordered.add(one);
    Heap heap(4, Heap::MAX);
    Stack stack(8, 5);
    ArrayOb array(2);
    IntArray ints(3);
    ints[0] = 7;
    ints[2] = -1;
    LookupKey key;
    struct Case {
        const char* name;
        const Object& ob;
        std::string expected;
    } cases[] = {
        {"OrderedCltn", ordered,
         ":OrderedCltn." + sig(class_OrderedCltn) + "{16 2:Integer." + sig(class_Integer) +
             "{3 }\n#2{1 }\n}\n"},
        {"Heap", heap, ":Heap." + sig(class_Heap) + "{4 0 -1}\n"},
        {"empty Stack", stack, ":Stack." + sig(class_Stack) + "{8 0 5 }\n"},
        {"ArrayOb of nil", array, ":ArrayOb." + sig(class_ArrayOb) + "{2@0 @0 }\n"},
        {"IntArray", ints, ":IntArray." + sig(class_IntArray) + "{3 7 0 -1 }\n"},
        {"LookupKey of nil", key, ":LookupKey." + sig(class_LookupKey) + "{@0 }\n"},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.name);
        std::string written = storedText(k.ob);
        EXPECT_EQ(written, k.expected);
        Object* copy = readText(written);
        ASSERT_TRUE(copy);
        EXPECT_EQ(storedText(*copy), written);
        deepDelete(copy);
    }
}

TEST_F(CltnioTest, HashedCollectionsAreRebuiltThroughAdd) {
    // Two equal but distinct strings: one element of a Set, two of an IdentSet.
    String x1("x"), x2("x"), y("y");
    IdentSet ident;
    ident.add(x1);
    ident.add(x2);
    ident.add(y);
    IdentSet* identCopy = CAST(IdentSet, roundTrip(ident, false));
    EXPECT_EQ(identCopy->size(), 3u);
    EXPECT_EQ(identCopy->find(x1), nil);  // the originals are not its elements
    deepDelete(identCopy);

    // A large Set grows on the writing side; the copy takes its capacity at once.
    Set big(1);
    for (int i = 0; i < 100; ++i) big.add(*new Integer(i * 7));
    Set* bigCopy = CAST(Set, roundTrip(big, true));
    EXPECT_EQ(bigCopy->capacity(), 128u);
    for (int i = 0; i < 100; ++i) EXPECT_NE(bigCopy->find(Integer(i * 7)), nil) << i;
    deepDelete(bigCopy);
    big.deleteContents();

    Dictionary dict;
    dict.atPut(*new String("one"), *new Integer(1));
    dict.addAssoc(*new AssocInt(*new String("two"), 2));
    Dictionary* dictCopy = CAST(Dictionary, roundTrip(dict, false));
    EXPECT_EQ(printedText(*dictCopy->atKey(String("one"))), "1");
    Object* pair = dictCopy->assocAt(String("two"));
    ASSERT_TRUE(pair->isKindOf(class_AssocInt));
    EXPECT_EQ(static_cast<AssocInt*>(pair)->intValue(), 2);
    deepDelete(dictCopy);
    dict.deepDeleteContents();

    // IdentDict keys are matched by the address of the key read.
    IdentDict byAddress;
    Integer k(5);
    byAddress.atPut(k, *nil);
    IdentDict* byAddressCopy = CAST(IdentDict, roundTrip(byAddress, true));
    EXPECT_EQ(byAddressCopy->assocAt(Integer(5)), nil);
    Iterator it(*byAddressCopy);
    LookupKey* readPair = CAST(LookupKey, it());
    EXPECT_EQ(byAddressCopy->assocAt(*readPair->key()), readPair);
    deepDelete(byAddressCopy);
    byAddress.deleteContents();
}

int reverseCompare(Object* const* a, Object* const* b) { return (*b)->compare(**a); }

TEST_F(CltnioTest, SortedCltnTakesTheDefaultOrderAndStackItsGrowth) {
    SortedCltn sorted;
    sorted.setCompareFunction(reverseCompare);
    for (int n : {2, 3, 1}) sorted.add(*new Integer(n));
    EXPECT_EQ(elementTexts(sorted, false), (std::vector<std::string>{"3", "2", "1"}));
    SortedCltn* copy = CAST(SortedCltn, roundTrip(sorted, false));
    EXPECT_EQ(copy->compareFunctionOf(), &SortedCltn::defaultCompare);
    EXPECT_EQ(elementTexts(*copy, false), (std::vector<std::string>{"1", "2", "3"}));
    deepDelete(copy);
    sorted.deleteContents();

    // A Stack keeps its growth step.
    Stack stack(1, 3);
    stack.push(*new Integer(1));
    Stack* stackCopy = CAST(Stack, roundTrip(stack, false));
    EXPECT_EQ(stackCopy->capacity(), 1u);
    stackCopy->push(*new Integer(2));
    EXPECT_EQ(stackCopy->capacity(), 4u);
    deepDelete(stackCopy);
    stack.deleteContents();
}

TEST_F(CltnioTest, HeapsKeepTheirOrder) {
    struct Case {
        int kind;
        std::vector<std::string> leaving;
    } cases[] = {
        {Heap::MIN, {"1", "2", "3", "4", "5"}},
        {Heap::MAX, {"5", "4", "3", "2", "1"}},
        {Heap::FIFO, {"5", "1", "4", "2", "3"}},
    };
    for (const Case& k : cases) {
        for (bool binary : {false, true}) {
            SCOPED_TRACE(std::to_string(k.kind) + (binary ? " binary" : " text"));
            Heap heap(8, k.kind);
            for (int n : {5, 1, 4, 2, 3}) heap.add(*new Integer(n));
            Heap* copy = CAST(Heap, roundTrip(heap, binary));
            EXPECT_EQ(copy->heapKind(), k.kind);
            EXPECT_EQ(copy->capacity(), 8u);
            EXPECT_EQ(drain(*copy), k.leaving);
            copy->add(*new Integer(9));  // the read heap takes new elements
            EXPECT_EQ(copy->size(), 1u);
            deepDelete(copy);
            heap.deleteContents();
        }
    }
}

TEST_F(CltnioTest, IteratorIsPositionedAfterARoundTrip) {
    OrderedCltn c;
    for (int n : {10, 20, 30, 40}) c.add(*new Integer(n));
    Iterator it(c);
    it();
    it();
    for (bool binary : {false, true}) {
        SCOPED_TRACE(binary ? "binary" : "text");
        Iterator* copy = CAST(Iterator, roundTrip(it, binary));
        EXPECT_EQ(copy->count, 2);
        EXPECT_EQ(copy->index, 1);
        ASSERT_TRUE(copy->collection()->isKindOf(class_OrderedCltn));
        EXPECT_NE(copy->collection(), &c);
        EXPECT_EQ(printedText(*(*copy)()), "30");
        EXPECT_EQ(printedText(*(*copy)()), "40");
        EXPECT_EQ((*copy)(), nullptr);
        Collection* read = const_cast<Collection*>(copy->collection());
        delete copy;
        deepDelete(read);
    }
    c.deleteContents();
}

TEST_F(CltnioTest, NestedCollectionsWithSharingAndCycles) {
    // outer = [outer, inner, s, pair]; inner = [s, outer]; pair = (s => inner)
    String* s = new String("shared");
    OrderedCltn* outer = new OrderedCltn;
    IdentSet* inner = new IdentSet;  // by address: outer can't be hashed by value
    Assoc* pair = new Assoc(*s, *inner);
    outer->add(*outer);
    outer->add(*inner);
    outer->add(*s);
    outer->add(*pair);
    inner->add(*s);
    inner->add(*outer);
    for (bool binary : {false, true}) {
        SCOPED_TRACE(binary ? "binary" : "text");
        OrderedCltn* o = CAST(OrderedCltn, roundTrip(*outer, binary));
        ASSERT_EQ(o->size(), 4u);
        EXPECT_EQ(o->at(0), o);
        IdentSet* i = CAST(IdentSet, o->at(1));
        Object* str = o->at(2);
        Assoc* a = CAST(Assoc, o->at(3));
        EXPECT_EQ(i->size(), 2u);
        EXPECT_EQ(i->findSame(*str), str);
        EXPECT_EQ(i->findSame(*o), o);
        EXPECT_EQ(a->key(), str);
        EXPECT_EQ(a->value(), i);
        deepDelete(o);
    }
    delete pair;
    delete inner;
    delete outer;
    delete s;
}

// A truncated collection is an early end; an abstract one is not read.
TEST_F(CltnioTest, TruncatedAndAbstractCollections) {
    Integer one(1), two(2);
    OrderedCltn c;
    c.add(one);
    c.add(two);
    std::string written = storedText(c);
    std::string error;
    std::string truncated = written.substr(0, written.find('#'));
    EXPECT_EQ(readText(truncated, &error), nullptr);
    EXPECT_EQ(error, "[RDEOF] Premature EOF encountered on input stream");
    EXPECT_EQ(readText(":ArrayOb." + sig(class_ArrayOb) + "{x@0 }", &error), nullptr);
    EXPECT_EQ(error.substr(0, 8), "[RDFAIL]");
    EXPECT_EQ(readText(":Collection." + sig(class_Collection) + "{16 0}\n", &error), nullptr);
    EXPECT_NE(error.find("reader constructor"), std::string::npos) << error;
}

// Collections nested a million deep overflowed the stack of the reader.
TEST_F(CltnioTest, NestingBeyondTheStackIsARefusedRead) {
    std::string level = "#1{16 1 ";
    std::string text = ":OrderedCltn." + sig(class_OrderedCltn) + "{16 1 ";
    for (int i = 0; i < 1000000; ++i) text += level;
    std::string error;
    EXPECT_EQ(readText(text, &error), nullptr);
    EXPECT_EQ(error, "[RDFAIL] Input stream read failed ... objects nested too deeply ...");
}

// A damaged count must end in an error at the end of the stream, and a
// damaged capacity in a bounded allocation.
TEST_F(CltnioTest, DamagedCountsAndCapacities) {
    const std::string huge = "4294967295";
    struct Case {
        const char* name;
        std::string text;
    };
    Case endsEarly[] = {
        {"OrderedCltn", ":OrderedCltn." + sig(class_OrderedCltn) + "{16 " + huge + "@0 @0 "},
        {"Heap", ":Heap." + sig(class_Heap) + "{16 " + huge + " 0@0 @0 "},
        {"ArrayOb", ":ArrayOb." + sig(class_ArrayOb) + "{" + huge + "@0 @0 "},
        {"IntArray", ":IntArray." + sig(class_IntArray) + "{" + huge + " 1 2 "},
    };
    for (const Case& k : endsEarly) {
        SCOPED_TRACE(k.name);
        unsigned long before = bytesInUse();
        std::string error;
        EXPECT_EQ(readText(k.text, &error), nullptr);
        EXPECT_EQ(error, "[RDEOF] Premature EOF encountered on input stream");
        EXPECT_LT(bytesInUse(), before + 200000);
    }

    // A capacity above the reserve is taken once the elements are read; a
    // damaged one stops at the limit.
    const Class* classes[] = {&class_OrderedCltn, &class_Set, &class_Heap};
    for (const Class* c : classes) {
        SCOPED_TRACE(c->name());
        std::string head = ":" + std::string(c->name()) + "." + sig(*c) + "{";
        std::string tail = c == &class_Heap ? " 1 0@0 }" : " 1@0 }";
        Collection* large = CAST(Collection, readText(head + "5000" + tail));
        EXPECT_EQ(large->capacity(), c == &class_Set ? 8192u : 5000u);
        EXPECT_EQ(large->size(), c == &class_Set ? 0u : 1u);  // a Set takes no nil
        delete large;
        Collection* damaged = CAST(Collection, readText(head + huge + tail));
        EXPECT_EQ(damaged->capacity(), unsigned(Collection::READ_CAPACITY_LIMIT));
        delete damaged;
    }
}

}  // namespace
