// GraphEditor: new, load, save and reset of a drawing, and the file locks of a drawing's directory.
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <iostream>
#include <string>

#include "editor/chessbrd.h"
#include "editor/edthist.h"
#include "editor/fragment.h"
#include "editor/graphedt.h"
#include "editor/graphgui.h"
#include "editor/iconarc.h"
#include "editor/iconnode.h"
#include "editor/semantic.h"
#include "quill/arrayob.h"
#include "quill/assoc.h"
#include "quill/cback.h"
#include "quill/filename.h"
#include "quill/integer.h"
#include "quill/objio.h"
#include "quill/quillerr.h"
#include "quill/safefile.h"
#include "quill/set.h"
#include "trellis/drawarea.h"
#include "trellis/drawicon.h"
#include "trellis/filemenu.h"
#include "trellis/filetest.h"
#include "trellis/graphic.h"
#include "trellis/printdlg.h"
#include "trellis/shell.h"

namespace {

const char* const LOCK_FILE = "editfile.tarn";
const int DRAWING_SIZE = 6;

// From a drawing's full name to its editor.
Dictionary& editorsOfFiles() {
    static Dictionary editors;
    return editors;
}

// The lock file of the directory that holds the file (an absolute name).
String lockFileOf(const char* fileName) {
    String lock = directoryPart(fileName);
    lock += "/";
    lock += LOCK_FILE;
    return lock;
}

// The Set of the lock file, a new one when the file is missing or holds something else.
Set* readLocks(const String& lockFile) {
    if (access(lockFile.asCharPointer(), F_OK) != 0) return new Set;
    String error;
    Object* read = readObject(lockFile.asCharPointer(), 0, error);
    if (read && read->isKindOf(class_Set)) return CAST(Set, read);
    std::cerr << "Bad file " << lockFile << ", is not a Set" << std::endl;
    if (read) {
        read->deepDeleteContents();
        delete read;
    }
    return new Set;
}

bool writeLocks(const String& lockFile, const Set& locks) {
    bool created = access(lockFile.asCharPointer(), F_OK) != 0;
    String error = writeSafely(lockFile.asCharPointer(), [&](std::ostream& os) { storeObject(os, locks); });
    if (created && error.size() == 0) chmod(lockFile.asCharPointer(), 438);
    return error.size() == 0;
}

void deleteLocks(Set* locks) {
    locks->deleteContents();
    delete locks;
}

}  // namespace

String GraphEditor::takeLock(const char* fileName) {
    if (!fileName || !*fileName) return String();
    String file = absolutePath(fileName);
    String message;
    if (access(file.asCharPointer(), F_OK) == 0 &&
        (access(file.asCharPointer(), R_OK) != 0 || access(file.asCharPointer(), W_OK) != 0))
        return String("\n\n The file cannot be read");
    String lockFile = lockFileOf(file.asCharPointer());
    bool exists = access(lockFile.asCharPointer(), F_OK) == 0;
    if (exists && access(lockFile.asCharPointer(), R_OK) != 0) return String("\n\nThe file cannot be read");
    if (exists && access(lockFile.asCharPointer(), W_OK) != 0)
        return String("\n\nThe file cannot be written");
    Set* locks = readLocks(lockFile);
    String base = fileNamePart(file.asCharPointer());
    if (locks->includes(base)) {
        deleteLocks(locks);
        return String("\n\nThe file is already edited");
    }
    locks->add(*new String(base));
    bool written = writeLocks(lockFile, *locks);
    deleteLocks(locks);
    return written ? String() : String("\n\nThe file cannot be written");
}

void GraphEditor::dropLock(const char* fileName) {
    if (!fileName || !*fileName) return;
    String file = absolutePath(fileName);
    Dictionary& editors = editorsOfFiles();
    if (editors.includesKey(file)) {
        Object* key = CAST(LookupKey, editors.assocAt(file))->key();
        delete editors.removeKey(file);
        delete key;
    }
    String lockFile = lockFileOf(file.asCharPointer());
    if (access(lockFile.asCharPointer(), R_OK | W_OK) != 0) {
        std::cerr << "Cannot read and write file " << lockFile << std::endl;
        return;
    }
    Set* locks = readLocks(lockFile);
    String base = fileNamePart(file.asCharPointer());
    if (locks->includes(base))
        delete locks->remove(base);
    else
        std::cerr << base << " not present in " << lockFile << std::endl;
    if (locks->isEmpty())
        unlink(lockFile.asCharPointer());
    else
        writeLocks(lockFile, *locks);
    deleteLocks(locks);
}

