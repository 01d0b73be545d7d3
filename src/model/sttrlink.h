// StateTransLink, the common link of the model editors, with the dialogue operations of their icons.
#ifndef MODEL_STTRLINK_H
#define MODEL_STTRLINK_H

#include "editor/iconarc.h"
#include "quill/quillstr.h"

extern Class class_StateTransLink;

class StateTransLink : public IconArc {
    DECLARE_MEMBERS(StateTransLink)
public:
    StateTransLink() {}
    StateTransLink(std::istream& is, Object* where) : IconArc(is, where) {}
    StateTransLink(BinIstream& is, Object* where) : IconArc(is, where) {}

    int lastEditMode() const { return editMode; }

    // As those of ModelNode: mode 0 fills the dialogue's rows, mode 1 applies
    // what checkParameters stored. The base keeps the mode and answers 0.
    virtual int iconParameters(int mode, OrderedCltn& labels, OrderedCltn& values, int& count);
    // The base answers an empty text.
    virtual String checkParameters(int mode, const OrderedCltn& values, int& status);
    String& iconDescription(String& result) override;

private:
    int editMode = 0;
};

#endif
