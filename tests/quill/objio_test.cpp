// Object streams: the text and binary forms, numbering, read errors, environments, filters.
#include "quill/objio.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <sstream>
#include <string>

#include "iotest.h"
#include "quill/filestrm.h"
#include "quill/objalloc.h"
#include "quill/quillerr.h"
#include "testutil.h"

// A node with a number and a reference: the smallest class with both kinds of field.
class IoNode : public Object {
    DECLARE_MEMBERS(IoNode)
public:
    IoNode(int count = 0, Object* next = nil) : count(count), next(next) {}
    IoNode(std::istream& is, Object* where) : Object(is, where) { is >> count, next = readFrom(is); }
    IoNode(BinIstream& is, Object* where) : Object(is, where) { is >> count, next = readFrom(is); }
    ~IoNode() noexcept(false) override { ++destroyed; }
    void storer(std::ostream& os) const override {
        Object::storer(os);
        os << count << ' ';
        next->storeOn(os);
    }
    void storer(BinOstream& os) const override {
        Object::storer(os);
        os << count;
        next->storeOn(os);
    }
    int count;
    Object* next;
    static int destroyed;
};
int IoNode::destroyed = 0;

// Two references; the right one is read with the class name rightExpects gives.
const char* rightExpects = "";
class IoPair : public Object {
    DECLARE_MEMBERS(IoPair)
public:
    IoPair(Object* left = nil, Object* right = nil) : left(left), right(right) {}
    IoPair(std::istream& is, Object* where)
        : Object(is, where), left(readFrom(is)), right(readFrom(is, rightExpects)) {}
    IoPair(BinIstream& is, Object* where) : Object(is, where), left(readFrom(is)), right(readFrom(is)) {}
    template <class S>
    void storeBoth(S& os) const {
        Object::storer(os);
        left->storeOn(os);
        right->storeOn(os);
    }
    void storer(std::ostream& os) const override { storeBoth(os); }
    void storer(BinOstream& os) const override { storeBoth(os); }
    Object *left, *right;
};

// An embedded member read into place.
class IoHolder : public Object {
    DECLARE_MEMBERS(IoHolder)
public:
    IoHolder() {}
    IoHolder(std::istream& is, Object* where) : Object(is, where) { readFrom(is, "IoNode", &inner); }
    void storer(std::ostream& os) const override {
        Object::storer(os);
        inner.storeOn(os);
    }
    IoNode inner;
};

// A class whose older layouts an upgrader accepts.
class IoOld : public Object {
    DECLARE_MEMBERS(IoOld)
public:
    IoOld() : foundVersion(0) {}
    IoOld(std::istream& is, Object* where) : Object(is, where), foundVersion(classReadVersion()) {}
    unsigned foundVersion;
};

// Reads a second, independent stream from inside its stream constructor.
const char* nestedText = "";
class IoNested : public Object {
    DECLARE_MEMBERS(IoNested)
public:
    IoNested() : inner(nil) {}
    IoNested(std::istream& is, Object* where) : Object(is, where) {
        pushReadEnvironment();
        String error;
        inner = readFromString(error, nestedText);
        popReadEnvironment();
    }
    Object* inner;
};

// Leaves a scratch object in the read trash and asks whether it is being read.
bool trashSawItself = false;
class IoTrashing : public Object {
    DECLARE_MEMBERS(IoTrashing)
public:
    IoTrashing() {}
    IoTrashing(std::istream& is, Object* where) : Object(is, where) {
        IoNode* scratch = new IoNode;
        addToReadTrash(scratch);
        addToReadTrash(scratch);  // once only
        trashSawItself = isBeingRead(this) && !isBeingRead(scratch);
    }
};

DEFINE_CLASS(IoNode, Object, 1, 0)
DEFINE_CLASS(IoPair, Object, 1, 0)
DEFINE_CLASS(IoHolder, Object, 1, 0)
DEFINE_CLASS(IoOld, Object, 2, 0)
DEFINE_CLASS(IoNested, Object, 1, 0)
DEFINE_CLASS(IoTrashing, Object, 1, 0)

