// The toolkit's start and stop, which the library calls through its hooks.
#ifndef TRELLIS_TOOLKIT_H
#define TRELLIS_TOOLKIT_H

// Makes the Qt application from the argument store, the top level and,
// with a screen, the console; sets the library's hooks.
void toolkitStart();
// Shows the console when it is all that was written to, closes the shells
// and clears the hooks.
void toolkitStop();
// Whether the program runs without a screen (Qt's offscreen platform).
bool isHeadless();

#endif
