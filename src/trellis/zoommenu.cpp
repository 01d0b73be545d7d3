// ZoomMenu's entries and the dialogue that asks for a zoom in percent.
#include "trellis/zoommenu.h"

#include <cstdlib>
#include <cstring>

#include "quill/cback.h"
#include "trellis/form.h"
#include "trellis/formdlg.h"
#include "trellis/menu.h"
#include "trellis/scrollb.h"
#include "trellis/text.h"

DEFINE_ABSTRACT_CLASS(ZoomMenu, Object, 1, 0)

Symbol Zoomed("Zoomed");

namespace {

const char* const zoomEntries[] = {
    "&Zoom In   | Alt+K",  "Zoo&m Out  | Alt+M",  "&Zoom at... | Alt+Z", "Zoom 10:&1  | Alt+1",
    "Zoom 10:&2  | Alt+2", "Zoom 10:&3  | Alt+3", "Zoom 10:&4  | Alt+4", "Zoom 10:&5  | Alt+5",
    "Zoom 10:&6  | Alt+6", "Zoom 10:&7  | Alt+7", "Zoom 10:&8  | Alt+8", "Zoom 10:&9  | Alt+9",
    "Zoom 10:&10 | Alt+0",
};

// The text field and the scroll bar of the dialogue show the same number.
void scrollMoved(Cback& cb) {
    CppText& text = *CAST(CppText, cb.userData);
    text.setText(formatText("%d", cb.callData->asInt()));
}

}  // namespace

ZoomMenu::ZoomMenu(Object& owner, MotifMenu& menu, CppWidget* dialogParent)
    : owner(owner), menu(menu), dialogParent(dialogParent), current(1.0) {
    for (const char* entry : zoomEntries) menu.addChoice(entry);
    menu.addCback(MenuPressed, cbackMethod<&ZoomMenu::menuPressed>, *this);
}

void ZoomMenu::setZoom(double zoom) {
    if (zoom <= 0) return;
    current = zoom;
    CallData data(current);
    owner.cbackOn(Zoomed, &data);
}

void ZoomMenu::menuPressed(Cback& cb) {
    String choice = menu.choiceOf(cb);
    if (choice == "Zoom In")
        setZoom(current * 2);
    else if (choice == "Zoom Out")
        setZoom(current / 2);
    else if (choice == "Zoom at...")
        setZoom(askZoom() / 100.0);
    else if (choice.index("Zoom 10:") == 0)
        setZoom(std::atoi(choice.asCharPointer() + std::strlen("Zoom 10:")) / 10.0);
}

int ZoomMenu::askZoom() {
    ParamDialog dialog("Zoom Dialog", dialogParent, "Zoom At", 300);
    CppText& text =
        dialog.addRow("Zoom 100 to x, Insert x >", formatText("%d", int(current * 100)), "ZoomText");
    CppScrollbar* scroll = new CppScrollbar("ZoomScroll", &dialog.form());
    scroll->setRange(1, 1000, 10);
    scroll->setValue(int(current * 100));
    dialog.addUnderRows(*scroll);
    scroll->addCback(CppScrollbarChanged, scrollMoved, &text);
    dialog.helpButton().unmanage();
    if (dialog.ask() != 1) return 0;
    return std::atoi(text.getText().asCharPointer());
}