namespace {

class ObjioTest : public testing::Test {
protected:
    void SetUp() override { resetReadEnvironment(); }
};
using ObjioStoreTest = ObjioTest;
using ObjioReadTest = ObjioTest;
using ObjioQuotedTest = ObjioTest;
using ObjioFileTest = ObjioTest;

IoNode* node(Object* ob) { return CAST(IoNode, ob); }

TEST_F(ObjioStoreTest, TextFormOfASmallGraphAndNumbering) {
    IoNode b(2), a(1, &b);
    EXPECT_EQ(storedText(a), ":IoNode." + sig(class_IoNode) + "{1 #1{2 @0 }\n}\n");
    IoPair pair(&a, &b);
    EXPECT_EQ(storedText(pair),
              ":IoPair." + sig(class_IoPair) + "{:IoNode." + sig(class_IoNode) + "{1 #2{2 @0 }\n}\n@3 }\n");
    EXPECT_EQ(storedText(*nil), "@0 ");
    EXPECT_EQ(readText("@0 "), nil);

    // Numbering restarts at each top-level store.
    std::ostringstream os;
    storeObject(os, b);
    storeObject(os, b);
    std::string one = ":IoNode." + sig(class_IoNode) + "{2 @0 }\n";
    EXPECT_EQ(os.str(), one + one);
    EXPECT_EQ(class_IoNode.storeNumber, 0u);
}

// A refused store leaves no store in progress; a class that could not be
// read back from a form is not stored in it. asCharPointer can store into a buffer.
TEST_F(ObjioStoreTest, RefusedStorersAndAsCharPointer) {
    EXPECT_EQ(raisedText([] { storedText(class_IoNode); }),
              "[ILLEGALMETHOD] Should not implement method Class::storer()");
    EXPECT_EQ(raisedText([] { storedBinary(IoOld()); }),
              "[ILLEGALMETHOD] Should not implement method IoOld::storer()");
    IoNode a(4);
    char buffer[64], tiny[8];
    std::string text = ":IoNode." + sig(class_IoNode) + "{4 @0 }\n";
    EXPECT_STREQ(a.asCharPointer(buffer, sizeof buffer, true), text.c_str());
    EXPECT_STREQ(a.asCharPointer(buffer, sizeof buffer), "IoNode");
    EXPECT_EQ(a.asCharPointer(tiny, sizeof tiny, true), nullptr);
}

// A shared member and a cycle, in both forms.
TEST_F(ObjioReadTest, SharingAndCyclesRoundTrip) {
    IoNode a(1), b(-2, &a);
    a.next = &b;
    EXPECT_EQ(storedText(a), ":IoNode." + sig(class_IoNode) + "{1 #1{-2 @1 }\n}\n");
    IoPair pair(&a, &a);
    for (bool binary : {false, true}) {
        SCOPED_TRACE(binary ? "binary" : "text");
        std::string error;
        IoPair* back = CAST(
            IoPair, binary ? readBinary(storedBinary(pair), &error) : readText(storedText(pair), &error));
        ASSERT_NE(back, nullptr) << error;
        IoNode* a2 = node(back->left);
        EXPECT_EQ(back->right, a2);
        EXPECT_EQ(node(a2->next)->count, -2);
        EXPECT_EQ(node(a2->next)->next, a2);
        delete a2->next;
        delete a2;
        delete back;
    }
    EXPECT_EQ(readBinary(storedBinary(*nil)), nil);
    EXPECT_EQ(readBinary(""), nil);
}

TEST_F(ObjioReadTest, SuccessiveObjectsUntilEndOfFile) {
    std::stringstream file;
    for (int i = 1; i <= 3; ++i) storeObject(file, IoNode(i));
    file << "\n  \t\n";
    for (int i = 1; i <= 3; ++i) {
        Object* ob = readFrom(file);
        ASSERT_TRUE(ob->isMemberOf(class_IoNode));
        EXPECT_EQ(node(ob)->count, i);
        delete ob;
    }
    EXPECT_EQ(readFrom(file), nil);
}

TEST_F(ObjioReadTest, EmbeddedMemberIsReadInPlace) {
    IoHolder holder;
    holder.inner.count = 9;
    int before = IoNode::destroyed;
    IoHolder* back = CAST(IoHolder, readText(storedText(holder)));
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(IoNode::destroyed, before + 1) << "the default member is destroyed, not lost";
    EXPECT_EQ(back->inner.count, 9);
    EXPECT_TRUE(back->inner.isMemberOf(class_IoNode));
    delete back;
}

TEST_F(ObjioReadTest, ReadErrorsAndTheirTexts) {
    std::string node = ":IoNode." + sig(class_IoNode);
    std::string longName(300, 'A');
    struct {
        const char* what;
        std::string text;
        const char* className;
        std::string message;
    } cases[] = {
        {"unknown class", ":NoSuchClass.1{}", "",
         "[RDUNKCLASS] Tried to read object of unknown class NoSuchClass"},
        {"wrong class first", node + "{1 @0 }", "IoPair",
         "[RDWRONGCLASS] Tried to read object of wrong class: expected IoPair, was IoNode"},
        {"bad signature", ":IoNode.12345{1 @0 }", "",
         "[RDVERSERR] Incorrect class IoNode version number encountered on read: expected " +
             sig(class_IoNode) + ", was 12345"},
        {"reference into place", ":IoHolder." + sig(class_IoHolder) + "{@0 }", "",
         "[RDREFERR] Tried to read object reference into pre-allocated area: class IoNode @0"},
        {"bad first token", "  x123", "",
         "[RDSYNERR] Syntax error on input stream: expected :, # or @, was x123 ..."},
        {"missing brace", node + " 1 @0 }\nnext line", "",
         "[RDSYNERR] Syntax error on input stream: expected {, was 1 @0 } ..."},
        {"missing end", node + "{1 @0 ) tail\nmore", "",
         "[RDSYNERR] Syntax error on input stream: expected }, was ) tail ..."},
        {"long name", ":" + longName + ".1{}", "",
         "[RDSYNERR] Syntax error on input stream: expected ., was " + std::string(31, 'A') + " ..."},
        {"premature end", node + "{1 ", "", "[RDEOF] Premature EOF encountered on input stream"},
        {"end inside number", "#", "", "[RDEOF] Premature EOF encountered on input stream"},
        {"unreadable number", node + "{abc}", "", "[RDFAIL] Input stream read failed ... abc} ..."},
        {"abstract root", ":Object." + sig(class_Object) + "{}", "",
         "[RDABSTCLASS] Tried to read object of abstract class Object"},
        {"nil", ":Nil." + sig(class_Nil) + "{}", "",
         "[ILLEGALMETHOD] Should not implement method Nil::reader constructor()"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        std::string error;
        testing::internal::CaptureStderr();
        EXPECT_EQ(readText(c.text, &error, c.className), nullptr);
        testing::internal::GetCapturedStderr();
        EXPECT_EQ(error, c.message);
        EXPECT_EQ(std::string(lastReadError().asCharPointer()), c.message);
    }
}

// Each branch names itself on the error stream before it raises.
TEST_F(ObjioReadTest, WrongClassPrintsItsBranch) {
    std::string pair = ":IoPair." + sig(class_IoPair) + "{";
    std::string first = ":IoNode." + sig(class_IoNode) + "{1 @0 }\n";
    struct {
        const char* branch;
        std::string text;
        const char* className;
        const char* rightName;
        std::string line;
        std::string message;
    } rows[] = {
        {"first", first, "IoPair", "", "case ':': \"IoPair\" \"IoNode\"\n", "expected IoPair, was IoNode"},
        {"known", pair + first + "#2{2 @0 }\n}", "", "IoPair", "case '#': \"IoPair\" \"IoNode\"\n",
         "expected IoPair, was IoNode"},
        {"reference", pair + first + "@2 }", "", "IoPair", "case '@': \"IoPair\" \"IoNode\"\n",
         "expected IoPair, was IoNode"},
        {"nil", pair + first + "@0 }", "", "IoPair", "case '@': \"IoPair\" \"Nil\"\n",
         "expected IoPair, was Nil"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.branch);
        rightExpects = row.rightName;
        std::string error;
        testing::internal::CaptureStderr();
        EXPECT_EQ(readText(row.text, &error, row.className), nullptr);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), row.line);
        EXPECT_EQ(error, "[RDWRONGCLASS] Tried to read object of wrong class: " + row.message);
    }
    rightExpects = "";
}

