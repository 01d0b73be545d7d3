// EditHistory: gestures kept as fragments of the drawing before and after, and their undo and redo.
#include "editor/edthist.h"

#include "editor/fragment.h"
#include "editor/graphedt.h"
#include "editor/iconarc.h"
#include "editor/iconnode.h"
#include "quill/dictnary.h"

EditHistory::Step EditHistory::snapshot(const char* gesture, const OrderedCltn& touched) const {
    Step step;
    step.gesture = gesture;
    OrderedCltn icons;
    icons.addContentsOf(touched);
    capture(icons, step.beforeNames, step.before);
    return step;
}

void EditHistory::begin(const char* gesture, const OrderedCltn& touched) {
    current = snapshot(gesture, touched);
    createdNames.clear();
    open = true;
}

void EditHistory::begin(const char* gesture) { begin(gesture, OrderedCltn()); }

void EditHistory::created(IconNode& icon) {
    if (open) createdNames.push_back(icon.name().asCharPointer());
}

void EditHistory::cancel() { open = false; }

void EditHistory::capture(OrderedCltn& icons, std::vector<std::string>& names, std::string& text) const {
    withLinks(icons);
    names.clear();
    for (unsigned i = 0; i < icons.size(); ++i)
        names.push_back(CAST(IconNode, icons.at(i))->name().asCharPointer());
    text = icons.isEmpty() ? std::string() : std::string(fragmentText(icons).asCharPointer());
}

void EditHistory::end() {
    if (!open) return;
    open = false;
    record(current, createdNames);
}

void EditHistory::record(Step step, const std::vector<std::string>& created) {
    Dictionary& drawing = editor.editorIcons();
    OrderedCltn icons;
    std::vector<std::string> names = step.beforeNames;
    names.insert(names.end(), created.begin(), created.end());
    for (const std::string& name : names) {
        Object* icon = drawing.assocAt(String(name.c_str()));
        if (icon != nil && icons.indexOfSame(*icon) < 0) icons.add(*icon);
    }
    capture(icons, step.afterNames, step.after);
    if (step.before == step.after) return;
    done.push_back(step);
    if (done.size() > DEPTH) done.pop_front();
    undone.clear();
}

bool EditHistory::undo() {
    if (done.empty()) return false;
    Step step = done.back();
    done.pop_back();
    replace(step.afterNames, step.before);
    undone.push_back(step);
    return true;
}

bool EditHistory::redo() {
    if (undone.empty()) return false;
    Step step = undone.back();
    undone.pop_back();
    replace(step.beforeNames, step.after);
    done.push_back(step);
    return true;
}

std::string EditHistory::nextUndo() const { return done.empty() ? std::string() : done.back().gesture; }

void EditHistory::clear() {
    open = false;
    done.clear();
    undone.clear();
}

// Links go first, then the nodes: a node's links are all in the set.
void EditHistory::replace(const std::vector<std::string>& goes, const std::string& comes) {
    Dictionary& drawing = editor.editorIcons();
    for (int pass = 0; pass < 2; ++pass)
        for (const std::string& name : goes) {
            Object* found = drawing.assocAt(String(name.c_str()));
            if (found == nil || found->isKindOf(class_IconArc) != (pass == 0)) continue;
            IconNode& icon = *static_cast<IconNode*>(found);
            editor.removeIcon(icon);
            if (pass == 0) editor.detachLink(*static_cast<IconArc*>(found));
            editor.destroyIcon(&icon);
        }
    if (!comes.empty()) editor.restoreFragment(comes.c_str());
    editor.setChanged();
}
