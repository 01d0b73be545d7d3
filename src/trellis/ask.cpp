// The dialogue seam: an answerer, the platform's boxes, or the terminal without a screen.
#include "trellis/ask.h"

#include <QApplication>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMessageBox>
#include <iostream>

#include "quill/quillstr.h"
#include "trellis/qtext.h"

namespace {

DialogAnswerer* current = 0;

bool headless() { return QGuiApplication::platformName() == QLatin1String("offscreen"); }

QWidget* activeWindow() { return QApplication::activeWindow(); }

}  // namespace

DialogAnswerer* setDialogAnswerer(DialogAnswerer* answerer) {
    DialogAnswerer* former = current;
    current = answerer;
    return former;
}

void showMessage(const char* text, const char* title, int kind) {
    if (current) return current->message(kind, title, text);
    if (headless()) {
        std::cerr << title << ": " << text << std::endl;
        return;
    }
    QMessageBox::Icon icon = kind == MESSAGE_ERROR     ? QMessageBox::Critical
                             : kind == MESSAGE_WARNING ? QMessageBox::Warning
                                                       : QMessageBox::Information;
    QMessageBox box(icon, toQt(title), toQt(text), QMessageBox::Ok, activeWindow());
    box.exec();
}

bool askQuestion(const char* text, const char* title, bool byDefault) {
    if (current) return current->question(title, text, byDefault);
    if (headless()) {
        std::cerr << title << ": " << text << " " << (byDefault ? "yes" : "no") << std::endl;
        return byDefault;
    }
    QMessageBox box(QMessageBox::Question, toQt(title), toQt(text), QMessageBox::Yes | QMessageBox::No,
                    activeWindow());
    box.setDefaultButton(byDefault ? QMessageBox::Yes : QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

bool askFileName(String& name, const char* title, const char* prompt, const char* filter, bool forSave) {
    if (current) return current->fileName(title, prompt, filter, forSave, name);
    if (headless()) return false;
    QString patterns = filter && *filter ? QString("*%1 (*%1);;* (*)").arg(toQt(filter)) : QString("* (*)");
    QFileDialog dialog(activeWindow(), toQt(title), QString(), patterns);
    dialog.setLabelText(QFileDialog::FileName, toQt(prompt));
    dialog.setAcceptMode(forSave ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(forSave ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (name.size() > 0) dialog.selectFile(toQt(name));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return false;
    name = fromQt(dialog.selectedFiles().first());
    return true;
}

bool askDirectory(String& name, const char* title, const char* prompt) {
    if (current) return current->fileName(title, prompt, "", false, name);
    if (headless()) return false;
    QFileDialog dialog(activeWindow(), toQt(title), toQt(name));
    dialog.setLabelText(QFileDialog::FileName, toQt(prompt));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return false;
    name = fromQt(dialog.selectedFiles().first());
    return true;
}
