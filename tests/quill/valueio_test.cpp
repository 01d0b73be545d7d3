// Stream forms of the value classes: String, Symbol, the small values and TarnException.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "iotest.h"
#include "quill/binstrm.h"
#include "quill/clock.h"
#include "quill/date.h"
#include "quill/integer.h"
#include "quill/objio.h"
#include "quill/point.h"
#include "quill/quillerr.h"
#include "quill/quillstr.h"
#include "quill/random.h"
#include "quill/set.h"
#include "quill/substrng.h"
#include "quill/symbol.h"
#include "testutil.h"

// Two references, so that one stream can hold a member twice.
class VioPair : public Object {
    DECLARE_MEMBERS(VioPair)
public:
    VioPair(Object* left = nil, Object* right = nil) : left(left), right(right) {}
    VioPair(std::istream& is, Object* where) : Object(is, where), left(readFrom(is)), right(readFrom(is)) {}
    VioPair(BinIstream& is, Object* where) : Object(is, where), left(readFrom(is)), right(readFrom(is)) {}
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

DEFINE_CLASS(VioPair, Object, 1, 0)

namespace {

using ObjectPtr = std::unique_ptr<Object>;

class ValueIoTest : public testing::Test {
protected:
    void SetUp() override { resetReadEnvironment(); }
};
using StringIoTest = ValueIoTest;
using SymbolIoTest = ValueIoTest;
using SmallValueIoTest = ValueIoTest;
using ExceptionIoTest = ValueIoTest;

// Both forms, each read back by its own reader.
struct Form {
    const char* name;
    std::function<Object*(const Object&)> roundTrip;
};

const Form forms[] = {
    {"text", [](const Object& ob) { return readText(storedText(ob)); }},
    {"binary", [](const Object& ob) { return readBinary(storedBinary(ob)); }},
};

// String

TEST_F(StringIoTest, TextFormIsLengthAllocationAndQuotedText) {
    EXPECT_EQ(storedText(String("abc")), ":String." + sig(class_String) + "{3 4 \"abc\"}\n");
    EXPECT_EQ(storedText(String("abc", 5)), ":String." + sig(class_String) + "{3 9 \"abc\"}\n");
    EXPECT_EQ(storedText(String("")), ":String." + sig(class_String) + "{0 1 \"\"}\n");
    ObjectPtr ob(readText(":String." + sig(class_String) + "{3 4\"abc\"}\n"));
    String* s = CAST(String, ob.get());
    EXPECT_STREQ(s->asCharPointer(), "abc");
    EXPECT_EQ(s->size(), 3u);
    EXPECT_EQ(s->allocated(), 4u);
}

TEST_F(StringIoTest, BinaryFormIsCountsThenTextWithItsNul) {
    std::string name = "String";
    std::string expected = std::string(1, '\1') + char(name.size()) + name;
    unsigned signature = class_String.signature();
    for (int i = 0; i < 4; ++i) expected += char(signature >> (8 * i));
    expected += std::string("\3\0\0\0\7\0\0\0abc\0", 12);
    EXPECT_EQ(storedBinary(String("abc", 3)), expected);
}

TEST_F(StringIoTest, EveryEscapedCharacterSurvives) {
    struct Case {
        const char* name;
        std::string text;
    } cases[] = {
        {"empty", ""},
        {"nul inside", std::string("a\0b", 3)},
        {"all together", std::string("\"\\{}\n\t\r\b\f\001\310 end")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        String original(int(c.text.size()), ' ', 2);
        for (unsigned i = 0; i < c.text.size(); ++i) original[i] = c.text[i];
        std::string text = storedText(original);
        // A brace never appears raw between the record's own two.
        EXPECT_EQ(text.find('{'), text.rfind('{'));
        EXPECT_EQ(text.find('}'), text.rfind('}'));
        for (const Form& form : forms) {
            SCOPED_TRACE(form.name);
            ObjectPtr back(form.roundTrip(original));
            ASSERT_NE(back, nullptr);
            String* s = CAST(String, back.get());
            EXPECT_EQ(std::string(s->asCharPointer(), s->size()), c.text);
            EXPECT_EQ(s->allocated(), original.allocated());
            EXPECT_EQ(s->asCharPointer()[s->size()], '\0');
        }
    }
}

TEST_F(StringIoTest, LongerWrappedAndBadTextsInTheRecord) {
    std::string head = ":String." + sig(class_String) + "{";
    ObjectPtr wrapped(readText(head + "6 7 \"abc\r\ndef\"}\n"));
    EXPECT_STREQ(CAST(String, wrapped.get())->asCharPointer(), "abcdef");
    // A text longer than announced raises the length and the allocation.
    ObjectPtr longer(readText(head + "1 2 \"abcdef\"}\n"));
    String* s = CAST(String, longer.get());
    EXPECT_STREQ(s->asCharPointer(), "abcdef");
    EXPECT_EQ(s->size(), 6u);
    EXPECT_EQ(s->allocated(), 18u);  // 2, then grown by 16

    struct Case {
        const char* name;
        std::string text;
        const char* errorStart;
    } cases[] = {
        {"no quote", head + "3 4 abc}\n", "[RDSYNERR]"},
        {"end inside the text", head + "3 4 \"ab", "[RDEOF]"},
        {"count out of range", head + "3 99999999999999 \"abc\"}\n", "[RDFAIL]"},
        {"huge allocation", head + "3 4294967295 \"abc\"}\n",
         "[STRINGOV] String buffer overflowed during read (4294967295 characters)"},
        {"huge length", head + "2147483648 4 \"abc\"}\n",
         "[STRINGOV] String buffer overflowed during read (2147483648 characters)"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::string error;
        EXPECT_EQ(readText(c.text, &error), nullptr);
        EXPECT_EQ(error.rfind(c.errorStart, 0), 0u) << error;
    }
}

TEST_F(StringIoTest, BinaryCountsBeyondTheLimitAreRefused) {
    std::string bytes = storedBinary(String("abc"));
    std::string hugeAlloc = bytes, hugeLength = bytes;
    size_t counts = bytes.size() - 12;  // len, alloc, then "abc" and its NUL
    hugeAlloc[counts + 7] = '\x40';     // alloc 0x40000004
    hugeLength[counts + 3] = '\x7f';    // len 0x7f000003
    std::string error;
    EXPECT_EQ(readBinary(hugeAlloc, &error), nullptr);
    EXPECT_EQ(error, "[STRINGOV] String buffer overflowed during read (1073741828 characters)");
    EXPECT_EQ(readBinary(hugeLength, &error), nullptr);
    EXPECT_EQ(error, "[STRINGOV] String buffer overflowed during read (2130706435 characters)");
    std::string shortText = bytes.substr(0, bytes.size() - 1);
    EXPECT_EQ(readBinary(shortText, &error), nullptr);
    EXPECT_EQ(error.rfind("[READBINUNDFL]", 0), 0u) << error;
}

TEST_F(StringIoTest, SubStringRefusesBothStorers) {
    String owner("window");
    SubString part = owner(1, 3);
    EXPECT_EQ(raisedText([&] { storedText(part); }),
              "[ILLEGALMETHOD] Should not implement method SubString::storer()");
    EXPECT_EQ(raisedText([&] { storedBinary(part); }),
              "[ILLEGALMETHOD] Should not implement method SubString::storer()");
    std::string error;
    EXPECT_EQ(readText(":SubString." + sig(class_SubString) + "{}\n", &error), nullptr);
    EXPECT_NE(error.find("reader constructor"), std::string::npos) << error;
}

// Symbol

const String* tableName(const char* text) { return &Symbol(text).name(); }

// One Symbol stored twice comes back once; two Symbols of one name come back
// two, the name written once. Both take the table's name.
TEST_F(SymbolIoTest, SymbolsComeBackInternedAndSharedAsStored) {
    Symbol red("red"), one("green"), two("green");
    EXPECT_EQ(storedText(red),
              ":Symbol." + sig(class_Symbol) + "{:String." + sig(class_String) + "{3 4 \"red\"}\n}\n");
    VioPair same(&red, &red), apart(&one, &two);
    EXPECT_NE(storedText(apart).find("@3 "), std::string::npos);
    for (const Form& form : forms) {
        SCOPED_TRACE(form.name);
        ObjectPtr back(form.roundTrip(same));
        VioPair* p = CAST(VioPair, back.get());
        EXPECT_EQ(p->left, p->right);
        EXPECT_EQ(&CAST(Symbol, p->left)->name(), tableName("red"));
        delete p->left;

        back.reset(form.roundTrip(apart));
        p = CAST(VioPair, back.get());
        ASSERT_NE(p->left, p->right);
        EXPECT_EQ(&CAST(Symbol, p->left)->name(), tableName("green"));
        EXPECT_EQ(&CAST(Symbol, p->right)->name(), tableName("green"));
        delete p->left;
        delete p->right;
    }
    ObjectPtr separate(readText(storedText(one)));
    EXPECT_EQ(&CAST(Symbol, separate.get())->name(), tableName("green"));
}

TEST_F(SymbolIoTest, ANameNewToTheTableIsTheStringRead) {
    Symbol one("only-here"), two("only-here");
    VioPair pair(&one, &two);
    std::string text = storedText(pair);
    Set* fresh = new Set(16);
    Set* former = setSymbolTable(fresh);
    ObjectPtr back(readText(text));
    VioPair* p = CAST(VioPair, back.get());
    const String* name = &CAST(Symbol, p->left)->name();
    EXPECT_EQ(&CAST(Symbol, p->right)->name(), name);
    EXPECT_EQ(fresh->size(), 1u);
    EXPECT_EQ(fresh->find(*name), name);
    setSymbolTable(former);
    delete p->left;
    delete p->right;
    fresh->deleteContents();
    delete fresh;
}

TEST_F(SymbolIoTest, AStringReadBeforeByReferenceKeepsItsHolder) {
    Symbol sym("shared-name");
    VioPair pair(const_cast<String*>(&sym.name()), &sym);
    ObjectPtr back(readText(storedText(pair)));
    VioPair* p = CAST(VioPair, back.get());
    ASSERT_TRUE(validObject(p->left));
    EXPECT_STREQ(CAST(String, p->left)->asCharPointer(), "shared-name");
    EXPECT_EQ(&CAST(Symbol, p->right)->name(), tableName("shared-name"));
    delete p->left;
    delete p->right;
}

TEST_F(SymbolIoTest, ASymbolWithoutItsNameIsAnError) {
    std::string error;
    EXPECT_EQ(readText(":Symbol." + sig(class_Symbol) + "{", &error), nullptr);
    EXPECT_EQ(error.rfind("[RDEOF]", 0), 0u) << error;
    EXPECT_EQ(
        readText(":Symbol." + sig(class_Symbol) + "{:Integer." + sig(class_Integer) + "{3 }\n}\n", &error),
        nullptr);
    EXPECT_EQ(error.rfind("[RDWRONGCLASS]", 0), 0u) << error;
}

// Small values

TEST_F(SmallValueIoTest, TextFormsAndRoundTrips) {
    struct Case {
        const char* name;
        ObjectPtr ob;
        std::string fields;
    } cases[] = {
        {"Integer", ObjectPtr(new Integer(-42)), "-42 "},
        {"Float", ObjectPtr(new Float(2.5)), "2.5 "},
        {"Point", ObjectPtr(new Point(3, -4)), "3 -4 "},
        {"FloatPoint", ObjectPtr(new FloatPoint(1.5, -0.25)), "1.5 -0.25 "},
        {"FloatRect", ObjectPtr(new FloatRect(1, 2, 30.5, 40)), "1 2 30.5 40 "},
        {"Date", ObjectPtr(new Date(21, "Aug", 2006)), "233 2006 "},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(storedText(*c.ob),
                  std::string(":") + c.name + "." + sig(*c.ob->isA()) + "{" + c.fields + "}\n");
        for (const Form& form : forms) {
            SCOPED_TRACE(form.name);
            ObjectPtr back(form.roundTrip(*c.ob));
            ASSERT_NE(back, nullptr);
            EXPECT_EQ(back->isA(), c.ob->isA());
            EXPECT_TRUE(back->isEqual(*c.ob));
            EXPECT_EQ(printedText(*back), printedText(*c.ob));
        }
    }
}

TEST_F(SmallValueIoTest, TranslCoordStoresItsRectanglesAndRecomputesTheMap) {
    TranslCoord map(FloatRect(10, 20, 200, 100), FloatRect(-1, -1, 2, 4));
    std::string rect = sig(class_FloatRect);
    EXPECT_EQ(storedText(map), ":TranslCoord." + sig(class_TranslCoord) + "{:FloatRect." + rect +
                                   "{10 20 200 100 }\n#2{-1 -1 2 4 }\n}\n");
    for (const Form& form : forms) {
        SCOPED_TRACE(form.name);
        ObjectPtr back(form.roundTrip(map));
        TranslCoord* t = CAST(TranslCoord, back.get());
        EXPECT_EQ(t->ax(), map.ax());
        EXPECT_EQ(t->bx(), map.bx());
        EXPECT_EQ(t->ay(), map.ay());
        EXPECT_EQ(t->by(), map.by());
    }
}

// Model files keep every digit, whatever precision the stream was given.
TEST_F(SmallValueIoTest, DoublesKeepEveryDigit) {
    Float third(1.0 / 3.0);
    EXPECT_EQ(storedText(third), ":Float." + sig(class_Float) + "{0.33333333333333331 }\n");
    std::ostringstream os;
    os.precision(3);
    storeObject(os, third);
    EXPECT_EQ(os.precision(), 3);
    ObjectPtr exact(readText(os.str()));
    EXPECT_EQ(CAST(Float, exact.get())->value(), 1.0 / 3.0);
    ObjectPtr binary(readBinary(storedBinary(third)));
    EXPECT_EQ(CAST(Float, binary.get())->value(), 1.0 / 3.0);
}

TEST_F(SmallValueIoTest, AClockReadGoesOnFromItsElapsedTime) {
    ObjectPtr text(readText(":Clock." + sig(class_Clock) + "{5000 }\n"));
    long elapsed = CAST(Clock, text.get())->elapsed();
    EXPECT_GE(elapsed, 5000);
    EXPECT_LT(elapsed, 6000);
    Clock running;
    for (const Form& form : forms) {
        SCOPED_TRACE(form.name);
        long before = running.elapsed();
        ObjectPtr back(form.roundTrip(running));
        EXPECT_GE(CAST(Clock, back.get())->elapsed(), before);
        EXPECT_LE(CAST(Clock, back.get())->elapsed(), running.elapsed() + 1000);
    }
}

TEST_F(SmallValueIoTest, AGeneratorReadGoesOnWithTheSequence) {
    std::vector<std::pair<const char*, ObjectPtr>> generators;
    generators.emplace_back("Random", new Random(7));
    generators.emplace_back("RandomLinear", new RandomLinear(-2, 6, 0.5, 11));
    generators.emplace_back("RandomExp", new RandomExp(3, 12));
    generators.emplace_back("RandomGauss", new RandomGauss(1, 0.25, 0x123456789ul));
    for (auto& g : generators) {
        SCOPED_TRACE(g.first);
        Random* original = CAST(Random, g.second.get());
        for (int i = 0; i < 5; ++i) original->next();
        for (const Form& form : forms) {
            SCOPED_TRACE(form.name);
            ObjectPtr back(form.roundTrip(*original));
            Random* copy = CAST(Random, back.get());
            EXPECT_EQ(copy->isA(), original->isA());
            std::unique_ptr<Random> twin(CAST(Random, original->deepCopy()));
            for (int i = 0; i < 5; ++i) EXPECT_EQ(copy->next(), twin->next());
        }
    }
    // A linear generator with its bounds swapped is refused.
    std::string text = storedText(RandomLinear(0, 1, 1));
    size_t bounds = text.rfind("0 1 }");
    ASSERT_NE(bounds, std::string::npos);
    text.replace(bounds, 5, "1 0 }");
    std::string error;
    EXPECT_EQ(readText(text, &error), nullptr);
    EXPECT_NE(error.find("min <= max"), std::string::npos) << error;
}

// TarnException

TEST_F(ExceptionIoTest, CodeSeverityAndMessageComeBack) {
    TarnException original(GENERICERR, "[GENERICERR] a {braced} \"message\"\n", SEV_WARNING);
    EXPECT_EQ(storedText(original), ":TarnException." + sig(class_TarnException) + "{" +
                                        std::to_string(GENERICERR) + " -2 :String." + sig(class_String) +
                                        "{34 35 \"[GENERICERR] a \\[braced\\] \\\"message\\\"\\n\n\"}\n}\n");
    for (const Form& form : forms) {
        SCOPED_TRACE(form.name);
        ObjectPtr back(form.roundTrip(original));
        TarnException* e = CAST(TarnException, back.get());
        EXPECT_EQ(e->code(), GENERICERR);
        EXPECT_EQ(e->severity(), SEV_WARNING);
        EXPECT_STREQ(e->what(), original.what());
        EXPECT_TRUE(e->isEqual(original));
    }
}

// A read that fails inside an embedded member leaves an object that unwinds
// cleanly: the error comes back as text, and later reads work.
TEST_F(ExceptionIoTest, AFailedEmbeddedReadIsAnOrdinaryError) {
    std::string head = ":TarnException." + sig(class_TarnException) + "{18 1 ";
    std::string string = ":String." + sig(class_String) + "{";
    std::string rect = ":TranslCoord." + sig(class_TranslCoord) + "{:FloatRect." + sig(class_FloatRect) + "{";
    struct Case {
        const char* name;
        std::string text;
        const char* errorStart;
    } cases[] = {
        {"end inside the message", head + string + "3 4 \"ab", "[RDEOF]"},
        {"bad message text", head + string + "3 4 abc}\n}\n", "[RDSYNERR]"},
        {"message of another class", head + ":Integer." + sig(class_Integer) + "{3 }\n}\n", "[RDWRONGCLASS]"},
        {"message by reference", head + "@1 }\n", "[RDREFERR]"},
        {"no brace after the message", head + string + "1 2 \"a\"x\n}\n", "[RDSYNERR]"},
        {"end inside a rectangle", rect + "1 2", "[RDEOF]"},
        {"binary message cut short", "", "[READBINUNDFL]"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::string error;
        if (c.text.empty()) {
            std::string bytes = storedBinary(TarnException(18, "cut", 1));
            EXPECT_EQ(readBinary(bytes.substr(0, bytes.size() - 2), &error), nullptr);
        } else {
            EXPECT_EQ(readText(c.text, &error), nullptr);
        }
        EXPECT_EQ(error.rfind(c.errorStart, 0), 0u) << error;
    }
    ObjectPtr after(readText(storedText(TarnException(18, "fine", 1))));
    EXPECT_STREQ(CAST(TarnException, after.get())->what(), "fine");
}

}  // namespace
