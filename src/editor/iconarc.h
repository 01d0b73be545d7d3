// IconArc, a link of the drawing, and ClassArc, a link that carries text labels.
#ifndef EDITOR_ICONARC_H
#define EDITOR_ICONARC_H

#include "editor/iconnode.h"

extern Class class_IconArc;
extern Class class_ClassArc;

// A link is an icon: it has a name and a comment and covers cells. Its
// points are absolute board coordinates, so its picture stays at (0, 0).
// Slot 0 of fromIcons() is the icon it starts at, of toIcons() the one it
// ends at.
class IconArc : public IconNode {
    DECLARE_MEMBERS(IconArc)
public:
    IconArc();
    // Stream form: IconNode's, then the points.
    IconArc(std::istream& is, Object* where);
    IconArc(BinIstream& is, Object* where);
    ~IconArc() noexcept(false) override;

    // The end icons, null when not linked.
    IconNode* from() const;
    IconNode* to() const;
    void setFrom(Object* icon);
    void setTo(Object* icon);
    OrderedCltn* points() const { return points_; }
    FloatPoint point(int index) const;
    FloatPoint firstPoint() const { return point(0); }
    FloatPoint lastPoint() const { return point(int(points_->size()) - 1); }
    FloatPoint midPoint() const { return (firstPoint() + lastPoint()) * 0.5; }
    // Takes the points; the comment keeps its place relative to the middle.
    void setPoints(const OrderedCltn& list);

    // A link neither starts nor ends at a link.
    const char* canBeLinkTo(const FloatPoint& p, const Class& linkClass) override;
    const char* canBeLinkFrom(const FloatPoint& p, const Class& linkClass) override;
    // The cells under the polyline, absolute.
    void fillGeoIcon() override;
    void buildIcon() override;
    String& iconDescription(String& result) override;
    Object* getIconFieldValue(const char* category) override;
    void initMetaData() override;

    // Texts of the document: empty comments here, for the subclasses to give.
    virtual String& fromComment(String& result);
    virtual String& toComment(String& result);
    // The names of the end icons, and the two joined as the link's title.
    virtual String& fromIconId(String& result);
    virtual String& toIconId(String& result);
    virtual String& linkTitleText(String& result);

    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;
    void deepenShallowCopy() override;

protected:
    // The polyline with an arrow head of half width a and length b at its
    // end, then the label and the comment.
    void buildArc(float a, float b);

private:
    void addArrowHead(const FloatPoint& end, const FloatPoint& d, float a, float b);
    IconNode* end(ArrayOb& slots) const;

    OrderedCltn* points_;
    String fromCommentText;
    String toCommentText;
    String titleText;
};

// A link whose comment shows its name and its labels, one a line.
class ClassArc : public IconArc {
    DECLARE_MEMBERS(ClassArc)
public:
    ClassArc() {}
    // Stream form: IconArc's, then the labels.
    ClassArc(std::istream& is, Object* where);
    ClassArc(BinIstream& is, Object* where);
    ~ClassArc() noexcept(false) override;

    const String& label(int index) const;
    // Appends a copy of a text that is not empty.
    void addLabel(const String& text);
    void clearLabels();
    const OrderedCltn& labels() const { return labels_; }

    void buildIcon() override;
    // One row for the labels: the link's name, then each label.
    void getParameters(OrderedCltn& labels, OrderedCltn& values) override;
    // The trimmed values that are not empty become the labels.
    void setParameters(OrderedCltn& labels, OrderedCltn& values) override;
    String& iconDescription(String& result) override;
    bool hasComment() override;
    void defaultComment() override;
    // The name shown with the labels; empty here.
    virtual String& linkName(String& result);

    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;
    void deepenShallowCopy() override;

private:
    // A line of the comment at y, and y moved to the next line.
    void addCommentLine(const String& text, float& y);

    OrderedCltn labels_;
};

#endif
