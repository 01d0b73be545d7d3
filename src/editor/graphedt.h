// GraphEditor, the editor of drawings of nodes and links, and GraphShower, its read-only form.
#ifndef EDITOR_GRAPHEDT_H
#define EDITOR_GRAPHEDT_H

#include <map>

#include "editor/editor.h"
#include "editor/edthist.h"
#include "quill/dictnary.h"
#include "quill/orderedc.h"
#include "quill/point.h"

class ChessBoard;
class CompositeIcon;
class DrawLine;
class DrawRect;
class GraphEdtGui;
class IconArc;
class IconNode;
class Semantic;

extern Class class_GraphEditor;
extern Class class_GraphShower;

class GraphEditor : public Editor {
    DECLARE_MEMBERS(GraphEditor)
public:
    // The states of the editing machine; below CriticalStatus the editor is
    // idle, and the state says what a double click does.
    enum Status {
        LinkMode = 3,
        ModifyMode = 4,
        TransformMode = 5,
        OpenMode = 6,
        CommentMode = 7,
        CriticalStatus = 8,
        CommandStatus = 9,
        CreatingIcon = 10,
        IconParameters = 11,
        PlacingIcon = 12,
        ModalParameters = 13,
        PlacingComment = 14,
        DrawingLink = 15,
        LinkParameters = 16,
        MovingOneIcon = 17,
        MovingManyIcons = 18,
        SelectingArea = 19,
        PlacingFirst = 21
    };

    // semanticClass names the kind of drawing. A child editor is tied to a
    // parent; a shower is read-only; a deferred one is not shown yet.
    GraphEditor(CppWidget* topLevel, const char* semanticClass, const char* title, bool child = false,
                bool shower = false, bool deferredShow = false, bool fromFile = false,
                const char* fileName = 0);
    ~GraphEditor() noexcept(false) override;

    // Shows the window on the file, locked, or on a new drawing when it
    // has none or is locked by another editor.
    void open(const char* fileName);

    // What the kinds of drawing use.
    Dictionary& editorIcons() const { return *icon_cltn; }
    OrderedCltn& selectedIcons() { return select_icons; }
    Dictionary& paramPool() { return paramPool_; }
    Semantic& semantic() const { return *semantic_; }
    GraphEdtGui& gui() const { return *gui_; }
    ChessBoard& board() const { return *board_; }
    int status() const { return status_; }
    void pushStatus(int status);
    void popStatus(int status = 0);
    void showMessage(const char* text);
    void showWarning(const char* text);
    bool askQuestion(const char* text);
    void insertIcon(IconNode& icon);
    void removeIcon(IconNode& icon);
    void destroyIcon(IconNode* icon);
    // The icon, its links off their other ends, all destroyed.
    void deleteIconAndLinks(IconNode& icon);
    void createLink(IconArc& link, IconNode& from, IconNode& to, const FloatPoint& p1, const FloatPoint& p2);
    void updateLink(IconArc& link, const FloatPoint& p1, const FloatPoint& p2, bool redraw = true,
                    bool highlight = false, int modifier = 0);
    const char* checkPlace(IconNode& icon);
    const String& fileName() const;
    String baseName() const;
    String withExtension(const char* fileName) const;
    int setFileName(const char* name, bool lock);
    // A child window by its title: a text editor, shower or file editor, or
    // a graph editor of that semantic class.
    Editor* openChildEditor(const char* className, const char* textOrFile, const char* title,
                            Object* userData, bool show = true, bool fromFile = false);
    void closeChild(Editor& child);
    bool isReadOnly() const { return readOnly; }
    bool isChanged() const;
    void setChanged(bool flag = true);
    // The end of every parameter dialogue: 0 keep, 1 keep and comment, 2 discard.
    void paramDone(IconNode* icon, int action);
    void reLoad() override;

    // Gestures that menus and tests start.
    bool pick(const FloatPoint& point);
    void selectIcon(IconNode& icon, bool add);
    void clearSelection();
    void selectAll();
    void cut(IconNode* icon);
    void copy(IconNode* icon);
    void paste();
    void undo();
    void redo();
    EditHistory& history() const { return *history_; }
    IconNode* currentIcon() const { return currentIcon_; }
    void resetEditor();
    bool save();
    bool load(const char* fileName);
    // The drawing as it is stored: icons, semantic, scroll state.
    ArrayOb* drawingArray() const;

    // File locks: the drawing's directory holds "editfile.tarn", a Set of the
    // names being edited. Both answer an empty string or the message.
    static String takeLock(const char* fileName);
    static void dropLock(const char* fileName);
    // The editor of a file, or null.
    static GraphEditor* editorOfFile(const char* fileName);

protected:
    GraphEditor(CppWidget* topLevel, const char* semanticClass, const char* title, bool child, bool shower,
                bool deferredShow, bool fromFile, const char* fileName, const Class& kind);

private:
    friend class EditHistory;
    friend class EditStep;

    void construct(const char* semanticClass, const char* fileName, bool deferredShow);
    void connectEvents();
    void newBoard();
    void changeBoardExtent();

    // Pointer events.
    void downGraphic(Cback& cb);
    void upGraphic(Cback& cb);
    void moveGraphic(Cback& cb);
    void moveDownGraphic(Cback& cb);
    void doubleClickGraphic(Cback& cb);
    void timeOut(Cback& cb);
    void readOnlyDown(const FloatPoint& point, int button);
    void buttonOneDown(const FloatPoint& point, unsigned modifiers);
    void otherButtonDown(const FloatPoint& point);
    void startDrag(const FloatPoint& point, unsigned modifiers);
    void dragTo(const FloatPoint& point);
    bool pickLink(int x, int y);

