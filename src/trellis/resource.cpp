// Integer resources in one table by name.
#include "trellis/resource.h"

#include <map>
#include <string>

namespace {

std::map<std::string, int>& table() {
    static std::map<std::string, int> resources;
    return resources;
}

}  // namespace

int integerResource(const char* name, int byDefault) {
    auto found = table().find(name);
    return found == table().end() ? byDefault : found->second;
}

void setIntegerResource(const char* name, int value) { table()[name] = value; }

void removeIntegerResource(const char* name) { table().erase(name); }