bool acceptOld(unsigned signature) { return signature == 777; }

TEST_F(ObjioReadTest, UpgraderAcceptsAnOldSignature) {
    std::string error;
    EXPECT_EQ(readText(":IoOld.777{}", &error), nullptr);
    EXPECT_EQ(error.rfind("[RDVERSERR]", 0), 0u);
    class_IoOld.setUpgrader(acceptOld);
    IoOld* old = CAST(IoOld, readText(":IoOld.777{}", &error));
    ASSERT_NE(old, nullptr) << error;
    EXPECT_EQ(old->foundVersion, 777u);
    delete old;
    EXPECT_EQ(readText(":IoOld.778{}"), nullptr);
    class_IoOld.setUpgrader(0);
}

TEST_F(ObjioReadTest, CheckedReadAndItsTrashLeaveTheEnvironmentClean) {
    std::string error;
    EXPECT_EQ(readText(":IoNode." + sig(class_IoNode) + "{1 :IoNode.1{", &error), nullptr);
    EXPECT_NE(error, "");
    // A second read numbers from 1 again: "@1" is its own first object.
    IoNode* back = node(readText(":IoNode." + sig(class_IoNode) + "{5 @1 }", &error));
    ASSERT_NE(back, nullptr) << error;
    EXPECT_EQ(back->next, back);
    EXPECT_EQ(error, "");
    EXPECT_FALSE(isBeingRead(back));
    delete back;

    // The read trash is deleted when the read ends.
    int before = IoNode::destroyed;
    trashSawItself = false;
    Object* ob = readText(":IoTrashing." + sig(class_IoTrashing) + "{}");
    ASSERT_NE(ob, nullptr);
    EXPECT_TRUE(trashSawItself);
    EXPECT_EQ(IoNode::destroyed, before + 1);
    delete ob;
}

