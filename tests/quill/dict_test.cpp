// Tests of Dictionary, IdentDict and the pairs LookupKey, Assoc and AssocInt.
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "quill/all.h"
#include "testutil.h"

namespace {

// A dictionary of String keys "k0".."k<n-1>" to Integer values 0..n-1, all
// on the heap, deleted with the pairs by deepDelete.
Dictionary* numbered(int n) {
    Dictionary* d = new Dictionary(4);
    for (int i = 0; i < n; ++i) {
        std::string key = "k" + std::to_string(i);
        d->atPut(*new String(key.c_str()), *new Integer(i));
    }
    return d;
}

class DictionaryTest : public ::testing::Test {
protected:
    // DUPKEY and KEYNOTFOUND are added by the class initor of Dictionary.
    static void SetUpTestSuite() { Class::initialize(); }
};

}  // namespace

TEST_F(DictionaryTest, PairsAreFoundAndRemovedByKey) {
    Dictionary d;
    String alpha("alpha"), beta("beta");
    Integer one(1), two(2);
    EXPECT_EQ(d.atPut(alpha, one), &one);
    d.atPut(beta, two);
    EXPECT_EQ(d.size(), 2u);
    EXPECT_EQ(d.atKey(String("alpha")), &one);
    EXPECT_EQ(d.atKey(String("beta")), &two);
    EXPECT_FALSE(d.includesKey(String("gamma")));
    EXPECT_EQ(d.assocAt(String("gamma")), nil);

    // A bare key and a pair both stand for the key in the Set operations.
    EXPECT_EQ(d.find(String("beta")), d.assocAt(beta));
    String otherBeta("beta");
    EXPECT_EQ(d.find(Assoc(otherBeta)), d.assocAt(beta));
    EXPECT_TRUE(d.includesAssoc(String("alpha"), Integer(1)));
    EXPECT_FALSE(d.includesAssoc(String("alpha"), Integer(2)));

    Integer three(3);
    EXPECT_EQ(d.atKey(String("alpha"), three), &one);
    EXPECT_EQ(d.atKey(alpha), &three);

    // removeKey answers the pair and deletes nothing.
    Object* pair = d.removeKey(String("alpha"));
    ASSERT_TRUE(pair->isMemberOf(class_Assoc));
    EXPECT_EQ(static_cast<Assoc*>(pair)->key(), &alpha);
    EXPECT_EQ(static_cast<Assoc*>(pair)->value(), &three);
    EXPECT_FALSE(d.includesKey(alpha));
    EXPECT_EQ(d.atKey(beta), &two);
    delete pair;
    d.deleteContents();
}

