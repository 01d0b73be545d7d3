// BaseStateTransSem: the parameter dialogues of model nodes and links, page by page.
#include "model/bstsem.h"

#include <cstdio>
#include <cstring>

#include "editor/graphedt.h"
#include "editor/graphgui.h"
#include "editor/iconnode.h"
#include "editor/paramedt.h"
#include "model/modelnode.h"
#include "model/stticon.h"
#include "model/sttrlink.h"
#include "quill/cback.h"
#include "quill/dictnary.h"
#include "quill/orderedc.h"
#include "quill/validobj.h"
#include "trellis/shell.h"

DEFINE_CLASS(BaseStateTransSem, Semantic, 1, 0)

namespace {

const Symbol* const paramEvents[] = {&ParamConfirmPressed, &ParamCancelPressed, &ParamCommentPressed,
                                     &ParamHelpPressed};

bool startsWith(const String& text, const char* prefix) {
    return strncmp(text.asCharPointer(), prefix, strlen(prefix)) == 0;
}

}  // namespace

bool hasModelParameters(IconNode& icon) {
    return icon.isKindOf(class_ModelNode) || icon.isKindOf(class_StateTransIcon) ||
           icon.isKindOf(class_StateTransLink);
}

int iconParameters(IconNode& icon, int mode, OrderedCltn& labels, OrderedCltn& values, int& count) {
    if (icon.isKindOf(class_ModelNode))
        return static_cast<ModelNode&>(icon).iconParameters(mode, labels, values, count);
    if (icon.isKindOf(class_StateTransIcon))
        return static_cast<StateTransIcon&>(icon).iconParameters(mode, labels, values, count);
    return static_cast<StateTransLink&>(icon).iconParameters(mode, labels, values, count);
}

String checkParameters(IconNode& icon, int mode, const OrderedCltn& values, int& status) {
    if (icon.isKindOf(class_ModelNode))
        return static_cast<ModelNode&>(icon).checkParameters(mode, values, status);
    if (icon.isKindOf(class_StateTransIcon))
        return static_cast<StateTransIcon&>(icon).checkParameters(mode, values, status);
    return static_cast<StateTransLink&>(icon).checkParameters(mode, values, status);
}

BaseStateTransSem::CheckOutcome BaseStateTransSem::outcomeOf(const String& message) {
    if (message.size() == 0) return Accept;
    if (startsWith(message, "Warning\n")) return AcceptAfterWarning;
    if (startsWith(message, "Error\n")) return AskToIgnore;
    return Refuse;
}

int BaseStateTransSem::modifyIcon(IconNode& icon, const char* title) {
    if (!hasModelParameters(icon)) return Semantic::modifyIcon(icon, title);
    return openSemanticParamEditor(icon, 0, title);
}

String BaseStateTransSem::stateMachineKey(IconNode& icon, int mode) {
    char page[16];
    snprintf(page, sizeof page, "%d", mode);
    return String(icon.className()) + page;
}

ParamEditor* BaseStateTransSem::newSemanticParamEditor(IconNode& icon, const char* title, OrderedCltn& labels,
                                                       OrderedCltn& values) {
    return new ParamEditor(&graphEditor()->getShell(), icon, labels, values, title);
}

int BaseStateTransSem::openSemanticParamEditor(IconNode& icon, int mode, const char* title) {
    OrderedCltn labels, values;
    int count = 0;
    if (!::iconParameters(icon, 0, labels, values, count) || labels.isEmpty()) return 0;
    Dictionary& pool = graphEditor()->paramPool();
    String key = stateMachineKey(icon, mode);
    ParamEditor* dialog = 0;
    if (pool.includesKey(key)) {
        dialog = CAST(ParamEditor, pool.atKey(key));
        dialog->setTitle(title);
        dialog->setIcon(icon, labels, values);
    } else {
        dialog = newSemanticParamEditor(icon, title, labels, values);
        pool.atPut(*new String(key), *dialog);
    }
    labels.deleteContents();
    values.deleteContents();
    pages[dialog] = mode;
    connect(*dialog, true);
    dialog->show();
    return 1;
}

void BaseStateTransSem::connect(ParamEditor& dialog, bool on) {
    for (const Symbol* event : paramEvents) {
        if (on)
            dialog.addCback(*event, cbackMethod<&BaseStateTransSem::modelParamPressed>, *this);
        else
            dialog.removeCback(*event, cbackMethod<&BaseStateTransSem::modelParamPressed>, *this);
    }
}

bool BaseStateTransSem::confirmed(IconNode& icon, int mode, ParamEditor& dialog) {
    int status = 0;
    String message = ::checkParameters(icon, mode, dialog.values(), status);
    switch (outcomeOf(message)) {
        case Accept:
            return true;
        case AcceptAfterWarning:
            showWarning(message.asCharPointer());
            return true;
        case AskToIgnore:
            return askQuestion(message.asCharPointer());
        case Refuse:
            showError(message.asCharPointer());
            return false;
    }
    return false;
}

void BaseStateTransSem::modelParamPressed(Cback& cb) {
    ParamEditor* dialog = CAST(ParamEditor, cb.owner);
    int mode = pages[dialog];
    IconNode* icon = dialog->icon();
    bool alive = icon && validObject(icon) && icon->isKindOf(class_IconNode);
    if (cb.event == ParamHelpPressed) {
        if (alive) graphEditor()->gui().help(icon->className());
        return;
    }
    bool confirm = cb.event != ParamCancelPressed;
    if (alive && confirm && !confirmed(*icon, mode, *dialog)) return;  // the dialogue stays up
    dialog->stop();
    connect(*dialog, false);
    pages.erase(dialog);
    if (!alive) {
        dialog->release();
        return;
    }
    int count = 0, action = confirm ? 0 : 2;
    if (confirm) {
        if (cb.event == ParamCommentPressed && icon->hasComment()) action = 1;
        ::iconParameters(*icon, 1, dialog->labels(), dialog->values(), count);
    }
    dialog->release();
    graphEditor()->paramDone(icon, action);
    if (confirm && count > 0) openSemanticParamEditor(*icon, mode + 1, icon->name().asCharPointer());
}
