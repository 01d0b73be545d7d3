// Icon metadata: merging of items, the icons' dynamic fields, copies, and refused fields.
#include "editor/iconmeta.h"

#include <gtest/gtest.h>

#include <string>

#include "../quill/testutil.h"
#include "editor/iconarc.h"
#include "quill/arrayob.h"
#include "quill/integer.h"

namespace {

std::string text(Object* value) { return CAST(String, value)->asCharPointer(); }

IconMetaData& item(const char* title, const char* id, const char* file) {
    IconMetaData& md = *new IconMetaData;
    md.add(iconcat::TITLE, new String(title));
    md.add(new String(id), iconcat::ID, IconFieldEdt("Id"));
    md.add(new String(file), iconcat::FILE, IconFieldEdt("File"));
    return md;
}

// The left's text wins unless empty; new categories come over, local ones
// only into an empty item; with secondary ids on both sides the right stays
// a separate entry.
TEST(IconMetaDataTest, merging) {
    IconMetaData& left = item("T", "", "left.txt");
    IconMetaData& right = item("T", "right id", "right.txt");
    right.add(new String("many"), iconcat::MULTIPLICITY, IconFieldEdt("Multiplicity"));
    right.add(new String("mine"), iconcat::SECTION, IconFieldEdt("Section")).setLocal(true);
    left += right;
    EXPECT_EQ("right id", text(left.value(iconcat::ID())));
    EXPECT_EQ("left.txt", text(left.value(iconcat::FILE())));
    EXPECT_EQ("many", text(left.value(iconcat::MULTIPLICITY())));
    EXPECT_FALSE(left.includes(iconcat::SECTION()));
    IconMetaData empty;
    empty += right;
    EXPECT_TRUE(empty.includes(iconcat::SECTION()));

    left.add(iconcat::SECONDARY_ID, new String("1"));
    right.add(iconcat::SECONDARY_ID, new String("2"));
    left += right;
    ASSERT_EQ(1u, left.mergedItems().size());
    EXPECT_EQ(6u, left.mergedItems().at(0)->size());
    EXPECT_EQ("right id", text(left.value(iconcat::ID())));

    delete &left;
    delete &right;
}

// Assigning takes copies of the values, field by field.
TEST(IconMetaDataTest, assign) {
    IconMetaData& edited = item("T", "edited", "e.txt");
    IconMetaData& target = item("T", "", "t.txt");
    target.assign(edited);
    delete &edited;
    EXPECT_EQ("edited", text(target.value(iconcat::ID())));
    EXPECT_EQ("e.txt", text(target.value(iconcat::FILE())));
    delete &target;
}

TEST(IconMetaDataTest, refusedFields) {
    IconMetaData md;
    md.add(iconcat::TITLE, new String("first"));
    EXPECT_NE(std::string::npos, raisedText([&] {
                                     md.add(iconcat::TITLE, new String("second"));
                                 }).find("! includes( category )"));
    EXPECT_EQ(1u, md.fields().size());
    Integer number(3);
    EXPECT_NE(std::string::npos,
              raisedText([&] { IconField(iconcat::ID, &number); }).find("Invalid type for icon field value"));
}

// Dynamic fields answer for their icon, and a copy's answer for the copy.
TEST(IconMetaDataTest, dynamicFieldsFollowTheirIcon) {
    IconNode from, to;
    from.setName("A");
    to.setName("B");
    IconArc link;
    from.addToLink(link);
    link.setFrom(&from);
    link.setTo(&to);
    from.comment() = "about A";
    IconMetaData& nodeData = *CAST(IconMetaData, from.metaDataCltn().first());
    EXPECT_EQ("about A", text(nodeData.value(iconcat::COMMENT())));
    EXPECT_EQ(&link, (*CAST(ArrayOb, nodeData.value(iconcat::FROMLINKS())))[0]);
    IconMetaData& linkData = *CAST(IconMetaData, link.metaDataCltn().first());
    EXPECT_FALSE(linkData.includes(iconcat::FROMLINKS()));
    EXPECT_EQ("A -> B", text(linkData.value(iconcat::TITLE())));

    IconNode* copy = CAST(IconNode, from.deepCopy());
    EXPECT_NE(from.name(), copy->name());
    copy->comment() = "about the copy";
    IconMetaData& copyData = *CAST(IconMetaData, copy->metaDataCltn().first());
    EXPECT_EQ("about the copy", text(copyData.value(iconcat::COMMENT())));
    EXPECT_EQ("about A", text(nodeData.value(iconcat::COMMENT())));
    EXPECT_EQ(nil, (*copy->toIcons())[0]);
    delete copy;
}

}  // namespace