TEST_F(DictionaryTest, ErrorTexts) {
    Dictionary d;
    String alpha("alpha");
    Integer one(1);
    d.atPut(alpha, one);
    String sameKey("alpha");
    struct Row {
        const char* what;
        std::function<void()> call;
        const char* text;
    } rows[] = {
        {"atPut of a present key", [&] { d.atPut(sameKey, one); },
         "[DUPKEY] Tried to add duplicate key: Dictionary::addAssoc(alpha)"},
        {"addAssoc of a present key", [&] { d.addAssoc(*new Assoc(sameKey)); },
         "[DUPKEY] Tried to add duplicate key: Dictionary::addAssoc(alpha)"},
        {"atKey of an absent key", [&] { d.atKey(String("beta")); },
         "[KEYNOTFOUND] Key not found: Dictionary::atKey(beta)"},
        {"removeKey of an absent key", [&] { d.removeKey(String("beta")); },
         "[KEYNOTFOUND] Key not found: Dictionary::removeKey(beta)"},
        {"add of a non-pair", [&] { d.add(one); },
         "[BADARGCLM] Invalid argument class: expected Dictionary::add(LookupKey), was "
         "Dictionary::add(Integer)"},
        {"remove of an absent key", [&] { d.remove(String("beta")); },
         "[REMOVEERR] Tried to remove object not in collection: Dictionary::remove(beta)"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(raisedText(row.call), row.text);
    }
    EXPECT_EQ(d.size(), 1u);
    EXPECT_EQ(d.atKey(alpha), &one);
    d.deleteContents();
}

// The refused pair is deleted; its key is the caller's and stays alive.
TEST_F(DictionaryTest, DuplicateKeyDeletesTheNewPair) {
    Dictionary d;
    String alpha("alpha"), sameKey("alpha");
    Integer one(1);
    d.atPut(alpha, one);
    raisedText([] {});  // the error ring and texts are in place before measuring
    EXPECT_NE(raisedText([&] { d.atPut(sameKey, one); }), "no error");
    unsigned long before = bytesInUse();
    EXPECT_NE(raisedText([&] { d.atPut(sameKey, one); }), "no error");
    EXPECT_EQ(bytesInUse(), before);
    EXPECT_TRUE(validObject(&sameKey));

    // The same pair given twice is no duplicate.
    Object* pair = d.assocAt(alpha);
    EXPECT_EQ(&d.addAssoc(*static_cast<LookupKey*>(pair)), pair);
    EXPECT_EQ(d.size(), 1u);
    d.deleteContents();
}

TEST_F(DictionaryTest, KeyOfScansFromTheTableEnd) {
    Dictionary d(16);
    String a("a"), b("b"), c("c");
    Integer shared(7), otherSeven(7), eight(8);
    d.atPut(a, shared);
    d.atPut(b, otherSeven);
    d.atPut(c, eight);
    // The iterator goes up through the slots: the last seven it meets
    // stands in the highest slot.
    Object* lastSevenKey = nil;
    Iterator it(d);
    while (Object* pair = it())
        if (static_cast<Assoc*>(pair)->value()->isEqual(shared))
            lastSevenKey = static_cast<Assoc*>(pair)->key();
    EXPECT_EQ(d.keyOf(Integer(7)), lastSevenKey);
    EXPECT_EQ(d.keyOf(Integer(8)), &c);
    EXPECT_EQ(d.keyOf(Integer(9)), nil);
    d.deleteContents();
}

TEST_F(DictionaryTest, KeysAndValuesGoToACollectionInStep) {
    Dictionary* d = numbered(40);
    OrderedCltn keys, values;
    d->addKeysTo(keys);
    d->addValuesTo(values);
    ASSERT_EQ(keys.size(), 40u);
    ASSERT_EQ(values.size(), 40u);
    std::set<int> seen;
    for (int i = 0; i < 40; ++i) {
        int value = static_cast<Integer*>(values.at(i))->value();
        EXPECT_STREQ(keys.at(i)->asCharPointer(), ("k" + std::to_string(value)).c_str());
        seen.insert(value);
    }
    EXPECT_EQ(seen.size(), 40u);
    deepDelete(d);
}

TEST_F(DictionaryTest, GrowthKeepsEveryKey) {
    Dictionary* d = numbered(1000);
    EXPECT_EQ(d->size(), 1000u);
    EXPECT_EQ(d->capacity(), 1024u);
    for (int i = 0; i < 1000; i += 3) {
        std::string key = "k" + std::to_string(i);
        EXPECT_EQ(static_cast<Integer*>(d->atKey(String(key.c_str())))->value(), i);
    }
    for (int i = 0; i < 1000; i += 2) {
        std::string key = "k" + std::to_string(i);
        Object* pair = d->removeKey(String(key.c_str()));
        deepDelete(pair);
    }
    for (int i = 0; i < 1000; ++i) {
        std::string key = "k" + std::to_string(i);
        EXPECT_EQ(d->includesKey(String(key.c_str())), i % 2 == 1) << key;
    }
    deepDelete(d);
}

// Keys, values and pairs go, each once, though two pairs share a value.
TEST_F(DictionaryTest, DeepDeleteFreesPairsKeysAndValues) {
    unsigned long before = bytesInUse();
    Dictionary* d = new Dictionary;
    Integer* shared = new Integer(5);
    d->atPut(*new String("x"), *shared);
    d->atPut(*new String("y"), *shared);
    d->atPut(*new String("z"), *new Integer(6));
    deepDelete(d);
    EXPECT_EQ(bytesInUse(), before);
}

TEST_F(DictionaryTest, DeepCopyCopiesPairsKeysAndValues) {
    Dictionary* d = numbered(5);
    Dictionary* copy = static_cast<Dictionary*>(d->deepCopy());
    EXPECT_EQ(copy->size(), 5u);
    for (int i = 0; i < 5; ++i) {
        String key(("k" + std::to_string(i)).c_str());
        Assoc* original = static_cast<Assoc*>(d->assocAt(key));
        Assoc* copied = static_cast<Assoc*>(copy->assocAt(key));
        ASSERT_NE(copied, nil);
        EXPECT_NE(copied, original);
        EXPECT_NE(copied->key(), original->key());
        EXPECT_NE(copied->value(), original->value());
        EXPECT_EQ(static_cast<Integer*>(copied->value())->value(), i);
    }
    deepDelete(copy);
    deepDelete(d);
}

TEST_F(DictionaryTest, RemovingTheCurrentPairDuringIterationIsAnError) {
    Dictionary* d = numbered(10);
    Iterator it(*d);
    Object* current = it();
    ASSERT_NE(current, nullptr);
    d->removeKey(*static_cast<LookupKey*>(current)->key());
    std::string text = raisedText([&] { it(); });
    EXPECT_EQ(text.rfind("[ITEREMOVE] Cannot remove an object from a Dictionary during an iteration\n", 0),
              0u)
        << text;
    deepDelete(current);
    deepDelete(d);
}

TEST_F(DictionaryTest, IdentDictKeepsEqualButDistinctKeysApart) {
    IdentDict d;
    String first("k"), second("k"), third("k");
    Integer one(1), two(2);
    d.atPut(first, one);
    d.atPut(second, two);
    EXPECT_EQ(d.size(), 2u);
    EXPECT_EQ(d.atKey(first), &one);
    EXPECT_EQ(d.atKey(second), &two);
    EXPECT_FALSE(d.includesKey(third));
    EXPECT_EQ(raisedText([&] { d.atKey(third); }), "[KEYNOTFOUND] Key not found: IdentDict::atKey(k)");
    EXPECT_EQ(raisedText([&] { d.atPut(first, two); }),
              "[DUPKEY] Tried to add duplicate key: IdentDict::addAssoc(k)");
    Object* pair = d.removeKey(first);
    EXPECT_EQ(static_cast<Assoc*>(pair)->value(), &one);
    delete pair;
    EXPECT_EQ(d.atKey(second), &two);
    d.deleteContents();
}

// The store table numbers objects by identity, pairs among them: a pair
// used as a key is a key, not the pair it would stand for in a Dictionary.
TEST_F(DictionaryTest, IdentDictTakesPairsAsKeys) {
    IdentDict table(16);
    String name("name");
    Assoc pairAsKey(name, name);
    table.addAssoc(*new AssocInt(*nil, 0));
    table.addAssoc(*new AssocInt(pairAsKey, 1));
    table.addAssoc(*new AssocInt(name, 2));
    EXPECT_EQ(static_cast<Integer*>(table.atKey(*nil))->value(), 0);
    EXPECT_EQ(static_cast<Integer*>(table.atKey(pairAsKey))->value(), 1);
    EXPECT_EQ(static_cast<Integer*>(table.atKey(name))->value(), 2);
    EXPECT_FALSE(table.includesKey(Assoc(name, name)));
    Integer nine(9);
    table.atKey(name, nine);
    EXPECT_EQ(static_cast<AssocInt*>(table.assocAt(name))->intValue(), 9);
    table.deleteContents();
}

TEST(PairTest, HashEqualityAndOrderFollowTheKey) {
    String apple("apple"), pear("pear");
    Integer one(1);
    Assoc a(apple, one);
    LookupKey k(*new String("apple"));
    AssocInt n(pear, -4);
    EXPECT_EQ(a.hash(), apple.hash());
    EXPECT_TRUE(a.isEqual(k));
    EXPECT_TRUE(a.isEqual(String("apple")));
    EXPECT_FALSE(a.isEqual(n));
    EXPECT_FALSE(a.isEqual(one));
    EXPECT_LT(a.compare(n), 0);
    EXPECT_EQ(a.compare(k), 0);
    EXPECT_LT(a.compare(String("banana")), 0);
    EXPECT_EQ(printedText(a), "Assoc(apple=>1)");
    EXPECT_EQ(printedText(n), "AssocInt(pear=>-4)");
    EXPECT_EQ(printedText(k), "LookupKey(apple=>NIL)");
    EXPECT_EQ(printedText(Assoc()), "Assoc(NIL=>NIL)");
    delete k.key();
}

TEST(PairTest, Values) {
    String key("key");
    Integer one(1), two(2);
    AssocInt n(key, 5);
    EXPECT_EQ(n.intValue(), 5);
    EXPECT_EQ(n.value(two), n.value());
    EXPECT_EQ(n.intValue(), 2);
    EXPECT_EQ(raisedText([&] { n.value(key); }),
              "[BADARGCLM] Invalid argument class: expected AssocInt::value(Integer), was "
              "AssocInt::value(String)");

    LookupKey k(key);
    EXPECT_EQ(k.value(), nil);
    EXPECT_EQ(raisedText([&] { k.value(one); }),
              "[DRVDCLASSRSP] Derived class responsability method LookupKey::value()");
}

TEST(PairTest, CopiesAreDeepOrShallow) {
    Assoc* a = new Assoc(*new String("k"), *new Integer(3));
    Assoc* shallow = static_cast<Assoc*>(a->shallowCopy());
    EXPECT_EQ(shallow->key(), a->key());
    Assoc* deep = static_cast<Assoc*>(a->deepCopy());
    EXPECT_NE(deep->key(), a->key());
    EXPECT_NE(deep->value(), a->value());

    AssocInt* counted = new AssocInt(*a->key(), 4);
    AssocInt* countedCopy = static_cast<AssocInt*>(counted->shallowCopy());
    countedCopy->intValue(5);
    EXPECT_EQ(counted->intValue(), 4);
    EXPECT_EQ(countedCopy->value()->isA(), &class_Integer);

    delete countedCopy;
    delete counted;
    delete shallow;
    deepDelete(deep);
    deepDelete(a);
}
