// IconNode: name and scales, picture and cells, links, attachment points, metadata and stream forms.
#include "editor/iconnode.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <ostream>

#include "editor/iconarc.h"
#include "editor/iconmeta.h"
#include "quill/arrayob.h"
#include "quill/objio.h"
#include "quill/quillerr.h"
#include "trellis/cppgc.h"
#include "trellis/drawprim.h"

namespace {

// A resource not given a colour before the classes start gets its default.
void giveDefaultColours(Class*) {
    const char* defaults[][2] = {{IconNode::iconColour, "black"},
                                 {IconNode::stringColour, "black"},
                                 {IconNode::highlightColour, "blue"}};
    double r, g, b;
    for (auto& entry : defaults)
        if (!colorOf(entry[0], r, g, b)) setColorResource(entry[0], entry[1]);
}

DrawString* newText(float x, float y, const char* text, float height) {
    DrawString* s = new DrawString(x, y, 0, text, DrawString::LEFT, IconNode::stringColour);
    s->height = height;
    return s;
}

// A link goes into the first free slot; a full array doubles.
void addToSlots(ArrayOb& slots, Object& link) {
    unsigned free = 0;
    while (free < slots.size() && slots[free] != nil) ++free;
    if (free == slots.size()) slots.reSize(2 * slots.size());
    slots[free] = &link;
}

void removeFromSlots(ArrayOb& slots, const Object& link) {
    for (unsigned i = 0; i < slots.size(); ++i)
        if (slots[i] == &link) slots[i] = nil;
}

OrderedCltn& presentLinks(const ArrayOb& slots, OrderedCltn& cltn) {
    QASSERT_TEXT(cltn.size() == 0, "cltn.size() == 0");
    for (unsigned i = 0; i < slots.size(); ++i)
        if (slots[i] != nil) cltn.add(*slots[i]);
    return cltn;
}

float setAbove0(float& field, float v) {
    float former = field;
    if (v > 0) field = v;
    return former;
}

int setUnlessKept(int& field, int flag) {
    int former = field;
    if (flag != -1) field = flag;
    return former;
}

// Cuts the trailing nils off, keeping two slots at least.
ArrayOb* compacted(Object* read) {
    ArrayOb* slots = CAST(ArrayOb, read);
    unsigned count = slots->size();
    while (count > 0 && (*slots)[count - 1] == nil) --count;
    slots->reSize(count > 2 ? count : 2);
    return slots;
}

}  // namespace

DEFINE_CLASS(IconNode, LookupKey, 2, giveDefaultColours)

IconNode::IconNode() : LookupKey(*new String), from_icons(new ArrayOb(2)), to_icons(new ArrayOb(2)) {
    nameByIdentity();
    makePictures();
    initMetaData();
}

IconNode::IconNode(std::istream& is, Object* where) : LookupKey(is, where) {
    readFields(is);
    initMetaData();
}

IconNode::IconNode(BinIstream& is, Object* where) : LookupKey(is, where) {
    readFields(is);
    initMetaData();
}

IconNode::~IconNode() noexcept(false) {
    takeOutLabelAndComment();
    delete key_;
    delete from_icons;
    delete to_icons;
    delete compositeIcon_;
    geoIcon_->deleteContents();
    delete geoIcon_;
    delete commentIcon_;
    delete iconLabel_;
    metaDataCltn_.deleteContents();
}

// Reading makes its own objects only after the last item, so that a failed
// read leaves nothing behind but what the read tables delete.
template <class Stream>
void IconNode::readFields(Stream& is) {
    Object* fromLinks = readFrom(is);
    Object* toLinks = readFrom(is);
    Object* labelMarker = readFrom(is);
    std::unique_ptr<DrawString> label(labelMarker == nil ? readScalesAndLabel(is) : 0);
    float x = readNumber<float>(is);
    float y = readNumber<float>(is);
    readFrom(is, class_String, &comment_);
    readFrom(is, class_String, &helpText_);
    Object* commentMarker = readFrom(is);
    std::unique_ptr<CompositeIcon> comment(commentMarker == nil ? readCommentPlace(is) : 0);
    deletable = readNumber<int>(is);
    movable = readNumber<int>(is);

    iconLabel_ = label ? label.release() : CAST(DrawString, labelMarker);
    commentIcon_ = comment ? comment.release() : CAST(CompositeIcon, commentMarker);
    compositeIcon_ = new CompositeIcon;
    compositeIcon_->x = x;
    compositeIcon_->y = y;
    geoIcon_ = new OrderedCltn;
    takeLinks(fromLinks, toLinks);
}

