// DynamicControl: construction, the kind words, the cycle and the stream form.
#include "gui/dynctrl.h"

#include <cstring>
#include <ostream>

#include "quill/objalloc.h"
#include "quill/objio.h"
#include "quill/quillerr.h"

DEFINE_CLASS(DynamicControl, Object, 1, 0)

namespace {

// ORDER DynamicControl::Kind
const char* const kindWords[] = {"command", "cycle", "toggle",    "text",  "number",  "label", "value",
                                 "slider",  "level", "histogram", "trend", "console", "group"};
static_assert(sizeof kindWords / sizeof *kindWords == DynamicControl::KINDS, "a word for every kind");

// Numbers of the text form are followed by a blank; the binary form has its widths.
template <class Number>
void put(std::ostream& os, Number n) {
    os << n << ' ';
}
template <class Number>
void put(BinOstream& os, Number n) {
    os << n;
}

// The kind: its word, quoted, in the text form; its number in the binary form.
void putKind(std::ostream& os, DynamicControl::Kind kind) {
    const char* word = DynamicControl::kindWord(kind);
    writeQuoted(os, word, unsigned(std::strlen(word)));
    os << ' ';
}
void putKind(BinOstream& os, DynamicControl::Kind kind) { os << int(kind); }

// An unknown kind raises BAD_PANEL.
int checkedKind(int kind, const char* word, const String& name) {
    if (kind < 0 || kind >= DynamicControl::KINDS)
        setError(GENERICERR, SEV_ERROR, "BAD_PANEL", "unknown kind of control ", word,
                 formatText(" for %s", name.asCharPointer()));
    return kind;
}
int getKind(std::istream& is, const String& name) {
    unsigned length = 0, alloc = 16;
    char* word = readQuoted(is, &length, &alloc);
    int kind = DynamicControl::kindOfWord(word);
    String text(word);
    objectFree(word);
    return checkedKind(kind, text.asCharPointer(), name);
}
int getKind(BinIstream& is, const String& name) {
    int kind = readNumber<int>(is);
    return checkedKind(kind, formatText("%d", kind), name);
}

}  // namespace

DynamicControl::DynamicControl() : DynamicControl("", LABEL, 0, 0, 1, 1) {}

DynamicControl::DynamicControl(const char* name, Kind kind, int x, int y, int width, int height,
                               const char* label, const char* value)
    : name_(name),
      kind_(kind),
      label_(label),
      value_(value),
      x_(x),
      y_(y),
      width_(width),
      height_(height),
      labelWidth_(0),
      minimum_(0.0),
      maximum_(1.0) {}

DynamicControl::DynamicControl(const DynamicControl& c)
    : Object(c),
      name_(c.name_),
      kind_(c.kind_),
      label_(c.label_),
      value_(c.value_),
      x_(c.x_),
      y_(c.y_),
      width_(c.width_),
      height_(c.height_),
      labelWidth_(c.labelWidth_),
      minimum_(c.minimum_),
      maximum_(c.maximum_),
      foreground_(c.foreground_),
      background_(c.background_) {
    for (unsigned i = 0; i < c.cycle_.size(); ++i)
        cycle_.add(*new String(*CAST(String, c.cycle_.at(int(i)))));
}

DynamicControl::DynamicControl(std::istream& is, Object* where) : Object(is, where) { readFields(is); }

DynamicControl::DynamicControl(BinIstream& is, Object* where) : Object(is, where) { readFields(is); }

DynamicControl::~DynamicControl() noexcept(false) { cycle_.deleteContents(); }

template <class Stream>
void DynamicControl::readFields(Stream& is) {
    readFrom(is, class_String, &name_);
    kind_ = Kind(getKind(is, name_));
    readFrom(is, class_String, &label_);
    readFrom(is, class_String, &value_);
    int* numbers[] = {&x_, &y_, &width_, &height_, &labelWidth_};
    for (int* n : numbers) *n = readNumber<int>(is);
    readFrom(is, class_OrderedCltn, &cycle_);
    minimum_ = readNumber<double>(is);
    maximum_ = readNumber<double>(is);
    readFrom(is, class_String, &foreground_);
    readFrom(is, class_String, &background_);
}

template <class Stream>
void DynamicControl::storeFields(Stream& os) const {
    Object::storer(os);
    name_.storeOn(os);
    putKind(os, kind_);
    label_.storeOn(os);
    value_.storeOn(os);
    for (int n : {x_, y_, width_, height_, labelWidth_}) put(os, n);
    cycle_.storeOn(os);
    put(os, minimum_);
    put(os, maximum_);
    foreground_.storeOn(os);
    background_.storeOn(os);
}

void DynamicControl::storer(std::ostream& os) const { storeFields(os); }

void DynamicControl::storer(BinOstream& os) const { storeFields(os); }

bool DynamicControl::isEqual(const Object& ob) const {
    if (!ob.isKindOf(class_DynamicControl)) return false;
    const DynamicControl& c = static_cast<const DynamicControl&>(ob);
    return name_.isEqual(c.name_) && kind_ == c.kind_ && label_.isEqual(c.label_) &&
           value_.isEqual(c.value_) && x_ == c.x_ && y_ == c.y_ && width_ == c.width_ &&
           height_ == c.height_ && labelWidth_ == c.labelWidth_ && cycle_.isEqual(c.cycle_) &&
           minimum_ == c.minimum_ && maximum_ == c.maximum_ && foreground_.isEqual(c.foreground_) &&
           background_.isEqual(c.background_);
}

void DynamicControl::printOn(std::ostream& os) const {
    os << name_ << " (" << kindWord(kind_) << ") = " << value_;
}

const char* DynamicControl::kindWord(Kind kind) { return kindWords[kind]; }

int DynamicControl::kindOfWord(const char* word) {
    for (int k = 0; k < KINDS; ++k)
        if (std::strcmp(kindWords[k], word) == 0) return k;
    return -1;
}

DynamicControl& DynamicControl::setCycle(std::initializer_list<const char*> values) {
    cycle_.deleteContents();
    for (const char* v : values) cycle_.add(*new String(v));
    if (value_.size() == 0 && cycle_.size() > 0) value_ = *CAST(String, cycle_.at(0));
    return *this;
}

String DynamicControl::nextInCycle() const {
    if (cycle_.size() == 0) return value_;
    int here = cycle_.indexOf(value_);
    return *CAST(String, cycle_.at(int((here + 1) % int(cycle_.size()))));
}

DynamicControl& DynamicControl::setCaption(int width) {
    labelWidth_ = width;
    return *this;
}

DynamicControl& DynamicControl::setRange(double minimum, double maximum) {
    minimum_ = minimum;
    maximum_ = maximum;
    return *this;
}

DynamicControl& DynamicControl::setColours(const char* foreground, const char* background) {
    foreground_ = foreground;
    background_ = background;
    return *this;
}
