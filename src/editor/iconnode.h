// IconNode, a node of the graph editor's drawing: name, picture, cells, label, comment and links.
#ifndef EDITOR_ICONNODE_H
#define EDITOR_ICONNODE_H

#include "editor/iconcat.h"
#include "quill/lookupky.h"
#include "quill/orderedc.h"
#include "quill/point.h"
#include "quill/quillstr.h"

class ArrayOb;
class DocGenData;
class CompositeIcon;
class DrawString;
class IconArc;

extern Class class_IconNode;

// The key is the icon's name, a String: a Dictionary of icons is keyed by
// name, and an icon stands for its own key. Positions and cells are in grid
// cells; the picture's origin is the icon's position.
class IconNode : public LookupKey {
    DECLARE_MEMBERS(IconNode)
public:
    // Colour resources of the pictures, resolved by the toolkit when painted.
    static constexpr const char* iconColour = "EditorDefaultIconColor";
    static constexpr const char* stringColour = "EditorDefaultStringColor";
    static constexpr const char* highlightColour = "defaultIconHighLight";

    // Named after its own identity, with an empty label.
    IconNode();
    IconNode(const IconNode&) = delete;
    IconNode& operator=(const IconNode&) = delete;
    // Stream form: the key, the link arrays, a marker, the scales and flags,
    // the label, the position, comment and help, a marker, the comment's
    // place, and the deletable and movable flags. A marker that is not nil
    // is the label (first) or the comment picture (second) of an older layout.
    IconNode(std::istream& is, Object* where);
    IconNode(BinIstream& is, Object* where);
    // The link arrays hold references only: the links stay.
    ~IconNode() noexcept(false) override;

    const String& name() const { return *static_cast<const String*>(key_); }
    void setName(const char* name);
    Point position() const;
    void setPosition(const Point& p);
    int posX() const;
    int posY() const;
    void setPosX(int x);
    void setPosY(int y);
    // Each sets its value when given one above 0, and answers the former.
    float iconWidth(float v = 0);
    float iconHeight(float v = 0);
    float iconFontScale(float v = 0);
    // Each sets its flag unless given -1, and answers the former.
    int canScale(int flag = -1);
    int canScaleFont(int flag = -1);

    CompositeIcon* compositeIcon() const { return compositeIcon_; }
    OrderedCltn* geoIcon() const { return geoIcon_; }
    DrawString* iconLabel() const { return iconLabel_; }
    CompositeIcon* commentIcon() const { return commentIcon_; }
    // Incoming links; for a link, the icon it starts at. A slot holds nil,
    // a link, or while on the clipboard the name String of a link.
    ArrayOb* fromIcons() const { return from_icons; }
    // Outgoing links; for a link, the icon it ends at.
    ArrayOb* toIcons() const { return to_icons; }
    String& comment() { return comment_; }
    String& helpText() { return helpText_; }
    bool isDeletable() const { return deletable; }
    void setDeletable(bool flag) { deletable = flag; }
    bool isMovable() const { return movable; }
    void setMovable(bool flag) { movable = flag; }

    OrderedCltn& metaDataCltn() { return metaDataCltn_; }
    // Adds the icon's metadata to cltn.
    void metaData(OrderedCltn& cltn);
    // Merges each metadata of cltn into the icon's one at its position.
    void setMetaData(OrderedCltn& cltn);
    void setSelected(const FloatPoint& p);

    // Refusals answer their message, or null when all is well.
    virtual const char* canBeLinkTo(const FloatPoint& p, const Class& linkClass);
    virtual const char* canBeLinkFrom(const FloatPoint& p, const Class& linkClass);
    // The picture without label and comment.
    virtual void drawIcon();
    virtual void undrawIcon();
    virtual void iconSpare();
    // Adds the icons that must travel with this one in a cut or copy.
    virtual OrderedCltn& companions(OrderedCltn& cltn);
    virtual void addFromLink(IconArc& arc);
    virtual void addToLink(IconArc& arc);
    virtual void removeFromLink(IconArc& arc);
    virtual void removeToLink(IconArc& arc);
    virtual void clearLinks();
    // The cells that the icon covers, relative to its position.
    virtual void fillGeoIcon();
    virtual void buildIcon();
    virtual void clearGeoIcon();
    // Deletes the picture but for the label and the comment.
    virtual void unbuildIcon();
    // The dialog's rows; setParameters takes the values and empties both.
    virtual void getParameters(OrderedCltn& labels, OrderedCltn& values);
    virtual void setParameters(OrderedCltn& labels, OrderedCltn& values);
    virtual const char* linkFromMessage(const FloatPoint& p, IconArc& arc);
    virtual const char* linkToMessage(const FloatPoint& p, IconArc& arc);
    // Picture and cells, built and released.
    virtual void update();
    virtual void release();
    virtual String& iconDescription(String& result);
    virtual bool hasComment();
    // Fill an empty collection with the links present.
    virtual OrderedCltn& fromLinks(OrderedCltn& cltn);
    virtual OrderedCltn& toLinks(OrderedCltn& cltn);
    virtual void highlight(const FloatPoint& p, const char* colour);
    virtual void defaultComment();
    virtual void unhighlight(const FloatPoint& p);
    // Where a link from p1 to p2 enters or leaves the icon: 0.01 outside the
    // middle of the side that faces the other end.
    virtual FloatPoint linkToPoint(const FloatPoint& p1, const FloatPoint& p2);
    virtual FloatPoint linkFromPoint(const FloatPoint& p1, const FloatPoint& p2);
    // Appends the polyline of a link from this icon to `to`.
    virtual void routeLink(OrderedCltn& result, IconNode& to, const FloatPoint& start, const FloatPoint& end,
                           const Class& semanticClass);
    // The value of a dynamic field of the category, nil for an unknown one.
    virtual Object* getIconFieldValue(const char* category);
    // Gives the first metadata the icon's dynamic fields.
    virtual void initMetaData();

    void printOn(std::ostream& os) const override;  // class name, a blank, the name
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;
    // A new name, no links, no picture, fresh metadata.
    void deepenShallowCopy() override;

protected:
    // Sets the field of the category to this icon, adding it when missing.
    void setDynamicField(IconCategory category, const DocGenData& docData);

private:
    template <class Stream>
    void readFields(Stream& is);
    template <class Stream>
    DrawString* readScalesAndLabel(Stream& is);
    template <class Stream>
    CompositeIcon* readCommentPlace(Stream& is);
    void takeLinks(Object* fromLinks, Object* toLinks);
    FloatPoint sidePoint(const FloatPoint& from, const FloatPoint& here) const;
    void nameByIdentity();
    void makePictures();
    void takeOutLabelAndComment();

    CompositeIcon* compositeIcon_ = 0;
    OrderedCltn* geoIcon_ = 0;
    DrawString* iconLabel_ = 0;
    CompositeIcon* commentIcon_ = 0;
    String helpText_;
    ArrayOb* from_icons = 0;
    ArrayOb* to_icons = 0;
    String comment_;
    int deletable = 1;
    int movable = 1;
    float scaleWidth = 1.0f;
    float fontScale = 0.1f;
    float scaleHeight = 1.0f;
    int canScale_ = 0;
    int canScaleFont_ = 0;
    OrderedCltn metaDataCltn_;
};

#endif
