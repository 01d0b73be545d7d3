// Object, Nil and Class: liveness, type tests, copying, deep deletion, descriptors.
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstdint>
#include <sstream>
#include <string>

#include "quill/all.h"
#include "testutil.h"

// A chain of test classes with their own versions, and a node that owns
// members, for deep copies and deep deletion.
class Ver1 : public Object {
    DECLARE_MEMBERS(Ver1)
};
class Ver2 : public Ver1 {
    DECLARE_MEMBERS(Ver2)
};
class Ver1b : public Ver1 {
    DECLARE_MEMBERS(Ver1b)
};

class Node : public Object {
    DECLARE_MEMBERS(Node)
public:
    Node(Object* a = nil, Object* b = nil) : first(a), second(b) {}
    ~Node() noexcept(false) override { ++destroyed; }
    void deepDeleteContents() override {
        deepDelete(first);
        deepDelete(second);
    }
    void deepenShallowCopy() override {
        first = first->deepCopy();
        second = second->deepCopy();
    }
    Object* first;
    Object* second;
    static int destroyed;
};
int Node::destroyed = 0;

DEFINE_CLASS(Ver1, Object, 1, 0)
DEFINE_CLASS(Ver2, Ver1, 2, 0)
DEFINE_CLASS(Ver1b, Ver1, 1, 0)
DEFINE_CLASS(Node, Object, 1, 0)

