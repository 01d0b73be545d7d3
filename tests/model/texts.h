// Helpers of the model tests: the texts of dialogue rows and strings as standard strings.
#ifndef TESTS_MODEL_TEXTS_H
#define TESTS_MODEL_TEXTS_H

#include <string>
#include <vector>

#include "quill/orderedc.h"
#include "quill/quillstr.h"

inline std::string str(const String& s) { return s.asCharPointer(); }

// A list of Strings, such as a dialogue's labels or values.
inline std::vector<std::string> texts(const OrderedCltn& list) {
    std::vector<std::string> result;
    for (unsigned i = 0; i < list.size(); ++i) result.push_back(str(*CAST(String, list.at(i))));
    return result;
}

#endif
