// Parameter and ParametersCltn: type texts, ranges, enumerations, look-ups and the stream form.
#include <gtest/gtest.h>

#include <string>

#include "../quill/iotest.h"
#include "control/all.h"

namespace {

std::string text(const String& s) { return s.asCharPointer(); }

TEST(ParameterTest, ConstructorsGiveTypeValueAndKind) {
    struct Row {
        Parameter p;
        const char* type;
        const char* value;
        bool isInt, isIntRange, isFloat, isFloatRange, isBool, isString;
    };
    Row rows[] = {
        {Parameter("n", 4), "int", "4", true, false, false, false, false, false},
        {Parameter("r", 1, 5, 3), "int<1:5>", "3", false, true, false, false, false, false},
        {Parameter("x", 0.25), "float", "0.25", false, false, true, false, false, false},
        {Parameter("f", -0.5, 2.0, 1.5), "float<-0.5:2>", "1.5", false, false, false, true, false, false},
        {Parameter("b", false), "bool", "NO", false, false, false, false, true, false},
        {Parameter("s", "text"), "string", "text", false, false, false, false, false, true},
        {Parameter("t", String("other")), "string", "other", false, false, false, false, false, true},
        {Parameter("c", "", "collection"), "collection", "", false, false, false, false, false, false},
        {Parameter("i", "2", "integer"), "integer", "2", false, false, false, false, false, false},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.type);
        EXPECT_EQ(text(r.p.type()), r.type);
        EXPECT_EQ(text(r.p.value()), r.value);
        EXPECT_EQ(r.p.isInt(), r.isInt);
        EXPECT_EQ(r.p.isIntRange(), r.isIntRange);
        EXPECT_EQ(r.p.isFloat(), r.isFloat);
        EXPECT_EQ(r.p.isFloatRange(), r.isFloatRange);
        EXPECT_EQ(r.p.isBool(), r.isBool);
        EXPECT_EQ(r.p.isString(), r.isString);
        EXPECT_EQ(r.p.hasSubParameters(), std::string(r.type) == "collection");
        // The checked reads accept their own kind and its ranges only.
        EXPECT_EQ(errorTextOf([&] { r.p.intValue(true); }).size() == 0, r.isInt || r.isIntRange);
        EXPECT_EQ(errorTextOf([&] { r.p.floatValue(true); }).size() == 0, r.isFloat || r.isFloatRange);
    }
    EXPECT_EQ(text(errorTextOf([] { Parameter("s", "7").intValue(true); })),
              "[PARAMETER_TYPE] parameter s of type string read as int");
    EXPECT_EQ(Parameter("s", "-3.9").intValue(), -3);
    EXPECT_TRUE(Parameter("b", true).boolValue());
}

TEST(ParameterTest, SettersBoundValuesByTheRangeOfTheType) {
    struct Row {
        const char* type;
        double input;
        bool keep;
        const char* type_after;
        const char* value;
        bool inside;
    };
    const Row rows[] = {
        {"int<-3:4>", 9, true, "int<-3:4>", "4", false},
        {"int<-3:4>", -7, true, "int<-3:4>", "-3", false},
        {"int<-3:4>", 2, true, "int<-3:4>", "2", true},
        {"int<1:5>", 9, false, "int", "9", true},
        {"int<a:5>", 9, true, "int<a:5>", "9", true},
        {"float<0.5:2.5>", 3, true, "float<0.5:2.5>", "2.5", false},
        {"float<0.5:2.5>", 0.75, true, "float<0.5:2.5>", "0.75", true},
        {"float<0.5:2.5>", 0.1, true, "float<0.5:2.5>", "0.5", false},
        {"string", 3, false, "float", "3", true},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(std::string(r.type) + " " + std::to_string(r.input));
        Parameter p("p", "", r.type);
        bool isFloat = std::string(r.type).rfind("float", 0) == 0 || std::string(r.type) == "string";
        bool inside = isFloat ? p.setFloat(r.input, r.keep) : p.setInt(int(r.input), r.keep);
        EXPECT_EQ(text(p.type()), r.type_after);
        EXPECT_EQ(text(p.value()), r.value);
        EXPECT_EQ(inside, r.inside);
    }
}