template <class Stream>
DrawString* IconNode::readScalesAndLabel(Stream& is) {
    scaleWidth = readNumber<float>(is);
    scaleHeight = readNumber<float>(is);
    fontScale = readNumber<float>(is);
    canScale_ = readNumber<int>(is);
    canScaleFont_ = readNumber<int>(is);
    String text;
    readFrom(is, class_String, &text);
    float x = readNumber<float>(is);
    float y = readNumber<float>(is);
    return newText(x, y, text.asCharPointer(), readNumber<float>(is));
}

// A comment that had drawings gets an empty text, so that it is not given
// the default comment again.
template <class Stream>
CompositeIcon* IconNode::readCommentPlace(Stream& is) {
    float x = readNumber<float>(is);
    float y = readNumber<float>(is);
    bool wasEmpty = readNumber<int>(is) != 0;
    CompositeIcon* comment = new CompositeIcon;
    comment->x = x;
    comment->y = y;
    if (!wasEmpty) comment->add(*newText(0, 0, "", 0));
    return comment;
}

// A stream without link arrays gets one free slot at each end; the links
// read are told that they end or start here.
void IconNode::takeLinks(Object* fromLinks, Object* toLinks) {
    if (fromLinks == nil) {
        QASSERT_TEXT(toLinks == nil, "to_icons == nil");
        from_icons = new ArrayOb(1);
        to_icons = new ArrayOb(1);
        return;
    }
    from_icons = compacted(fromLinks);
    to_icons = compacted(toLinks);
    for (unsigned i = 0; i < from_icons->size(); ++i)
        if ((*from_icons)[i]->isKindOf(class_IconArc)) static_cast<IconArc*>((*from_icons)[i])->setTo(this);
    for (unsigned i = 0; i < to_icons->size(); ++i)
        if ((*to_icons)[i]->isKindOf(class_IconArc)) static_cast<IconArc*>((*to_icons)[i])->setFrom(this);
}

void IconNode::storer(std::ostream& os) const {
    LookupKey::storer(os);
    from_icons->storeOn(os);
    to_icons->storeOn(os);
    nil->storeOn(os);
    os << ' ' << scaleWidth << ' ' << scaleHeight << ' ' << fontScale;
    os << ' ' << canScale_ << "  " << canScaleFont_ << ' ';
    iconLabel_->text.storeOn(os);
    os << iconLabel_->x << ' ' << iconLabel_->y << ' ' << iconLabel_->height << ' ';
    os << compositeIcon_->x << ' ' << compositeIcon_->y << ' ';
    comment_.storeOn(os);
    helpText_.storeOn(os);
    nil->storeOn(os);
    os << commentIcon_->x << ' ' << commentIcon_->y << ' ' << int(commentIcon_->icons().isEmpty()) << '\n';
    os << deletable << ' ' << movable << ' ';
}

void IconNode::storer(BinOstream& os) const {
    LookupKey::storer(os);
    from_icons->storeOn(os);
    to_icons->storeOn(os);
    nil->storeOn(os);
    os << scaleWidth << scaleHeight << fontScale << canScale_ << canScaleFont_;
    iconLabel_->text.storeOn(os);
    os << iconLabel_->x << iconLabel_->y << iconLabel_->height;
    os << compositeIcon_->x << compositeIcon_->y;
    comment_.storeOn(os);
    helpText_.storeOn(os);
    nil->storeOn(os);
    os << commentIcon_->x << commentIcon_->y << int(commentIcon_->icons().isEmpty());
    os << deletable << movable;
}

void IconNode::nameByIdentity() { formatString(*static_cast<String*>(key_), "%ld", long(intptr_t(this))); }

void IconNode::makePictures() {
    compositeIcon_ = new CompositeIcon;
    geoIcon_ = new OrderedCltn;
    iconLabel_ = newText(0, 0, "", 0);
    commentIcon_ = new CompositeIcon;
}

