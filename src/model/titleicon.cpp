// TitleIcon: the title's picture, stream form, dialogue and name lists.
#include "model/titleicon.h"

#include <cstdlib>
#include <cstring>
#include <ostream>

#include "quill/objio.h"
#include "trellis/drawprim.h"

DEFINE_CLASS(TitleIcon, ModelNode, 1, 0)

namespace {

const char* const DEFAULT_NAME = "TITLE";
const char* const CONTINUOUS = "Continuous System";
const char* const DISCRETE = "Discrete System ";

}  // namespace

TitleIcon::TitleIcon(const char* baseName) : systemLabel_(CONTINUOUS) {
    setTitleName(baseName ? baseName : "");
    setDeletable(false);
}

TitleIcon::TitleIcon(std::istream& is, Object* where) : ModelNode(is, where) { readFields(is); }

TitleIcon::TitleIcon(BinIstream& is, Object* where) : ModelNode(is, where) { readFields(is); }

template <class Stream>
void TitleIcon::readFields(Stream& is) {
    String name;
    readFrom(is, class_String, &name);
    readFrom(is, class_String, &systemLabel_);
    readFrom(is, class_String, &description_);
    readFrom(is, class_String, &inputList_);
    readFrom(is, class_String, &outputList_);
    if (!atObjectEnd(is)) readFrom(is, class_String, &stateList_);
    setTitleName(name);
}

TitleIcon::~TitleIcon() noexcept(false) {}

void TitleIcon::setTitleName(const String& name) {
    titleName_ = name.size() ? name : String(DEFAULT_NAME);
    setNodeName(titleName_.asCharPointer());
}

std::vector<std::string> TitleIcon::splitList(const String& text, int& firstCount, int& secondCount) {
    std::vector<std::string> names;
    std::string s = text.stripBoth().asCharPointer();
    int groups = 0;
    firstCount = secondCount = -1;
    for (size_t at = 0; at <= s.size();) {
        size_t end = s.find_first_of(" ,\t", at);
        if (end == std::string::npos) end = s.size();
        if (end > at) names.push_back(s.substr(at, end - at));
        if (end < s.size() && s[end] == ',') {
            if (groups == 0) firstCount = int(names.size());
            if (groups == 1) secondCount = int(names.size());
            ++groups;
        }
        at = end + 1;
    }
    if (firstCount < 0) firstCount = int(names.size());
    if (secondCount < 0) secondCount = int(names.size());
    return names;
}

std::vector<std::string> TitleIcon::inputNames(int& first, int& second) const {
    return splitList(inputList_, first, second);
}

std::vector<std::string> TitleIcon::outputNames(int& first, int& second) const {
    return splitList(outputList_, first, second);
}

std::vector<std::string> TitleIcon::stateNames(int& first, int& second) const {
    return splitList(stateList_, first, second);
}

double TitleIcon::samplingTime() const {
    const char* label = systemLabel_.asCharPointer();
    size_t n = std::strlen(DISCRETE);
    return std::strncmp(label, DISCRETE, n) == 0 ? std::atof(label + n) : 0.0;
}

int TitleIcon::iconParameters(int mode, OrderedCltn& labels, OrderedCltn& values, int& count) {
    ModelNode::iconParameters(mode, labels, values, count);
    if (mode == 1) {
        cbackOn(IconChanging);
        applyEntries();
        cbackOn(IconChanged);
        return 0;
    }
    if (mode != 0) return 0;
    for (const char* label : {"Title  Name", "Description", "State List", "Input List", "Output List"})
        labels.add(*new String(label));
    for (const String& value : {titleName_, description_, stateList_, inputList_, outputList_})
        values.add(*new String(value));
    count = 0;
    return 1;
}

String TitleIcon::checkParameters(int mode, const OrderedCltn& values, int& status) {
    if (mode != 0) return String();
    for (unsigned i = 0; i < 5; ++i) entries[i] = trimmedValue(values, i);
    status = 1;
    if (entries[0].size() == 0) return errorText("fatal", "Title name cannot be empty");
    return errorText("noerror", "");
}

void TitleIcon::defaultComment() { showDescription(description_); }

void TitleIcon::applyEntries() {
    setTitleName(entries[0]);
    description_ = entries[1];
    stateList_ = entries[2];
    inputList_ = entries[3];
    outputList_ = entries[4];
    defaultComment();
    rebuild();
}

void TitleIcon::drawIcon() { placeLabel(1.4); }

void TitleIcon::storer(std::ostream& os) const {
    ModelNode::storer(os);
    for (const String* text :
         {&titleName_, &systemLabel_, &description_, &inputList_, &outputList_, &stateList_})
        text->storeOn(os);
}

void TitleIcon::storer(BinOstream& os) const {
    ModelNode::storer(os);
    for (const String* text :
         {&titleName_, &systemLabel_, &description_, &inputList_, &outputList_, &stateList_})
        text->storeOn(os);
}

void TitleIcon::clearCopiedState() {
    ModelNode::clearCopiedState();
    for (String* text : {&titleName_, &systemLabel_, &description_, &inputList_, &outputList_, &stateList_})
        text->clearCopiedState();
    for (String& entry : entries) entry.clearCopiedState();
}
