// Semantic: the pool of parameter dialogues, the comments of icons, and the picture of a drawing for
// documents.
#include <cstring>

#include "editor/graphedt.h"
#include "editor/graphgui.h"
#include "editor/iconarc.h"
#include "editor/iconnode.h"
#include "editor/paramedt.h"
#include "editor/semantic.h"
#include "quill/assoc.h"
#include "quill/cback.h"
#include "quill/orderedc.h"
#include "quill/quillerr.h"
#include "quill/validobj.h"
#include "trellis/shell.h"

Symbol CommentKey("CommentKey");

namespace {

const Symbol* const paramEvents[] = {&ParamConfirmPressed, &ParamCancelPressed, &ParamCommentPressed,
                                     &ParamHelpPressed};

}  // namespace

ParamEditor* Semantic::newParamEditor(IconNode& icon, const char* title, OrderedCltn& labels,
                                      OrderedCltn& values) {
    CppWidget* parent = &attached().getShell();
    if (icon.isKindOf(class_ClassArc)) return new LinkParamEdt(parent, icon, labels, values, title);
    return new ParamEditor(parent, icon, labels, values, title);
}

int Semantic::modifyIcon(IconNode& icon, const char* title) {
    return openParamEditor(icon, *icon.isA(), title);
}

ParamEditor* Semantic::takeFromPool(const Class& cls) {
    Dictionary& pool = attached().paramPool();
    if (!pool.includesKey(cls)) return 0;
    Object* entry = pool.atKey(cls);
    if (entry->isKindOf(class_ParamEditor)) {
        delete pool.removeKey(cls);
        return CAST(ParamEditor, entry);
    }
    OrderedCltn* idle = CAST(OrderedCltn, entry);
    ParamEditor* dialog = CAST(ParamEditor, idle->removeLast());
    if (idle->isEmpty()) {
        delete pool.removeKey(cls);
        delete idle;
    }
    return dialog;
}

void Semantic::returnToPool(ParamEditor& dialog, const Class& cls) {
    Dictionary& pool = attached().paramPool();
    if (!pool.includesKey(cls)) {
        pool.atPut(const_cast<Class&>(cls), dialog);
        return;
    }
    Object* entry = pool.atKey(cls);
    if (entry->isKindOf(class_OrderedCltn)) {
        CAST(OrderedCltn, entry)->add(dialog);
        return;
    }
    OrderedCltn* idle = new OrderedCltn;
    idle->add(*entry);
    idle->add(dialog);
    pool.atKey(cls, *idle);
}

int Semantic::openParamEditor(IconNode& icon, const Class& cls, const char* title) {
    OrderedCltn labels, values;
    icon.getParameters(labels, values);
    if (labels.isEmpty() && values.isEmpty()) return 0;
    ParamEditor* dialog = takeFromPool(cls);
    if (dialog) {
        dialog->setTitle(title);
        dialog->setIcon(icon, labels, values);
    } else {
        dialog = newParamEditor(icon, title, labels, values);
    }
    labels.deleteContents();
    values.deleteContents();
    for (const Symbol* event : paramEvents)
        dialog->addCback(*event, cbackMethod<&Semantic::paramPressed>, *this, const_cast<Class*>(&cls));
    dialog->show();
    return 1;
}

void Semantic::paramPressed(Cback& cb) {
    ParamEditor* dialog = CAST(ParamEditor, cb.owner);
    const Class& cls = *static_cast<Class*>(cb.userData);
    IconNode* icon = dialog->icon();
    if (cb.event == ParamHelpPressed) {
        if (icon && validObject(icon)) attached().gui().help(icon->className());
        return;
    }
    dialog->stop();
    for (const Symbol* event : paramEvents)
        dialog->removeCback(*event, cbackMethod<&Semantic::paramPressed>, *this, const_cast<Class*>(&cls));
    returnToPool(*dialog, cls);
    if (!icon || !validObject(icon) || !icon->isKindOf(class_IconNode)) {
        dialog->release();
        return;
    }
    int action = 0;
    if (cb.event == ParamCommentPressed) action = icon->hasComment() ? 1 : 0;
    if (cb.event == ParamCancelPressed) action = 2;
    Point position = icon->position();
    if (position.x() != 0 || position.y() != 0) attached().gui().redraw();
    icon->setParameters(dialog->labels(), dialog->values());
    dialog->release();
    attached().paramDone(icon, action);
}

// ---------------------------------------------------------------- comments

const char* Semantic::commentIcon(IconNode& icon) {
    String title("Comment of ");
    title += icon.className();
    Assoc* data = new Assoc(CommentKey, icon);
    attached().openChildEditor("TextEditor", icon.comment().asCharPointer(), title.asCharPointer(), data);
    return 0;
}

namespace {

IconNode& commentedIcon(Object* userData) {
    Assoc* association = CAST(Assoc, userData);
    QASSERT_TEXT(association->key() == &CommentKey, "ass->key() == &commentKey");
    return *CAST(IconNode, association->value());
}

}  // namespace

void Semantic::saveComment(const char* text, Object* userData) { commentedIcon(userData).comment() = text; }

String& Semantic::loadComment(String& result, Object* userData) {
    return result = commentedIcon(userData).comment();
}

void Semantic::closeComment(Object* userData) {
    if (!userData || !userData->isKindOf(class_Assoc)) return;
    commentedIcon(userData);
    delete userData;
}
