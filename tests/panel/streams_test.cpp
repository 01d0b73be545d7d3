// Both stream forms of every registered class: an object stored as text, read
// back, stored in binary and read back from that stores the same text again,
// so the binary form holds the whole state. Classes that can't be stored
// refuse both forms. This program links every library, hence every class.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "../quill/iotest.h"
#include "../quill/testutil.h"
#include "algebra/all.h"
#include "editor/semantic.h"
#include "fuzz/fuzzsupport.h"
#include "quill/all.h"

namespace {

// The error a store in each form raises, "no error" when it stores.
std::string textRefusal(const Object& ob) {
    return raisedText([&] {
        std::ostringstream os;
        ob.storeOn(os);
    });
}

std::string binaryRefusal(const Object& ob) {
    return raisedText([&] {
        std::ostringstream os;
        BinOstream bos(os);
        ob.storeOn(bos);
    });
}

bool isLibraryRefusal(const std::string& error) {
    return error.rfind("[ILLEGALMETHOD]", 0) == 0 || error.rfind("[NOTYET]", 0) == 0;
}

// Text, read, binary, read, text: the last text is the first one.
void expectWholeInBothForms(const Object& ob) {
    std::string text = storedText(ob), error;
    Object* fromText = readText(text, &error);
    ASSERT_NE(fromText, nullptr) << error << "\n" << text;
    Object* fromBinary = readBinary(storedBinary(*fromText), &error);
    EXPECT_NE(fromBinary, nullptr) << error;
    if (fromBinary) {
        EXPECT_EQ(storedText(*fromBinary), text);
        deepDelete(fromBinary);
    }
    deepDelete(fromText);
}

// A default instance, or null for a class without one.
Object* defaultInstance(const Class& c) {
    Object* ob = 0;
    raisedText([&] { ob = c.create(); });
    return ob == nil ? 0 : ob;
}

TEST(StreamFormsTest, EveryClassIsWholeInBothFormsOrRefusesBoth) {
    unsigned stored = 0;
    for (Class* c = Class::first(); c; c = c->next()) {
        Object* ob = defaultInstance(*c);
        if (!ob) continue;
        SCOPED_TRACE(c->name());
        std::string refusal = textRefusal(*ob);
        // A callback stores as a bare Object and is never read back. A kind
        // of drawing keeps its board's extent in the text form only: a binary
        // drawing takes it from its icons.
        if (refusal == "no error" && c != &class_Cback) {
            EXPECT_EQ(binaryRefusal(*ob), "no error");
            if (!ob->isKindOf(class_Semantic)) expectWholeInBothForms(*ob);
            ++stored;
        } else if (refusal != "no error") {
            EXPECT_TRUE(isLibraryRefusal(refusal)) << refusal;
            EXPECT_EQ(binaryRefusal(*ob), refusal);
        }
        delete ob;
    }
    EXPECT_GT(stored, 50u);
}

TEST(StreamFormsTest, ClassesThatCantBeStoredRefuseBothForms) {
    String text("abcdef");
    SubString part(text, 1, 3);
    Istream in;
    Ostream out;
    for (const Object* ob : {static_cast<const Object*>(&class_Matrix), static_cast<const Object*>(&part),
                             static_cast<const Object*>(&in), static_cast<const Object*>(&out)}) {
        SCOPED_TRACE(ob->className());
        EXPECT_EQ(textRefusal(*ob).rfind("[ILLEGALMETHOD]", 0), 0u);
        EXPECT_EQ(binaryRefusal(*ob), textRefusal(*ob));
    }
}

Object* readModel(const std::string& name) {
    std::ifstream file(std::string(TARN_EXAMPLES) + "/" + name);
    String error;
    Object* ob = readFromChecked(error, file);
    EXPECT_NE(ob, nullptr) << name << ": " << error.asCharPointer();
    return ob;
}

TEST(StreamFormsTest, ModelsMatricesAndGraphsAreWholeInBothForms) {
    std::vector<Object*> rich = {richGraph(), new Matrix("[1.5 -2 1e-300; 0.1 3 4]"),
                                 new Vector(0.1, -2.5, 1e300)};
    for (const char* model : {"gain.dyn", "twomass.dyn", "twomassd.dyn", "twomassx.dyn", "twomassxd.dyn"})
        rich.push_back(readModel(model));
    for (Object* ob : rich) {
        if (!ob) continue;
        SCOPED_TRACE(ob->className());
        expectWholeInBothForms(*ob);
        deepDelete(ob);
    }
}

}  // namespace
