// The system clipboard's text through the application's QClipboard.
#include "trellis/clipbrd.h"

#include <QApplication>
#include <QClipboard>

bool setClipboardText(const char* text) {
    QClipboard* clipboard = QApplication::clipboard();
    if (!clipboard) return false;
    clipboard->setText(QString::fromUtf8(text));
    return true;
}

String clipboardText() {
    QClipboard* clipboard = QApplication::clipboard();
    if (!clipboard) return String();
    return String(clipboard->text().toUtf8().constData());
}
