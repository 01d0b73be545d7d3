// Helpers of the stream tests: an object's stored text and bytes, and guarded reads.
#ifndef TESTS_QUILL_IOTEST_H
#define TESTS_QUILL_IOTEST_H

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "quill/all.h"

inline std::string sig(const Class& c) { return std::to_string(c.signature()); }

inline std::string storedText(const Object& ob) {
    std::ostringstream os;
    EXPECT_TRUE(storeObject(os, ob));
    return os.str();
}

inline std::string storedBinary(const Object& ob) {
    std::ostringstream os;
    BinOstream bos(os);
    EXPECT_TRUE(storeObject(bos, ob));
    return os.str();
}

// Guarded reads: a read error answers null and leaves its text in *error.
inline Object* readText(const std::string& text, std::string* error = 0, const char* className = "") {
    String errorText;
    Object* ob = readFromString(errorText, text.c_str(), text.size(), className);
    if (error) *error = errorText.asCharPointer();
    return ob;
}

inline Object* readBinary(const std::string& bytes, std::string* error = 0, const char* className = "") {
    std::istringstream is(bytes);
    BinIstream bis(is);
    String errorText;
    Object* ob = readFromChecked(errorText, bis, className);
    if (error) *error = errorText.asCharPointer();
    return ob;
}

// Damages the count of width bytes at offset of a binary stream to a huge
// value: the read ends short of data, without a huge allocation.
inline void expectDamagedBinaryCountFails(std::string bytes, size_t offset, size_t width) {
    bytes.replace(offset, width, width, '\xee');
    unsigned long before = bytesInUse();
    std::string error;
    EXPECT_EQ(readBinary(bytes, &error), nullptr);
    EXPECT_TRUE(error.rfind("[RDEOF]", 0) == 0 || error.rfind("[READBINUNDFL]", 0) == 0) << error;
    EXPECT_LT(bytesInUse(), before + 1000000);
}

#endif