namespace {

int globalWord = 7;

// Stored files carry these numbers: they must not change.
TEST(ClassTest, SignatureDependsOnTheVersionsOfTheWholeChain) {
    EXPECT_EQ(class_Ver2.signature(), 0x211u);  // versions 2, 1, 1 up to Object
    EXPECT_EQ(class_Ver1b.signature(), 0x111u);
}

TEST(ClassTest, DescriptorsAndDictionary) {
    for (const char* name : {"Object", "Nil", "Class", "Integer", "Float", "TarnException", "Node"}) {
        SCOPED_TRACE(name);
        Class* c = findClass(name);
        ASSERT_NE(c, nullptr);
        EXPECT_STREQ(c->name(), name);
    }
    EXPECT_EQ(findClass("NoSuchClass"), nullptr);
    EXPECT_EQ(class_Object.base(), nullptr);
    EXPECT_EQ(class_Ver2.base(), &class_Ver1);
    EXPECT_TRUE(class_Node.isKindOf(class_Class));
    EXPECT_LT(class_Float.compare(class_Integer), 0);
    std::ostringstream os;
    class_Integer.printOn(os);
    EXPECT_EQ(os.str(), "Integer");
}

TEST(ClassTest, RefusalsAndAliases) {
    EXPECT_EQ(raisedText([] { Class c; }), "[ILLEGALMETHOD] Should not implement method Class::creator()");
    EXPECT_EQ(raisedText([] { class_Integer.deepCopy(); }),
              "[ILLEGALMETHOD] Should not implement method Class::deepCopy()");
    addClassAlias("NodeAlias", &class_Node);
    EXPECT_EQ(findClass("NodeAlias"), &class_Node);
    EXPECT_EQ(raisedText([] { addClassAlias("NodeAlias", "Integer"); }),
              "[DUP_ALIAS] class name alias NodeAlias already present in the class dictionary");
    Object* made = class_Node.create();
    EXPECT_TRUE(made->isMemberOf(class_Node));
    delete made;
}

TEST(ObjectTest, TypeTests) {
    Ver2 v;
    EXPECT_TRUE(v.isKindOf(class_Ver1));
    EXPECT_TRUE(v.isKindOf(class_Object));
    EXPECT_FALSE(v.isKindOf(class_Ver1b));
    EXPECT_TRUE(v.isMemberOf(class_Ver2));
    EXPECT_FALSE(v.isMemberOf(class_Ver1));
    EXPECT_TRUE(v.isSpecies(class_Ver2));
    EXPECT_STREQ(v.className(), "Ver2");
    EXPECT_EQ(v.baseClass(), &class_Ver1);

#ifndef TARN_SANITIZED
    // Undefined in C++, so the sanitizers fault on it; the library answers false.
    const Object* none = 0;
    EXPECT_FALSE(none->isKindOf(class_Object));
#endif
    alignas(Ver2) unsigned char storage[sizeof(Ver2)];
    Ver2* dead = new (storage) Ver2;
    dead->~Ver2();
    EXPECT_FALSE(dead->isKindOf(class_Object));
    EXPECT_FALSE(dead->isMemberOf(class_Ver2));
}

TEST(ObjectTest, ValidObjectNeverFaults) {
    Integer onStack(3);
    Integer* onHeap = new Integer(4);
    EXPECT_TRUE(validObject(&onStack));
    EXPECT_TRUE(validObject(onHeap));
    EXPECT_TRUE(validObject(nil));
    EXPECT_TRUE(validObject(&class_Integer));
    delete onHeap;
    EXPECT_FALSE(validObject(onHeap));

    // A block that the system has given back: the page is gone.
    void* page = mmap(0, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(page, MAP_FAILED);
    new (page) Integer(5);
    EXPECT_TRUE(validObject(page));
    munmap(page, 4096);
    EXPECT_FALSE(validObject(page));

    const uintptr_t garbage[] = {0,
                                 1,
                                 3,
                                 8,
                                 16,
                                 4096,
                                 0x12345678,
                                 0x7ffffffff000,
                                 0xdeadbeefdeadbee8,
                                 uintptr_t(&globalWord),
                                 uintptr_t(&onStack) + 1};
    for (uintptr_t g : garbage) {
        SCOPED_TRACE(g);
        EXPECT_FALSE(validObject(reinterpret_cast<const void*>(g)));
    }
}

TEST(ObjectTest, ValidateAndCastCheck) {
    Integer i(1);
    validate(&i, "test", 1);
    EXPECT_EQ(raisedText([] { validate(reinterpret_cast<Object*>(16), "someFunction"); }),
              "[BADOBJECT] Invalid object: 0x00000010 in function someFunction()");
    Object* asObject = &i;
    EXPECT_EQ(CAST(Integer, asObject), &i);
    int line = __LINE__ + 1;
    std::string text = raisedText([&] { CAST(Float, asObject); });
    EXPECT_EQ(text, "[CASTBADCL] Cast bad class in file quill/object_test.cpp at line " +
                        std::to_string(line) + ": expected Float, was Integer");
    line = __LINE__ + 1;
    text = raisedText([] { CAST(Float, reinterpret_cast<Object*>(8)); });
    EXPECT_EQ(text, "[CASTBADOB] Cast bad object in file quill/object_test.cpp at line " +
                        std::to_string(line) + ": expected Float");
}

TEST(ObjectTest, DeletingNilIsRefusedAndNilSurvives) {
    int code = 0, severity = 0;
    EXPECT_EQ(raisedText([] { delete nil; }, &code, &severity), "[DELETENIL] Tried to delete the nil object");
    EXPECT_EQ(code, DELETENIL);
    EXPECT_EQ(severity, SEV_WARNING);
    EXPECT_EQ(nil->isA(), &class_Nil);
    EXPECT_TRUE(validObject(nil));
    std::ostringstream os;
    nil->printOn(os);
    EXPECT_EQ(os.str(), "NIL");
    EXPECT_EQ(raisedText([] { nil->compare(*nil); }),
              "[ILLEGALMETHOD] Should not implement method Nil::compare()");
}

TEST(ObjectTest, DestructorOfAClearedObjectRaises) {
    alignas(Integer) unsigned char storage[sizeof(Integer)];
    Integer* i = new (storage) Integer(2);
    i->magic = 0;
    std::string text = raisedText([&] { i->~Integer(); });
    EXPECT_EQ(text.find("[BADOBJECT] Invalid object: "), 0u);
    EXPECT_NE(text.find(" in function ~Object()"), std::string::npos);
}

TEST(ObjectTest, AbstractOperationsRaiseWithClassAndMethod) {
    Ver1 v;
    EXPECT_EQ(raisedText([&] { v.compare(v); }),
              "[DRVDCLASSRSP] Derived class responsability method Ver1::compare()");
    EXPECT_EQ(raisedText([&] { v.notYetImplemented("reader"); }),
              "[NOTYET] Sorry, method Ver1:reader() has not yet been implemented");
    Integer i;
    EXPECT_EQ(raisedText([&] { v.assertArgKindOf(i, class_Float, "blend"); }),
              "[BADARGCLM] Invalid argument class: expected Ver1::blend(Float), was Ver1::blend(Integer)");
}

TEST(ObjectTest, CopiesAreLiveAndDropCallbacks) {
    Integer original(42);
    original.cbackData = reinterpret_cast<CbackData*>(&globalWord);
    Integer* copy = static_cast<Integer*>(original.shallowCopy());
    original.cbackData = 0;
    EXPECT_TRUE(validObject(copy));
    EXPECT_EQ(copy->value(), 42);
    EXPECT_EQ(copy->cbackData, nullptr);
    delete copy;
    EXPECT_EQ(nil->shallowCopy(), nil);

    Integer target(1);
    target = original;
    EXPECT_EQ(target.value(), 42);
    EXPECT_EQ(raisedText([&] {
                  static_cast<Object&>(target) = Float(1.0);
              }).find("[ASSERTFLD] Assertion failed \"isA() == rhs.isA()\" in File quill/object.cpp: Line "),
              0u);
}

TEST(ObjectTest, DeepCopyCopiesMembers) {
    Node* tree = new Node(new Integer(1), new Node(new Integer(2)));
    Node* copy = static_cast<Node*>(tree->deepCopy());
    EXPECT_NE(copy->first, tree->first);
    EXPECT_TRUE(copy->first->isEqual(*tree->first));
    EXPECT_NE(static_cast<Node*>(copy->second)->first, static_cast<Node*>(tree->second)->first);
    deepDelete(tree);
    deepDelete(copy);
}

TEST(ObjectTest, DeepDeleteLosesASharedMemberOnce) {
    Node* shared = new Node;
    Node* root = new Node(new Node(shared), new Node(shared));
    Node::destroyed = 0;
    unsigned long before = bytesInUse();
    deepDelete(root);
    EXPECT_EQ(Node::destroyed, 4);
    EXPECT_LT(bytesInUse(), before);
    deepDelete(nil);
}

TEST(ObjectTest, AsCharPointerRingKeepsFiveTexts) {
    Integer values[6] = {10, 11, 12, 13, 14, 15};
    const char* texts[5];
    for (int i = 0; i < 5; ++i) texts[i] = values[i].Object::asCharPointer();
    for (int i = 0; i < 5; ++i) EXPECT_EQ(std::string(texts[i]), std::to_string(10 + i));

    // An object whose text is larger than a buffer makes the buffer grow.
    class Wide : public Integer {
    public:
        void printOn(std::ostream& os) const override { os << std::string(25000, 'w'); }
    } wide;
    EXPECT_EQ(std::string(wide.Object::asCharPointer()).size(), 25000u);

    char small[4];
    EXPECT_EQ(values[5].Object::asCharPointer(small, sizeof small), std::string("15"));
    EXPECT_EQ(wide.Object::asCharPointer(small, sizeof small), nullptr);
}

}  // namespace