void IconNode::takeOutLabelAndComment() {
    compositeIcon_->remove(*iconLabel_);
    compositeIcon_->remove(*commentIcon_);
}

void IconNode::setName(const char* name) { *static_cast<String*>(key_) = name; }

Point IconNode::position() const { return Point(posX(), posY()); }

void IconNode::setPosition(const Point& p) {
    setPosX(p.x());
    setPosY(p.y());
}

int IconNode::posX() const { return int(compositeIcon_->x); }
int IconNode::posY() const { return int(compositeIcon_->y); }
void IconNode::setPosX(int x) { compositeIcon_->x = float(x); }
void IconNode::setPosY(int y) { compositeIcon_->y = float(y); }

float IconNode::iconWidth(float v) { return setAbove0(scaleWidth, v); }
float IconNode::iconHeight(float v) { return setAbove0(scaleHeight, v); }
float IconNode::iconFontScale(float v) { return setAbove0(fontScale, v); }
int IconNode::canScale(int flag) { return setUnlessKept(canScale_, flag); }
int IconNode::canScaleFont(int flag) { return setUnlessKept(canScaleFont_, flag); }

void IconNode::metaData(OrderedCltn& cltn) { cltn.addContentsOf(metaDataCltn_); }

void IconNode::setMetaData(OrderedCltn& cltn) {
    QASSERT_TEXT(cltn.size() == metaDataCltn_.size(), "size == metaDataCltn.size()");
    for (unsigned i = 0; i < cltn.size(); ++i)
        *CAST(IconMetaData, metaDataCltn_.at(i)) += *CAST(IconMetaData, cltn.at(i));
}

void IconNode::setSelected(const FloatPoint& p) { highlight(p, highlightColour); }

const char* IconNode::canBeLinkTo(const FloatPoint&, const Class&) { return 0; }
const char* IconNode::canBeLinkFrom(const FloatPoint&, const Class&) { return 0; }

void IconNode::drawIcon() {
    compositeIcon_->add(*new DrawRect(0, 0, scaleWidth, scaleHeight, iconColour));
    DrawString* text = new DrawString(scaleWidth * 0.1f, scaleHeight * 0.8f, 0, "icon", DrawString::LEFT,
                                      IconNode::iconColour);
    text->height = scaleWidth * 0.8f;
    compositeIcon_->add(*text);
}

void IconNode::undrawIcon() {}
void IconNode::iconSpare() {}
OrderedCltn& IconNode::companions(OrderedCltn& cltn) { return cltn; }
void IconNode::addFromLink(IconArc& arc) { addToSlots(*from_icons, arc); }
void IconNode::addToLink(IconArc& arc) { addToSlots(*to_icons, arc); }
void IconNode::removeFromLink(IconArc& arc) { removeFromSlots(*from_icons, arc); }
void IconNode::removeToLink(IconArc& arc) { removeFromSlots(*to_icons, arc); }

void IconNode::clearLinks() {
    from_icons->removeAll();
    to_icons->removeAll();
}

void IconNode::fillGeoIcon() {
    int columns = int(scaleWidth + 0.5f);
    int rows = int(scaleHeight + 0.5f);
    for (int i = 0; i < columns; ++i)
        for (int j = 0; j < rows; ++j) geoIcon_->add(*new Point(i, j));
}

void IconNode::buildIcon() {
    drawIcon();
    compositeIcon_->add(*iconLabel_);
    compositeIcon_->add(*commentIcon_);
}

void IconNode::clearGeoIcon() { geoIcon_->deleteContents(); }

void IconNode::unbuildIcon() {
    takeOutLabelAndComment();
    undrawIcon();
    compositeIcon_->deleteIcons();
}

void IconNode::getParameters(OrderedCltn& labels, OrderedCltn& values) {
    if (!isMemberOf(class_IconNode)) return;
    labels.add(*new String("Icon label"));
    values.add(*new String("icon"));
}

void IconNode::setParameters(OrderedCltn& labels, OrderedCltn& values) {
    if (!isMemberOf(class_IconNode)) return;
    iconLabel_->text = CAST(String, values.first())->stripBoth();
    iconLabel_->width = iconLabel_->text.size() * 0.2f;
    labels.deleteContents();
    values.deleteContents();
}