TEST_F(ObjioReadTest, NestedReadThroughPushAndPop) {
    std::string inner = ":IoNode." + sig(class_IoNode) + "{8 @0 }";
    nestedText = inner.c_str();
    std::string outer = ":IoPair." + sig(class_IoPair) + "{:IoNested." + sig(class_IoNested) + "{}\n@2 }";
    std::string error;
    IoPair* pair = CAST(IoPair, readText(outer, &error));
    ASSERT_NE(pair, nullptr) << error;
    IoNested* nested = CAST(IoNested, pair->left);
    EXPECT_EQ(pair->right, nested);
    EXPECT_EQ(node(nested->inner)->count, 8);
    delete nested->inner;
    delete nested;
    delete pair;
}

TEST_F(ObjioReadTest, EnvironmentAssertions) {
    EXPECT_NE(raisedText(popReadEnvironment).find("\"readFromEnv != 0\""), std::string::npos);
    pushReadEnvironment();
    std::istringstream is(":IoNode." + sig(class_IoNode) + "{1 ");
    EXPECT_EQ(raisedText([&] { readFrom(is); }), "[RDEOF] Premature EOF encountered on input stream");
    EXPECT_NE(raisedText(popReadEnvironment).find("\"readObjTable == 0\""), std::string::npos);
    resetReadEnvironment();
    popReadEnvironment();
    IoNode a, b;
    IoPair c;
    EXPECT_NE(raisedText([&] { replaceReadObject(&a, &c); }).find("\"oldOb->isA() == newOb->isA()\""),
              std::string::npos);
    EXPECT_NE(raisedText([&] { replaceReadObject(&a, &b); }).find("validObject(readObjTable)"),
              std::string::npos);
    EXPECT_FALSE(isBeingRead(&a));
    EXPECT_FALSE(isBeingRead(nil));
}

