// The gd calls the GIF output makes, loaded from libgd at the first image: gd and the image
// codecs it pulls in cost every start of the program, most of which never write a GIF.
#ifndef TRELLIS_GDLIB_H
#define TRELLIS_GDLIB_H

#include <gd.h>

struct GdLibrary {
    gdImagePtr (*imageCreate)(int, int);
    void (*imageDestroy)(gdImagePtr);
    int (*imageColorExact)(gdImagePtr, int, int, int);
    int (*imageColorAllocate)(gdImagePtr, int, int, int);
    int (*imageColorClosest)(gdImagePtr, int, int, int);
    void (*imageSetThickness)(gdImagePtr, int);
    void (*imageSetStyle)(gdImagePtr, int*, int);
    void* (*imageGifPtr)(gdImagePtr, int*);
    void (*free)(void*);
    void (*imageLine)(gdImagePtr, int, int, int, int, int);
    void (*imageRectangle)(gdImagePtr, int, int, int, int, int);
    void (*imageFilledRectangle)(gdImagePtr, int, int, int, int, int);
    void (*imageArc)(gdImagePtr, int, int, int, int, int, int, int);
    void (*imageFilledArc)(gdImagePtr, int, int, int, int, int, int, int, int);
    void (*imagePolygon)(gdImagePtr, gdPointPtr, int, int);
    void (*imageOpenPolygon)(gdImagePtr, gdPointPtr, int, int);
    void (*imageFilledPolygon)(gdImagePtr, gdPointPtr, int, int);
    void (*imageString)(gdImagePtr, gdFontPtr, int, int, unsigned char*, int);
    gdFontPtr (*fontGetSmall)();
};

// The calls, loaded once; null after the failure was written to the error stream.
const GdLibrary* gdLibrary();

#endif
