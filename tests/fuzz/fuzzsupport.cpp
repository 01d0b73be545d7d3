#include "fuzzsupport.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <streambuf>

#include "quill/all.h"
#include "quill/objio.h"
#include "quill/startup.h"

namespace {

class NullBuffer : public std::streambuf {
protected:
    int overflow(int c) override { return c; }
    std::streamsize xsputn(const char*, std::streamsize n) override { return n; }
};

}  // namespace

void startFuzzedLibrary() {
    static bool started = false;
    if (started) return;
    started = true;
    static char name[] = "tarn_fuzz";
    static char* argv[] = {name, 0};
    quillStart(1, argv, 0);
    static NullBuffer discard;
    std::cout.rdbuf(&discard);
    std::cerr.rdbuf(&discard);
}

void expectNothingLeft(const std::function<void()>& op) {
    for (int run = 0; run < 2; ++run) {
        unsigned long before = bytesInUse();
        op();
        if (bytesInUse() == before) return;
    }
    abort();
}

std::string readFile(const std::string& path) {
    std::ifstream is(path, std::ios::binary);
    std::ostringstream os;
    os << is.rdbuf();
    return os.str();
}

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

Object* richGraph() {
    OrderedCltn* root = new OrderedCltn;
    String* shared = new String("shared {name}\n\"quoted\"");
    Dictionary* dict = new Dictionary;
    dict->atPut(new String("gain"), new Float(2.5));
    dict->atPut(new String("order"), new Integer(4));
    root->add(*dict);
    root->add(*shared);
    SortedCltn* sorted = new SortedCltn;
    for (int i = 0; i < 5; ++i) sorted->add(*new Integer(7 - i));
    root->add(*sorted);
    Set* set = new Set;
    set->add(*shared);
    set->add(*new Symbol("DynOp"));
    root->add(*set);
    root->add(*root);  // a cycle
    root->add(*new AssocInt(*new String("count"), 3));
    return root;
}

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

int failEachAllocation(const std::function<void()>& run, const std::function<void(bool failed)>& check) {
    for (int k = 1;; ++k) {
        setAllocationFailure(k);
        run();
        bool failed = !allocationFailurePending();
        setAllocationFailure(0);
        check(failed);
        if (!failed) return k - 1;
    }
}
