// CppText over QLineEdit or QPlainTextEdit, with byte positions in the UTF-8 text.
#include "trellis/text.h"

#include <QFontDatabase>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextCursor>

#include "quill/cback.h"
#include "trellis/qtext.h"

DEFINE_ABSTRACT_CLASS(CppText, CppPrimitive, 1, 0)

Symbol CppTextChanged("CppTextChanged");
Symbol CppTextActivated("CppTextActivated");

namespace {

// Qt counts UTF-16 units; the toolkit counts bytes of UTF-8.
int qtPosition(const QString& text, int bytes) {
    QByteArray utf8 = text.toUtf8();
    if (bytes < 0) bytes = 0;
    if (bytes > utf8.size()) bytes = utf8.size();
    return QString::fromUtf8(utf8.constData(), bytes).size();
}

int bytePosition(const QString& text, int position) { return text.left(position).toUtf8().size(); }

}  // namespace

CppText::CppText(const char* name, CppWidget* parent, bool multiLine, int rows, int columns, bool managed)
    : CppPrimitive(name, parent, managed), multiLine(multiLine), rows(rows), columns(columns) {
    if (multiLine) {
        QPlainTextEdit* edit = new QPlainTextEdit(parentContainer());
        edit->setLineWrapMode(QPlainTextEdit::NoWrap);
        // Panes hold program texts and console output: their columns line up.
        edit->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
        setHandle(edit);
        QObject::connect(edit, &QPlainTextEdit::textChanged, [this] { cbackOn(CppTextChanged); });
    } else {
        QLineEdit* edit = new QLineEdit(parentContainer());
        edit->setMaxLength(1 << 24);
        setHandle(edit);
        QObject::connect(edit, &QLineEdit::textChanged, [this] { cbackOn(CppTextChanged); });
        QObject::connect(edit, &QLineEdit::returnPressed, [this] { cbackOn(CppTextActivated); });
    }
}

QLineEdit* CppText::line() const { return static_cast<QLineEdit*>(handle()); }

QPlainTextEdit* CppText::pane() const { return static_cast<QPlainTextEdit*>(handle()); }

void CppText::setText(const char* text) {
    if (multiLine)
        pane()->setPlainText(toQt(text));
    else
        line()->setText(toQt(text));
}

String CppText::getText() const { return fromQt(multiLine ? pane()->toPlainText() : line()->text()); }

void CppText::append(const char* text) {
    if (!multiLine) {
        line()->setText(line()->text() + toQt(text));
        return;
    }
    QTextCursor end(pane()->document());
    end.movePosition(QTextCursor::End);
    end.insertText(toQt(text));
    pane()->ensureCursorVisible();
}

void CppText::setReadOnly(bool readOnly) {
    if (multiLine)
        pane()->setReadOnly(readOnly);
    else
        line()->setReadOnly(readOnly);
}

bool CppText::isReadOnly() const { return multiLine ? pane()->isReadOnly() : line()->isReadOnly(); }

void CppText::setTabMovesFocus(bool flag) {
    if (multiLine) pane()->setTabChangesFocus(flag);
}

int CppText::caret() const {
    if (!multiLine) return bytePosition(line()->text(), line()->cursorPosition());
    return bytePosition(pane()->toPlainText(), pane()->textCursor().position());
}

void CppText::setCaret(int position) {
    if (!multiLine) {
        line()->setCursorPosition(qtPosition(line()->text(), position));
        return;
    }
    QTextCursor cursor = pane()->textCursor();
    cursor.setPosition(qtPosition(pane()->toPlainText(), position));
    pane()->setTextCursor(cursor);
    pane()->ensureCursorVisible();
}

void CppText::select(int start, int length) {
    if (!multiLine) {
        QString text = line()->text();
        int from = qtPosition(text, start);
        line()->setSelection(from, qtPosition(text, start + length) - from);
        return;
    }
    QString text = pane()->toPlainText();
    QTextCursor cursor = pane()->textCursor();
    cursor.setPosition(qtPosition(text, start));
    cursor.setPosition(qtPosition(text, start + length), QTextCursor::KeepAnchor);
    pane()->setTextCursor(cursor);
    pane()->ensureCursorVisible();
}

bool CppText::hasSelection() const {
    return multiLine ? pane()->textCursor().hasSelection() : line()->hasSelectedText();
}

int CppText::selectionStart() const {
    if (!hasSelection()) return caret();
    if (!multiLine) return bytePosition(line()->text(), line()->selectionStart());
    return bytePosition(pane()->toPlainText(), pane()->textCursor().selectionStart());
}

String CppText::selectedText() const {
    if (!multiLine) return fromQt(line()->selectedText());
    return fromQt(pane()->textCursor().selectedText().replace(QChar::ParagraphSeparator, QChar('\n')));
}

void CppText::replaceSelection(const char* text) {
    if (!multiLine) {
        line()->insert(toQt(text));
        return;
    }
    pane()->textCursor().insertText(toQt(text));
}

void CppText::cut() {
    if (multiLine)
        pane()->cut();
    else
        line()->cut();
}

void CppText::copy() {
    if (multiLine)
        pane()->copy();
    else
        line()->copy();
}

void CppText::paste() {
    if (multiLine)
        pane()->paste();
    else
        line()->paste();
}

void CppText::undo() {
    if (multiLine)
        pane()->undo();
    else
        line()->undo();
}

void CppText::sizeToFit() {
    if (sizedByProgram) return;
    int width, height;
    textSize("", columns, rows - 1, width, height);
    // Room for the frame, and for the scroll bar of a pane.
    int frame = multiLine ? 24 : 10;
    handle()->resize(width + frame, multiLine ? height + frame : handle()->sizeHint().height());
}
