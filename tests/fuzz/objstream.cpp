// Harness of the object-stream reader: the first byte chooses the form (odd:
// binary), the rest is the stream. A read ends in a valid object, which can
// be stored and deleted, or in the reader's error text.
#include <cstdlib>
#include <sstream>
#include <string>

#include "fuzzsupport.h"
#include "quill/all.h"
#include "quill/objio.h"

DEFINE_FUZZ_ENTRY {
    startFuzzedLibrary();
    if (size == 0) return 0;
    std::string stream(reinterpret_cast<const char*>(data) + 1, size - 1);
    String error;
    Object* ob;
    if (data[0] & 1) {
        std::istringstream is(stream);
        BinIstream bis(is);
        ob = readFromChecked(error, bis);
    } else {
        ob = readFromString(error, stream.data(), stream.size());
    }
    if (!ob) {
        if (error.size() == 0 || error.asCharPointer()[0] != '[') abort();
        return 0;
    }
    if (!validObject(ob)) abort();
    if (ob != nil) {
        textOf(*ob);  // what was read can be stored again
        deepDelete(ob);
    }
    return 0;
}