    // Window events.
    void guiNew(Cback& cb);
    void guiLoad(Cback& cb);
    void guiSave(Cback& cb);
    void guiQuit(Cback& cb);
    void guiPrint(Cback& cb);
    void guiEdit(Cback& cb);
    void guiOption(Cback& cb);
    void guiIcon(Cback& cb);
    void guiLink(Cback& cb);
    void guiMenu(Cback& cb);
    void guiStatusMenu(Cback& cb);
    void guiTransform(Cback& cb);
    void guiLinksMenu(Cback& cb);
    void guiResize(Cback& cb);
    void guiHelp(Cback& cb);
    void guiReset(Cback& cb);
    void savedAs(Cback& cb);
    String relock(const char* fileName);
    void childEvent(Cback& cb);
    void childTextChanged(Cback& cb);
    void childClosing(Cback& cb);
    void closeCommentOf(IconNode& icon);
    Editor* makeChild(const char* className, const char* textOrFile, const char* title, bool fromFile);
    bool holdsChild(const Editor& child) const;
    // A child's user data (the comment's Assoc), handed to the semantic.
    void replaceChildData(Editor& child, Object* userData);

    // Moving.
    void moveGhost(IconNode& icon, const FloatPoint& point);
    void dragLinkEnd(const FloatPoint& point);
    void finishOneMove(const FloatPoint& point);
    void finishManyMove(const FloatPoint& point);
    typedef std::map<const IconNode*, FloatPoint> Deltas;  // how far each moved icon went
    void followLinks(IconNode& icon, const Deltas& deltas);
    void followMove(IconNode& icon, const Point& start);
    void finishAreaSelection();
    void drawSelectionArea(const FloatPoint& point);
    void toggleSelect(IconNode& icon);
    void updateEditMenu(int mode);
    void highlightIcon(IconNode& icon, bool on);

    // New icons and links.
    void createIcon(const char* name, int menu, int entry);
    void iconConfirmed(int action);
    void placeNewIcon(IconNode& icon, bool withComment);
    void nextInsertion();
    void finishPlacing(const FloatPoint& point);
    void startComment();
    void finishComment(const FloatPoint& point);
    void startLink();
    void finishLink(const FloatPoint& point);
    void linkConfirmed(int action);
    void recomputeLink(IconArc& link, const FloatPoint& p1, const FloatPoint& p2, bool redraw);
    void rerouteLinks(OrderedCltn* others);
    void detachLink(IconArc& link);
    void abandonLink();
    bool holdsSameLink(IconArc& link) const;

    // Icon gestures.
    void modifyCurrent();
    void modifyFinished(IconNode& icon, int action);
    void offerTransform();
    void transformCurrent(const char* className);
    void moveLinks(IconNode& oldIcon, IconNode& newIcon);
    void semanticCall(const char* (Semantic::*call)(IconNode&), IconNode& icon);
    void doubleClickAction(IconNode& icon);
    void popupChosen(const char* entry);
    void editEntry(const char* entry);
    bool mayRewind();
    // Ends the gesture in progress, leaving the drawing as it was before it.
    void abandonGesture();
    void resize();

    // Clipboard.
    OrderedCltn& closure(OrderedCltn& icons);
    bool writeToClipboard(const OrderedCltn& icons);
    OrderedCltn* readFromClipboard();
    void detachOutsideLinks(OrderedCltn& members);
    bool attachPastedLink(IconArc& link, OrderedCltn& rejects);
    void insertPasted(OrderedCltn& members, bool fromClipboard);
    void discardCut();

    // Puts back icons stored by fragmentText, with their names and places.
    void restoreFragment(const char* text);

    // Files.
    void loadDrawing(ArrayOb& drawing, String& error);
    void placeLoadedIcons();
    bool readOnly;
    bool child;

    FloatPoint downPoint;
    FloatPoint lastPoint;
    Point dragStart;  // where the icon moved by one drag started
    int status_;
    int savedStatus;
    IconArc* currentLink;
    IconNode* currentIcon_;
    CompositeIcon* currentComment;
    Dictionary childEditors;
    OrderedCltn openChildren;
    OrderedCltn insertList;
    GraphEdtGui* gui_;
    Dictionary* icon_cltn;
    ChessBoard* board_;
    Semantic* semantic_;
    DrawRect* selectionArea;
    DrawLine* rubberLine;
    bool dragEnabled;
    OrderedCltn cut_icons;
    OrderedCltn select_icons;
    OrderedCltn modify_icons;
    OrderedCltn moving_icons;   // in a move of the selection, an Assoc of each node and its offset
    OrderedCltn resizeTargets;  // the names of the icons the resize dialogue works on
    Dictionary paramPool_;
    EditHistory* history_;
    String lockedName;  // the full name of the file this editor holds the lock of
    std::map<const Editor*, Object*> childData;
    std::map<const IconNode*, EditHistory::Step> modifySteps;  // the icons as their dialogues found them
};

class GraphShower : public GraphEditor {
    DECLARE_MEMBERS(GraphShower)
public:
    GraphShower(CppWidget* topLevel, const char* semanticClass, const char* title, bool child = false,
                bool deferredShow = false, bool fromFile = false, const char* fileName = 0);
};

#endif
