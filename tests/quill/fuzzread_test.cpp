// Damaged streams: every read of a mutated stream ends in an object or in an
// error text, never in a crash, a hang or a runaway allocation.
#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "iotest.h"
#include "quill/all.h"
#include "quill/objio.h"

namespace {

// Stores ob, or answers an empty text when its class refuses storing.
std::string textOf(const Object& ob) {
    std::ostringstream os;
    try {
        storeObject(os, ob);
    } catch (TarnException* e) {
        delete e;
        resetReadEnvironment();
        return "";
    }
    return os.str();
}

std::string binaryOf(const Object& ob) {
    std::ostringstream os;
    BinOstream bos(os);
    try {
        storeObject(bos, ob);
    } catch (TarnException* e) {
        delete e;
        return "";
    }
    return os.str();
}

// A default instance of every class that can be made and stored, and the graph.
std::vector<Object*> seedObjects() {
    std::vector<Object*> seeds;
    for (Class* c = Class::first(); c; c = c->next()) {
        Object* ob = 0;
        try {
            ob = c->create();
        } catch (TarnException* e) {
            delete e;
            continue;
        }
        if (ob && ob != nil) seeds.push_back(ob);
    }
    seeds.push_back(richGraph());
    return seeds;
}

// One damage of a valid stream, chosen by the generator.
std::string mutate(const std::string& valid, std::mt19937& rng) {
    std::string s = valid;
    if (s.empty()) return s;
    auto at = [&](size_t n) { return std::uniform_int_distribution<size_t>(0, n - 1)(rng); };
    static const char* const numbers[] = {"4294967295", "-1",          "2147483648", "99999999999999",
                                          "0",          "-2147483648", "1e308",      "65536"};
    switch (at(7)) {
        case 0:  // a byte changed
            s[at(s.size())] = char(at(256));
            break;
        case 1:  // cut short
            s.resize(at(s.size()));
            break;
        case 2: {  // a number out of range
            size_t p = s.find_first_of("0123456789", at(s.size()));
            if (p == std::string::npos) p = s.find_first_of("0123456789");
            if (p == std::string::npos) break;
            size_t e = s.find_first_not_of("0123456789", p);
            s.replace(p, (e == std::string::npos ? s.size() : e) - p, numbers[at(8)]);
            break;
        }
        case 3: {  // an unknown class
            size_t p = s.find(':');
            if (p != std::string::npos) s.insert(p + 1, "Unknown");
            break;
        }
        case 4: {  // a bad reference or class number
            size_t p = s.find_first_of("@#", at(s.size()));
            if (p != std::string::npos) s.insert(p + 1, at(2) ? "9" : "0");
            break;
        }
        case 5:  // bytes inserted
            s.insert(at(s.size()), std::string(1 + at(4), char(at(256))));
            break;
        default:  // a range removed
            s.erase(at(s.size()), 1 + at(16));
            break;
    }
    return s;
}

// Reads text as the guarded entry does, and checks the outcome.
void readDamaged(const std::string& text, bool binary) {
    String error;
    unsigned long before = bytesInUse();
    std::istringstream is(text);
    BinIstream bis(is);
    Object* ob = binary ? readFromChecked(error, bis) : readFromChecked(error, is);
    if (ob) {
        EXPECT_TRUE(validObject(ob));
        if (ob != nil) deepDelete(ob);
    } else {
        EXPECT_GT(error.size(), 0u);
        EXPECT_EQ(error.asCharPointer()[0], '[') << error.asCharPointer();
    }
    // What a failed read leaves behind is bounded by what it read.
    EXPECT_LT(bytesInUse(), before + 1000 * text.size() + 100000);
}

TEST(DamagedStreamTest, EveryReadEndsInAnObjectOrAnError) {
    std::vector<Object*> seeds = seedObjects();
    std::vector<std::string> texts, binaries;
    for (Object* ob : seeds) {
        std::string t = textOf(*ob), b = binaryOf(*ob);
        if (!t.empty()) texts.push_back(t);
        if (!b.empty()) binaries.push_back(b);
    }
    ASSERT_GT(texts.size(), 20u);
    std::mt19937 rng(20261121);
    for (int round = 0; round < 4000; ++round) {
        const std::string& valid = texts[round % texts.size()];
        std::string damaged = mutate(valid, rng);
        SCOPED_TRACE(damaged);
        readDamaged(damaged, false);
        if (HasFailure()) return;
    }
    for (int round = 0; round < 2000 && !binaries.empty(); ++round) {
        std::string damaged = mutate(binaries[round % binaries.size()], rng);
        readDamaged(damaged, true);
        if (HasFailure()) return;
    }
    for (Object* ob : seeds) deepDelete(ob);
}

TEST(DamagedStreamTest, ValidStreamsOfEveryClassReadBack) {
    for (Object* ob : seedObjects()) {
        std::string text = textOf(*ob);
        // A callback is written with its owner's class but never read back.
        if (text.empty() || ob->isA() == &class_Cback) {
            deepDelete(ob);
            continue;
        }
        SCOPED_TRACE(text);
        String error;
        Object* back = readFromString(error, text.c_str());
        ASSERT_NE(back, nullptr) << error.asCharPointer();
        EXPECT_EQ(back->isA(), ob->isA());
        // A set is rebuilt by adding, so its table order may change.
        if (!ob->isKindOf(class_Set)) {
            EXPECT_EQ(textOf(*back), text);
        }
        deepDelete(back);
        deepDelete(ob);
    }
}

}  // namespace