const char* IconNode::linkFromMessage(const FloatPoint&, IconArc&) { return 0; }
const char* IconNode::linkToMessage(const FloatPoint&, IconArc&) { return 0; }

void IconNode::update() {
    buildIcon();
    fillGeoIcon();
}

void IconNode::release() {
    unbuildIcon();
    clearGeoIcon();
}

String& IconNode::iconDescription(String& result) {
    result = className();
    return result;
}

bool IconNode::hasComment() { return isMemberOf(class_IconNode); }
OrderedCltn& IconNode::fromLinks(OrderedCltn& cltn) { return presentLinks(*from_icons, cltn); }
OrderedCltn& IconNode::toLinks(OrderedCltn& cltn) { return presentLinks(*to_icons, cltn); }
void IconNode::highlight(const FloatPoint&, const char* colour) { compositeIcon_->setHighlight(colour); }

void IconNode::defaultComment() {
    if (isMemberOf(class_IconNode)) commentIcon_->add(*newText(0, -0.8f, "label", 1.5f));
}

void IconNode::unhighlight(const FloatPoint&) { compositeIcon_->setHighlight(0); }

FloatPoint IconNode::linkToPoint(const FloatPoint& p1, const FloatPoint& p2) { return sidePoint(p1, p2); }
FloatPoint IconNode::linkFromPoint(const FloatPoint& p1, const FloatPoint& p2) { return sidePoint(p2, p1); }

// The middle of the cell box's side that faces from, 0.01 outside it.
FloatPoint IconNode::sidePoint(const FloatPoint& from, const FloatPoint& here) const {
    FloatPoint d = from - here;
    double dx = 0.5, dy = 0.5;
    if (std::fabs(d.y()) <= std::fabs(d.x()))
        dx = from.x() <= here.x() ? -0.01 : 1.01;
    else
        dy = from.y() <= here.y() ? -0.01 : 1.01;
    return FloatPoint(posX() + dx, posY() + dy);
}

void IconNode::routeLink(OrderedCltn& result, IconNode&, const FloatPoint& start, const FloatPoint& end,
                         const Class&) {
    result.add(*new FloatPoint(start));
    result.add(*new FloatPoint(end));
}

// The links that start here are the outgoing ones, those that end here the
// incoming ones.
Object* IconNode::getIconFieldValue(const char* category) {
    if (strcmp(category, iconcat::COMMENT()) == 0) return &comment_;
    if (strcmp(category, iconcat::FROMLINKS()) == 0) return to_icons;
    if (strcmp(category, iconcat::TOLINKS()) == 0) return from_icons;
    return nil;
}

void IconNode::initMetaData() {
    if (metaDataCltn_.isEmpty()) metaDataCltn_.add(*new IconMetaData);
    setDynamicField(iconcat::COMMENT, DocGenData("Description", 1));
    setDynamicField(iconcat::FROMLINKS, DocGenData("Relationships", 2));
    setDynamicField(iconcat::TOLINKS, DocGenData("Relationships", 2));
}

// A copy's fields still name the original: they are pointed here again.
void IconNode::setDynamicField(IconCategory category, const DocGenData& docData) {
    IconMetaData& first = *CAST(IconMetaData, metaDataCltn_.first());
    if (first.includes(category()))
        first.replace(this, category, IconFieldEdt::notEditable(), docData);
    else if (docData.isValid())
        first.add(this, category, IconFieldEdt::notEditable(), docData);
    else
        first.add(category, this);
}

void IconNode::printOn(std::ostream& os) const { os << className() << ' ' << name(); }

void IconNode::clearCopiedState() {
    LookupKey::clearCopiedState();
    helpText_.clearCopiedState();
    comment_.clearCopiedState();
    metaDataCltn_.clearCopiedState();
}

void IconNode::deepenShallowCopy() {
    LookupKey::deepenShallowCopy();
    nameByIdentity();
    metaDataCltn_.deepenShallowCopy();
    from_icons = new ArrayOb(2);
    to_icons = new ArrayOb(2);
    makePictures();
    initMetaData();
}
