// BaseStateTransSem, the kind of drawing shared by the model editors: the parameter dialogues of
// model nodes and links, which check what the person typed before the icon takes it.
#ifndef MODEL_BSTSEM_H
#define MODEL_BSTSEM_H

#include <map>

#include "editor/semantic.h"

class Cback;
class ParamEditor;

extern Class class_BaseStateTransSem;

class BaseStateTransSem : public Semantic {
    DECLARE_MEMBERS(BaseStateTransSem)
public:
    BaseStateTransSem() {}
    BaseStateTransSem(std::istream& is, Object* where) : Semantic(is, where) {}
    BaseStateTransSem(BinIstream& is, Object* where) : Semantic(is, where) {}

    // A model node or link opens its own dialogue, page 0; anything else goes the base way.
    int modifyIcon(IconNode& icon, const char* title) override;

    // The key of an icon's dialogue for a page: the class name and the page.
    virtual String stateMachineKey(IconNode& icon, int mode);
    // Opens the dialogue of the page mode, filled by the icon; 0 when it has no rows.
    virtual int openSemanticParamEditor(IconNode& icon, int mode, const char* title);
    virtual ParamEditor* newSemanticParamEditor(IconNode& icon, const char* title, OrderedCltn& labels,
                                                OrderedCltn& values);

    // The end of a dialogue: help, confirm with the icon's check, or cancel.
    void modelParamPressed(Cback& cb);

    // Which answer a confirmed dialogue gets from the icon's check: keep the values (after a
    // warning, or an error the person chose to ignore), or stay open.
    enum CheckOutcome { Accept, AcceptAfterWarning, AskToIgnore, Refuse };
    static CheckOutcome outcomeOf(const String& message);

private:
    // The icon's answer to a confirm: true when the dialogue may close.
    bool confirmed(IconNode& icon, int mode, ParamEditor& dialog);
    void connect(ParamEditor& dialog, bool on);

    std::map<ParamEditor*, int> pages;  // the page each open dialogue shows
};

// The two parameter operations that model nodes and links share, reached through either class.
int iconParameters(IconNode& icon, int mode, OrderedCltn& labels, OrderedCltn& values, int& count);
String checkParameters(IconNode& icon, int mode, const OrderedCltn& values, int& status);
bool hasModelParameters(IconNode& icon);

#endif
