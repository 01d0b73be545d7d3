// CppForm and FormPosData: children placed by attachments to the form, to siblings and to percentages.
#ifndef TRELLIS_FORM_H
#define TRELLIS_FORM_H

#include "trellis/widget.h"

class Assoc;

extern Class class_FormPosData;
extern Class class_CppForm;

// Where the four edges of one child refer to. Each word holds the form, the
// child itself, PERCENT, a sibling, or 0 (free); the offsets mean what the
// word says (see CppForm).
class FormPosData : public Object {
    DECLARE_MEMBERS(FormPosData)
public:
    static Object* const PERCENT;

    explicit FormPosData(Object* form = 0);

    Object* leftAttach;
    Object* rightAttach;
    Object* topAttach;
    Object* bottomAttach;
    int leftOffset;
    int rightOffset;
    int topOffset;
    int bottomOffset;
};

// The container that positions its children by constraints: no pixel
// position is computed outside these rules. Its list holds one Assoc per
// child (the child, its FormPosData), in the order of layout.
//
// A left edge attached to: the form, x = offset; itself, x = form width +
// offset; PERCENT, x = width * offset / 100; a sibling, x = its right edge +
// offset; nothing, x stays. A right edge attached to: the form, the right
// edge keeps offset pixels from the form's; itself, the right edge stands at
// -offset; PERCENT, at width * offset / 100; a sibling, offset pixels ahead
// of its left edge; nothing, the width stays. Top and bottom alike.
class CppForm : public CppComposite {
    DECLARE_MEMBERS(CppForm)
public:
    CppForm(const char* name, CppWidget* parent, bool managed = true);
    ~CppForm() noexcept(false) override;

    void add(CppWidget& child) override;
    void removeChild(CppWidget& child) override;
    int childCount() const override;
    // Lays out first when that hasn't been done, then realises the children.
    void realize() override;
    // Runs the first layout when it hasn't run: the form's natural size.
    void sizeToFit() override;
    // Sizes the window and lays the children out again.
    void resize(int width, int height) override;

    // Rightwards: when right is the form, left's right edge keeps gap from
    // the form's; otherwise right's left edge follows left (the form, a
    // sibling or null) by gap, and right's x is set at once.
    void attachHorizontal(CppWidget* left, CppWidget* right, int gap);
    // The same downwards, with top and bottom.
    void attachVertical(CppWidget* top, CppWidget* bottom, int gap);
    void attachAt(CppWidget& child, int dx, int dy);
    void attachLeftFromRight(CppWidget& child, int n);  // x = form width - n
    void attachRightAt(CppWidget& child, int n);        // right edge at n
    void attachTopFromBottom(CppWidget& child, int n);
    void attachBottomAt(CppWidget& child, int n);
    // The right edge of child gap pixels ahead of the sibling's left edge;
    // the bottom edge alike above the sibling's top.
    void attachRightToSibling(CppWidget& child, CppWidget& sibling, int gap);
    void attachBottomToSibling(CppWidget& child, CppWidget& sibling, int gap);
    void attachLeftPercent(CppWidget& child, int percent);
    void attachRightPercent(CppWidget& child, int percent);
    void attachTopPercent(CppWidget& child, int percent);
    void attachBottomPercent(CppWidget& child, int percent);

    // The child at a position of the layout order.
    CppWidget* childAt(int index) const;
    FormPosData& positionOf(const CppWidget& child) const;

    // The first layout: the children size themselves, the list is ordered so
    // that a child follows the siblings it refers to (at most 1000 swaps, so
    // circular attachments end in whatever order was reached), then four
    // passes place them, letting the form grow to hold them.
    void doLayout();
    // Before the first layout only stores the size; after it places the
    // children again for the new size. The form doesn't grow here, and a
    // width or height below 1 becomes 1.
    void setSize(int width, int height);
    bool layoutDone() const { return layoutDone_; }
    int width() const { return width_; }
    int height() const { return height_; }

protected:
    CppWidget* widgetAt(int i) const override;

private:
    Assoc& pairAt(int i) const;
    int indexOfChild(const Object* child) const;
    void orderChildren();
    bool mustFollow(int position, int& siblingIndex) const;
    void placeFirst(CppWidget& child, FormPosData& pos, int& workWidth, int& workHeight);
    void placeAgain(CppWidget& child, FormPosData& pos, int w, int h);

    bool layoutDone_;
    int width_;
    int height_;
};

// A form that places each child to the right of the one before.
class ButtonBox : public CppForm {
    DECLARE_MEMBERS(ButtonBox)
public:
    ButtonBox(const char* name, CppWidget* parent, int gap = 4);
    void add(CppWidget& child) override;

private:
    int gap;
};

extern Class class_ButtonBox;

#endif
