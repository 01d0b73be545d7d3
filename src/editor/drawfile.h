// A drawing read from its file without a window, and the deletion of a drawing's icons.
#ifndef EDITOR_DRAWFILE_H
#define EDITOR_DRAWFILE_H

#include "quill/quillstr.h"

class Dictionary;
class Semantic;

// Deletes the icons of a drawing as the editor does, through its semantic, then the semantic and
// the dictionary.
void deleteDrawing(Dictionary& icons, Semantic* semantic);

// The drawing of any kind, its semantic told of its icons and file; all owned until the end.
class DrawingFile {
public:
    explicit DrawingFile(const char* fileName);
    DrawingFile(const DrawingFile&) = delete;
    DrawingFile& operator=(const DrawingFile&) = delete;
    ~DrawingFile();
    // Null when the file cannot be read or holds no drawing; message() tells why.
    Semantic* semantic() const { return semantic_; }
    const String& message() const { return message_; }

private:
    Object* drawing = 0;
    Semantic* semantic_ = 0;
    String message_;
};

// Writes the document of the drawing in fileName beside it; kind is "html", "latex", "rtf" or
// "ascii". Answers an empty string or the message.
String writeDrawingDocument(const char* kind, const char* fileName);

#endif