TEST(ParameterTest, EnumerationIsSharedByAllParametersOfTheType) {
    OrderedCltn colours;
    colours.add(*new String("red"));
    colours.add(*new String("green"));
    Parameter::addEnum("colour", colours);
    colours.deleteContents();
    Parameter first("a", "colour", 1), second("b", "colour", 0), outside("c", "colour", 2);
    EXPECT_EQ(text(first.value()), "green");
    EXPECT_EQ(text(outside.value()), "");
    Parameter::addEnumValue("colour", "blue");
    Parameter::addEnumValue("colour", "red");
    EXPECT_EQ(text(second.enumName(2)), "blue");
    for (int index : {-1, 3}) EXPECT_EQ(text(first.enumName(index)), "") << index;
    second.setEnumName("blue");
    second.setEnumName("black");
    second.setEnum(7);
    EXPECT_EQ(second.enumIndex(), 2);

    Parameter::copyEnum("paint", "colour");
    Parameter::addEnumValue("paint", "black");
    OrderedCltn values;
    EXPECT_EQ(Parameter::enumValues("colour", values).size(), 3u);
    EXPECT_EQ(Parameter::enumValues("paint", values).size(), 7u);
    values.deleteContents();
    for (const char* name : {"colour", "paint"}) Parameter::removeEnums(name);
    EXPECT_EQ(Parameter::enumValues("colour", values).size(), 0u);
    EXPECT_EQ(first.enumIndex(), -1);
}

ParametersCltn twoMembers() {
    ParametersCltn c;
    c.add(Parameter("gamma", 1.5));
    c.add(Parameter("iter", 1, 100, 20));
    return c;
}

TEST(ParametersCltnTest, MembersAreCopiesFoundByName) {
    ParametersCltn c = twoMembers();
    Parameter& gamma = c.find("gamma");
    EXPECT_EQ(&c.find("gamma"), &gamma);
    Parameter& missing = c.find("alfa");
    EXPECT_EQ(text(missing.name()), "");
    missing.setString("changed");
    EXPECT_EQ(text(c.find("alfa").value()), "");
    EXPECT_EQ(c.size(), 2u);

    Parameter copy("x", "old");
    EXPECT_EQ(c.get(copy, "iter").intValue(true), 20);
    copy.setInt(50, true);
    EXPECT_EQ(c.at(1).intValue(), 20);
    EXPECT_EQ(text(c.get(copy, "none").name()), "");

    c.addAll(twoMembers());
    OrderedCltn names;
    EXPECT_EQ(text(*CAST(String, c.names(names).at(2))), "gamma");
    names.deleteContents();
    std::ostringstream os;
    os << Parameter("set", twoMembers());
    EXPECT_EQ(os.str(),
              "set (collection) ParametersCltn [\n  gamma (float) = 1.5\n  iter (int<1:100>) = 20\n]");
}

// A collection read back owns members of its own, in the text and the binary form.
TEST(ParametersCltnTest, CollectionParameterReadsBackWithItsOwnMembers) {
    Parameter set("set", twoMembers());
    for (bool binary : {false, true}) {
        SCOPED_TRACE(binary);
        std::string error;
        Object* read = binary ? readBinary(storedBinary(set), &error) : readText(storedText(set), &error);
        ASSERT_TRUE(read) << error;
        Parameter& p = *CAST(Parameter, read);
        ASSERT_TRUE(p.hasSubParameters());
        EXPECT_NE(p.subParameters(), set.subParameters());
        EXPECT_EQ(text(p.type()), "collection");
        EXPECT_EQ(text(p.subParameters()->find("iter").type()), "int<1:100>");
        EXPECT_EQ(p.subParameters()->at(0).floatValue(true), 1.5);
        delete read;
    }
}

}  // namespace