int skipOdd(const Object* ob, std::ostream&) {
    return ob->isMemberOf(class_IoNode) && static_cast<const IoNode*>(ob)->count % 2;
}

IoNode* replacement = 0;
Object* replaceNines(Object* ob) {
    if (ob->isMemberOf(class_IoNode) && static_cast<IoNode*>(ob)->count == 9) return replacement;
    return ob;
}

// The store filter skips members, not the root; the read filter replaces an object and its entry.
TEST_F(ObjioReadTest, StoreAndReadFilters) {
    IoNode odd(3), root(1, &odd);
    EXPECT_EQ(setStoreFilter(skipOdd), nullptr);
    EXPECT_EQ(storedText(root), ":IoNode." + sig(class_IoNode) + "{1 }\n");
    EXPECT_EQ(setStoreFilter(0), skipOdd);

    IoNode standIn(100);
    replacement = &standIn;
    IoNode nine(9);
    IoPair pair(&nine, &nine);
    std::string text = storedText(pair);
    int before = IoNode::destroyed;
    setReadFilter(replaceNines);
    IoPair* back = CAST(IoPair, readText(text));
    EXPECT_EQ(setReadFilter(0), replaceNines);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->left, &standIn);
    EXPECT_EQ(back->right, &standIn);
    EXPECT_EQ(IoNode::destroyed, before + 1);  // the node read was allocated by the read
    delete back;
}

TEST_F(ObjioQuotedTest, EveryEscapeRoundTripsAndRawLineEndsAreDropped) {
    const char text[] = "a\bb\tc\nd\fe\rf\"g\\h{i}j\001k\200l m\0n";
    unsigned length = sizeof text - 1;
    std::ostringstream os;
    writeQuoted(os, text, length);
    EXPECT_EQ(os.str(), "\"a\\bb\\tc\\n\nd\\fe\\rf\\\"g\\\\h\\[i\\]j\\1\\k\\128\\l m\\0\\n\"");
    EXPECT_EQ(os.str().find_first_of("{}"), std::string::npos);
    std::istringstream is(" " + os.str() + "rest");
    unsigned gotLength = 0, alloc = 4;
    char* back = readQuoted(is, &gotLength, &alloc);
    ASSERT_EQ(gotLength, length);
    EXPECT_EQ(memcmp(back, text, length), 0);
    EXPECT_EQ(back[length], 0);
    objectFree(back);
    std::string rest;
    is >> rest;
    EXPECT_EQ(rest, "rest");

    // Raw line ends are dropped; the buffer grows by 16, then 32.
    std::string forty(40, 'x');
    std::istringstream wrapped("\"" + forty.substr(0, 20) + "\r\n" + forty.substr(20) + "\"");
    alloc = 1;
    back = readQuoted(wrapped, &gotLength, &alloc);
    EXPECT_EQ(std::string(back, gotLength), forty);
    EXPECT_EQ(alloc, 1u + 16 + 32);
    objectFree(back);
}

