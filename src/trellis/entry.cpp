// Menu entries: label, identity, accelerator, translation and key sequence.
#include "trellis/entry.h"

#include <QKeySequence>
#include <cstring>
#include <initializer_list>

#include "quill/substrng.h"
#include "trellis/qtext.h"

namespace {

// The part of entry before (before set) or after the first bar.
String entryPart(const char* entry, bool before) {
    const char* text = entry ? entry : "";
    const char* bar = std::strchr(text, '|');
    if (before) return String(bar ? std::string(text, bar).c_str() : text).stripBoth();
    return String(bar ? bar + 1 : "").stripBoth();
}

const char* modifierWord(const String& word) {
    String upper = word.toUpper();
    if (upper == "ALT" || upper == "META") return "Meta";
    if (upper == "CTRL") return "Ctrl";
    if (upper == "SHIFT") return "Shift";
    return 0;
}

}  // namespace

String entryLabel(const char* entry) { return entryPart(entry, true); }

String entryIdentity(const char* entry) {
    String label = entryLabel(entry), identity;
    for (unsigned i = 0; i < label.size(); ++i)
        if (label[i] != '&') identity += label[i];
    return identity;
}

String entryAccelerator(const char* entry) {
    String accelerator = entryPart(entry, false);
    int percent = accelerator.index("%");
    return percent < 0 ? accelerator : String(accelerator(percent + 1)).stripBoth();
}

String acceleratorTranslation(const char* accelerator) {
    String text = String(accelerator ? accelerator : "").stripBoth();
    if (text.size() == 0) return text;
    // Every word before the last "+" is a modifier; the last one is the key.
    String modifiers;
    for (int plus = text.index("+"); plus > 0; plus = text.index("+")) {
        String word = String(text(0, plus)).stripBoth();
        const char* modifier = modifierWord(word);
        if (modifiers.size()) modifiers += " ";
        modifiers += modifier ? String(modifier) : word;
        text = String(text(plus + 1)).stripBoth();
    }
    return modifiers + "<Key>" + text;
}

String translationKeys(const char* translation) {
    String text(translation ? translation : "");
    int key = text.index("<Key>");
    if (key < 0) return String();
    String modifiers = String(text(0, key)), keys;
    for (const char* name : {"Ctrl", "Meta", "Shift"})
        if (modifiers.index(name) >= 0)
            keys += std::strcmp(name, "Meta") == 0 ? "Alt+" : formatText("%s+", name);
    keys += String(text(key + 5));
    return fromQt(QKeySequence(toQt(keys), QKeySequence::PortableText).toString(QKeySequence::PortableText));
}