GraphEditor* GraphEditor::editorOfFile(const char* fileName) {
    Dictionary& editors = editorsOfFiles();
    String file = absolutePath(fileName);
    return editors.includesKey(file) ? static_cast<GraphEditor*>(editors.atKey(file)) : 0;
}

int GraphEditor::setFileName(const char* name, bool lock) {
    String file = withExtension(name);
    if (isA() == &class_GraphEditor && lock && file.size()) {
        String message = relock(file.asCharPointer());
        if (message.size()) {
            std::cerr << "setFileName error: " << message << std::endl;
            return 0;
        }
    }
    gui_->setFileName(file.asCharPointer());
    return 1;
}

// Takes the lock of the file (none for an empty name) before the lock held
// so far is dropped; answers the message of a refusal, and then keeps the
// old lock.
String GraphEditor::relock(const char* fileName) {
    String file = fileName && *fileName ? absolutePath(fileName) : String();
    if (file == lockedName || isA() != &class_GraphEditor) return String();
    if (file.size()) {
        String message = takeLock(file.asCharPointer());
        if (message.size()) return message;
        editorsOfFiles().atPut(*new String(file), *this);
    }
    if (lockedName.size()) dropLock(lockedName.asCharPointer());
    lockedName = file;
    return String();
}

// Save As: the new name is locked before the old lock is dropped.
void GraphEditor::savedAs(Cback& cb) {
    const char* name = cb.callData->asCharPointer();
    String message = relock(name);
    if (message.size()) gui_->showError((String(name) + message).asCharPointer());
}

// ---------------------------------------------------------------- the drawing

ArrayOb* GraphEditor::drawingArray() const {
    ArrayOb* drawing = new ArrayOb(DRAWING_SIZE);
    (*drawing)[0] = icon_cltn;
    (*drawing)[1] = semantic_;
    const FloatRect& world = gui_->graphic().extent();
    FloatPoint origin = gui_->drawArea().origin();
    double span = world.width() > 0 ? world.width() : 1, rise = world.height() > 0 ? world.height() : 1;
    (*drawing)[2] = new Float(origin.x() / span);
    (*drawing)[3] = new Float(1.0);
    (*drawing)[4] = new Float(origin.y() / rise);
    (*drawing)[5] = new Float(1.0);
    return drawing;
}

namespace {

// Frees the array of drawingArray without the icons and the semantic it lends.
void releaseDrawingArray(ArrayOb* drawing) {
    for (int i = 2; i < DRAWING_SIZE; ++i) delete (*drawing)[i];
    delete drawing;
}

}  // namespace

bool GraphEditor::save() { return gui_->fileMenu().save(); }

void GraphEditor::guiSave(Cback& cb) {
    Integer* result = CAST(Integer, cb.callData->asObject());
    ArrayOb* drawing = drawingArray();
    bool stored = gui_->store(*drawing);
    releaseDrawingArray(drawing);
    if (!stored) {
        result->value(0);
        return;
    }
    CallData name(gui_->fileName().asCharPointer());
    cbackOn(SaveEditor, &name);
    if (child || gui_->hasFile()) {
        result->value(1);
        setChanged(false);
        semantic_->fileSaved();
    } else {
        result->value(0);
    }
}

bool GraphEditor::load(const char* fileName) {
    return gui_->openFile(withExtension(fileName).asCharPointer(), true);
}

