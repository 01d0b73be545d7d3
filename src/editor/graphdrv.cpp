// The program mode of a single graph editor: one window on one file, and the loop until it closes.
#include "editor/graphdrv.h"

#include <iostream>

#include "editor/graphedt.h"
#include "quill/cback.h"
#include "trellis/dispatch.h"
#include "trellis/shell.h"

int runGraphEditor(const char* semanticClass, const char* title, int argc, char** argv) {
    if (argc > 2) {
        std::cerr << "Syntax error: usage " << argv[0] << " <filename>" << std::endl;
        return 1;
    }
    GraphEditor* editor = new GraphEditor(topLevelWidget, semanticClass, title, false, false, true);
    editor->addCback(CloseEditor, quitCallback);
    editor->open(argc > 1 ? argv[1] : "");
    runMainLoop();
    delete editor;
    return 0;
}
