// libgd opened by its run-time name and its calls looked up one by one.
#include "trellis/gdlib.h"

#include <dlfcn.h>

#include <iostream>

namespace {

const char* const LIBRARY_NAME = "libgd.so.3";

template <typename F>
bool bind(void* library, const char* name, F& call) {
    call = reinterpret_cast<F>(dlsym(library, name));
    return call != nullptr;
}

bool bindAll(void* library, GdLibrary& gd) {
    return bind(library, "gdImageCreate", gd.imageCreate) &&
           bind(library, "gdImageDestroy", gd.imageDestroy) &&
           bind(library, "gdImageColorExact", gd.imageColorExact) &&
           bind(library, "gdImageColorAllocate", gd.imageColorAllocate) &&
           bind(library, "gdImageColorClosest", gd.imageColorClosest) &&
           bind(library, "gdImageSetThickness", gd.imageSetThickness) &&
           bind(library, "gdImageSetStyle", gd.imageSetStyle) &&
           bind(library, "gdImageGifPtr", gd.imageGifPtr) && bind(library, "gdFree", gd.free) &&
           bind(library, "gdImageLine", gd.imageLine) &&
           bind(library, "gdImageRectangle", gd.imageRectangle) &&
           bind(library, "gdImageFilledRectangle", gd.imageFilledRectangle) &&
           bind(library, "gdImageArc", gd.imageArc) && bind(library, "gdImageFilledArc", gd.imageFilledArc) &&
           bind(library, "gdImagePolygon", gd.imagePolygon) &&
           bind(library, "gdImageOpenPolygon", gd.imageOpenPolygon) &&
           bind(library, "gdImageFilledPolygon", gd.imageFilledPolygon) &&
           bind(library, "gdImageString", gd.imageString) && bind(library, "gdFontGetSmall", gd.fontGetSmall);
}

const GdLibrary* load() {
    static GdLibrary gd;
    void* library = dlopen(LIBRARY_NAME, RTLD_NOW | RTLD_LOCAL);
    if (library && bindAll(library, gd)) return &gd;
    std::cerr << LIBRARY_NAME << ": " << dlerror() << std::endl;
    return nullptr;
}

}  // namespace

const GdLibrary* gdLibrary() {
    static const GdLibrary* loaded = load();
    return loaded;
}