void GraphEditor::guiLoad(Cback& cb) {
    Assoc* read = CAST(Assoc, cb.callData->asObject());
    String& error = *CAST(String, read->value());
    resetEditor();
    Object* object = read->key();
    ArrayOb* drawing = object != nil && object->isKindOf(class_ArrayOb) ? CAST(ArrayOb, object) : 0;
    if (!drawing || drawing->size() != DRAWING_SIZE)
        error = String("Bad ArrayOb in file ") + gui_->fileName();
    else
        loadDrawing(*drawing, error);
    // What the drawing did not take is the reader's to free.
    object->deepDeleteContents();
    delete object;
    if (error.size()) return;
    String refusal = relock(gui_->fileName().asCharPointer());
    if (refusal.size()) {
        gui_->showError((gui_->fileName() + refusal).asCharPointer());
        gui_->setFileName(0);
    }
}

void GraphEditor::loadDrawing(ArrayOb& drawing, String& error) {
    Object* icons = drawing[0];
    Object* semantic = drawing[1];
    if (!icons->isKindOf(class_Dictionary) || !semantic->isKindOf(class_Semantic) ||
        semantic->isA() != semantic_->isA()) {
        error = String("Bad ArrayOb in file ") + gui_->fileName();
        return;
    }
    drawing[0] = nil;
    drawing[1] = nil;
    delete icon_cltn;
    icon_cltn = CAST(Dictionary, icons);
    delete semantic_;
    semantic_ = CAST(Semantic, semantic);
    semantic_->attachEditor(*this);
    placeLoadedIcons();
    double x = CAST(Float, drawing[2])->value(), y = CAST(Float, drawing[4])->value();
    gui_->drawArea().setOrigin(FloatPoint(x * semantic_->width(), y * semantic_->height()));
    setChanged(false);
    semantic_->fileLoaded();
    gui_->refresh();
}

void GraphEditor::placeLoadedIcons() {
    OrderedCltn icons;
    icons.addContentsOf(*icon_cltn);
    for (unsigned i = 0; i < icons.size(); ++i) {
        IconNode& icon = *CAST(IconNode, icons.at(i));
        QASSERT_TEXT(icon.geoIcon()->isEmpty(), "icon->geoIcon()->isEmpty()");
        QASSERT_TEXT(icon.compositeIcon()->icons().isEmpty(), "icon->compositeIcon()->icons()->isEmpty()");
        icon.update();
        restoreComment(icon);
        // A semantic read from a binary stream has no extent: the icons give it.
        if (!icon.isKindOf(class_IconArc) && semantic_->width() > 0 && semantic_->height() > 0) {
            FloatPoint place(icon.posX(), icon.posY());
            if (semantic_->snapPosition(icon, place)) icon.setPosition(Point(int(place.x()), int(place.y())));
        }
        board_->add(icon);
        gui_->drawArea().list().add(*icon.compositeIcon());
    }
    changeBoardExtent();
}

void GraphEditor::guiNew(Cback&) {
    relock("");
    resetEditor();
    setChanged(false);
    semantic_->initialIcons(insertList);
    while (!insertList.isEmpty()) {
        IconNode& icon = *CAST(IconNode, insertList.removeFirst());
        QASSERT_TEXT(!icon_cltn->includesKey(icon.name()), "!icon_cltn->includesKey(icon->name())");
        icon.update();
        insertIcon(icon);
    }
    semantic_->fileCreated();
    gui_->refresh();
}

void GraphEditor::resetEditor() {
    OrderedCltn children;
    childEditors.addValuesTo(children);
    for (unsigned i = 0; i < children.size(); ++i) closeChild(*CAST(Editor, children.at(i)));
    select_icons.removeAll();
    modify_icons.removeAll();
    gui_->drawArea().list().removeAll();
    semantic_->clearDrawing();
    delete board_;
    board_ = new ChessBoard(semantic_->width(), semantic_->height());
    changeBoardExtent();
    OrderedCltn icons;
    icons.addContentsOf(*icon_cltn);
    icon_cltn->removeAll();
    for (unsigned i = 0; i < icons.size(); ++i) destroyIcon(CAST(IconNode, icons.at(i)));
    currentIcon_ = 0;
    history_->clear();
    updateEditMenu(0);
    gui_->redraw();
}

void GraphEditor::guiQuit(Cback&) { cbackOn(CloseEditor); }

void GraphEditor::guiPrint(Cback&) { cbackOn(PrintEditor); }
