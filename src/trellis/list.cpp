// CppList over QListWidget, ComboBox over QComboBox.
#include "trellis/list.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>

#include "quill/cback.h"
#include "trellis/qtext.h"

DEFINE_ABSTRACT_CLASS(CppList, CppPrimitive, 1, 0)
DEFINE_ABSTRACT_CLASS(ComboBox, CppPrimitive, 1, 0)

Symbol ListCback("ListCback");
Symbol ListActivated("ListActivated");
Symbol ComboBoxChanged("ComboBoxChanged");

namespace {

void raiseIndex(Object& ob, const Symbol& event, int index) {
    CallData data(index);
    ob.cbackOn(event, &data);
}

}  // namespace

// CppList

CppList::CppList(const char* name, CppWidget* parent, int rows, int columns)
    : CppPrimitive(name, parent), rows(rows), columns(columns) {
    QListWidget* list = new QListWidget(parentContainer());
    setHandle(list);
    QObject::connect(list, &QListWidget::currentRowChanged, [this](int row) {
        if (row >= 0) raiseIndex(*this, ListCback, row);
    });
    QObject::connect(list, &QListWidget::itemActivated, [this, list](QListWidgetItem* item) {
        raiseIndex(*this, ListActivated, list->row(item));
    });
}

void CppList::activate(int index) {
    select(index);
    raiseIndex(*this, ListActivated, index);
}

void CppList::addItem(const char* text) { static_cast<QListWidget*>(handle())->addItem(toQt(text)); }

void CppList::removeAll() { static_cast<QListWidget*>(handle())->clear(); }

int CppList::itemCount() const { return static_cast<QListWidget*>(handle())->count(); }

String CppList::itemText(int index) const {
    QListWidgetItem* item = static_cast<QListWidget*>(handle())->item(index);
    return item ? fromQt(item->text()) : String();
}

void CppList::select(int index) { static_cast<QListWidget*>(handle())->setCurrentRow(index); }

int CppList::selectedIndex() const { return static_cast<QListWidget*>(handle())->currentRow(); }

void CppList::sizeToFit() {
    if (sizedByProgram) return;
    int width, height;
    textSize("", columns, rows - 1, width, height);
    handle()->resize(width + 24, height + 8);
}

// ComboBox

ComboBox::ComboBox(const char* name, CppWidget* parent, bool editable) : CppPrimitive(name, parent) {
    QComboBox* box = new QComboBox(parentContainer());
    box->setEditable(editable);
    box->setInsertPolicy(QComboBox::NoInsert);
    setHandle(box);
    QObject::connect(box, QOverload<int>::of(&QComboBox::activated),
                     [this](int index) { raiseIndex(*this, ComboBoxChanged, index); });
    if (editable)
        QObject::connect(box->lineEdit(), &QLineEdit::returnPressed,
                         [this] { raiseIndex(*this, ComboBoxChanged, -1); });
}

void ComboBox::addItem(const char* text) { static_cast<QComboBox*>(handle())->addItem(toQt(text)); }

void ComboBox::removeAll() { static_cast<QComboBox*>(handle())->clear(); }

int ComboBox::itemCount() const { return static_cast<QComboBox*>(handle())->count(); }

String ComboBox::itemText(int index) const {
    return fromQt(static_cast<QComboBox*>(handle())->itemText(index));
}

String ComboBox::text() const { return fromQt(static_cast<QComboBox*>(handle())->currentText()); }

void ComboBox::setText(const char* text) { static_cast<QComboBox*>(handle())->setCurrentText(toQt(text)); }

int ComboBox::currentIndex() const { return static_cast<QComboBox*>(handle())->currentIndex(); }

void ComboBox::setCurrentIndex(int index) { static_cast<QComboBox*>(handle())->setCurrentIndex(index); }