TEST_F(ObjioQuotedTest, Errors) {
    struct {
        const char* text;
        unsigned alloc;
        std::string message;
    } rows[] = {
        {"abc\"", 8, "[RDSYNERR] Syntax error on input stream: expected \", was abc\" ..."},
        {"\"a\\65x\"", 8, "[RDSYNERR] Syntax error on input stream: expected \\, was x\" ..."},
        {"\"abc", 8, "[RDEOF] Premature EOF encountered on input stream"},
        {"\"abc\"", 0, "[ASSERTFLD] Assertion failed \"alloc > 0\""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        std::istringstream is(row.text);
        unsigned length, alloc = row.alloc;
        std::string message = raisedText([&] { readQuoted(is, &length, &alloc); });
        EXPECT_EQ(message.substr(0, row.message.size()), row.message);
    }
}

// Binary

TEST_F(ObjioStoreTest, BytesOfOneObject) {
    unsigned s = class_IoNode.signature();
    std::string expected = std::string("\x01\x06IoNode", 8) +
                           std::string{char(s), char(s >> 8), char(s >> 16), char(s >> 24)} +
                           std::string("\x05\0\0\0\x02\0\0\0\0", 9);
    EXPECT_EQ(storedBinary(IoNode(5)), expected);
}

TEST_F(ObjioStoreTest, Errors) {
    std::string one = storedBinary(IoNode(5));
    std::string badSignature = one;
    badSignature[8] ^= 1;
    struct {
        const char* what;
        std::string bytes;
        const char* className;
        std::string message;
    } rows[] = {
        {"bad tag", "\x07", "", "[RDBADTYP] Bad record type (7) read from file descriptor -1"},
        {"wrong class", one, "IoPair",
         "[RDWRONGCLASS] Tried to read object of wrong class: expected IoPair, was IoNode"},
        {"signature", badSignature, "", "[RDVERSERR] Incorrect class IoNode version number"},
        {"short", one.substr(0, one.size() - 2), "",
         "[READBINUNDFL] Underflow -- 4 bytes expected - 2 bytes read"},
        {"end", one.substr(0, 12), "", "[RDEOF] Premature EOF encountered on input stream"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        std::string error;
        testing::internal::CaptureStderr();
        EXPECT_EQ(readBinary(row.bytes, &error, row.className), nullptr);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_EQ(error.substr(0, row.message.size()), row.message);
    }
}

// File and string streams

std::string tempName() {
    char name[] = "/tmp/objio_testXXXXXX";
    int fd = mkstemp(name);
    close(fd);
    return name;
}

TEST_F(ObjioFileTest, WriteAndReadAFile) {
    std::string name = tempName();
    {
        Ostream out(name.c_str());
        ASSERT_TRUE(out.isOpen());
        storeObject(out, IoNode(12));
        EXPECT_EQ(out.tell(), long(storedText(IoNode(12)).size()));
    }
    Istream in(name.c_str());
    unsigned size = in.size();
    EXPECT_EQ(size, storedText(IoNode(12)).size());
    EXPECT_EQ(in.tell(), 0);
    Object* ob = readFrom(in);
    EXPECT_EQ(node(ob)->count, 12);
    EXPECT_EQ(in.tell(), long(size) - 1);  // the final newline is left
    EXPECT_EQ(readFrom(in), nil);
    delete ob;
    in.close();
    EXPECT_FALSE(in.isOpen());
    remove(name.c_str());
}

TEST_F(ObjioFileTest, Refusals) {
    EXPECT_EQ(raisedText([] { Istream in("/no/such/dir/file"); }),
              "[CANNOT_OPEN] cannot open file /no/such/dir/file with mode r for Istream class");
    EXPECT_EQ(raisedText([] { Ostream out("/no/such/dir/file", "a"); }),
              "[CANNOT_OPEN] cannot open file /no/such/dir/file with mode a for Ostream class");
    Istream in;
    Ostream out;
    EXPECT_EQ(raisedText([&] { Istream copy(in); }),
              "[ILLEGALMETHOD] Should not implement method Istream::Copy constructor()");
    EXPECT_EQ(raisedText([&] { out = out; }),
              "[ILLEGALMETHOD] Should not implement method Ostream::assign operator()");
    EXPECT_EQ(raisedText([&] { storedText(in); }),
              "[ILLEGALMETHOD] Should not implement method Istream::storer()");
    std::istringstream text("12 34");
    in.attach(text);
    int n = 0;
    in.stream() >> n;
    EXPECT_EQ(n, 12);
    EXPECT_EQ(in.size(), 5u);
    EXPECT_EQ(in.tell(), 2);
}

TEST_F(ObjioFileTest, StringOstreamGrows) {
    StringOstream out;
    std::string expected(5000, 'x');
    out.stream() << expected;
    EXPECT_EQ(std::string(out.string().asCharPointer()), expected);
    out.reset();
    storeObject(out, IoNode(6));
    EXPECT_EQ(std::string(out.string().asCharPointer()), storedText(IoNode(6)));
}

}  // namespace
