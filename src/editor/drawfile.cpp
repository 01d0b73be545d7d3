// DrawingFile: a drawing read headless, and its document written from the command line.
#include "editor/drawfile.h"

#include <cstring>
#include <fstream>

#include "editor/iconarc.h"
#include "editor/semantic.h"
#include "quill/arrayob.h"
#include "quill/dictnary.h"
#include "quill/objio.h"

void deleteDrawing(Dictionary& icons, Semantic* semantic) {
    OrderedCltn all;
    all.addContentsOf(icons);
    icons.removeAll();
    for (unsigned i = 0; i < all.size(); ++i) {
        IconNode* icon = CAST(IconNode, all.at(i));
        icon->release();
        if (icon->isKindOf(class_IconArc))
            semantic->deleteLink(CAST(IconArc, icon));
        else
            semantic->deleteIcon(icon);
    }
    delete &icons;
    delete semantic;
}

DrawingFile::DrawingFile(const char* fileName) {
    std::ifstream file(fileName);
    if (!file) {
        message_ = String("Cannot open file ") + fileName;
        return;
    }
    String error;
    drawing = readFromChecked(error, file);
    if (error.size() > 0) {
        message_ = error;
        drawing = 0;
        return;
    }
    ArrayOb* array = drawing && drawing->isKindOf(class_ArrayOb) ? CAST(ArrayOb, drawing) : 0;
    Object* icons = array && array->size() > 1 ? (*array)[0] : nil;
    Object* kind = array && array->size() > 1 ? (*array)[1] : nil;
    if (kind == nil || !kind->isKindOf(class_Semantic) || icons == nil ||
        !icons->isKindOf(class_Dictionary)) {
        message_ = String("Bad ArrayOb in file ") + fileName;
        return;
    }
    semantic_ = CAST(Semantic, kind);
    semantic_->setDrawing(*CAST(Dictionary, icons), fileName);
}

DrawingFile::~DrawingFile() {
    if (!drawing) return;
    ArrayOb* array = drawing->isKindOf(class_ArrayOb) ? CAST(ArrayOb, drawing) : 0;
    if (semantic_ && array) {
        deleteDrawing(*CAST(Dictionary, (*array)[0]), semantic_);
        (*array)[0] = (*array)[1] = nil;
    }
    drawing->deepDeleteContents();
    delete drawing;
}

String writeDrawingDocument(const char* kind, const char* fileName) {
    static const char* const kinds[] = {"html", "latex", "ascii", "rtf"};
    int index = -1;
    for (int i = 0; i < 4; ++i)
        if (strcmp(kind, kinds[i]) == 0) index = i;
    if (index < 0) return String("Unknown document kind ") + kind + ": html, latex, rtf or ascii";
    DrawingFile drawing(fileName);
    if (!drawing.semantic()) return drawing.message();
    const char* message = drawing.semantic()->createDocument(index);
    return String(message ? message : "");
}
