// Semantic: what one kind of drawing means to the graph editor: its icons, links, commands, checks and
// dialogues.
#ifndef EDITOR_SEMANTIC_H
#define EDITOR_SEMANTIC_H

#include <vector>

#include "quill/point.h"
#include "quill/quillstr.h"

class Cback;
class Dictionary;
class GraphEditor;
class IconArc;
class IconNode;
class OrderedCltn;
class IconMetaData;
class ParamEditor;
class Section;

extern Class class_Semantic;
extern Symbol CommentKey;  // the key of the user data of a comment's editor

// The document kinds of createDocument.
enum DocumentKind { DOCUMENT_HTML = 0, DOCUMENT_LATEX = 1, DOCUMENT_ASCII = 2, DOCUMENT_RTF = 3 };

// The base is itself a kind of drawing: "Rectangle" nodes and two link
// kinds. Every operation that can refuse answers null, or the message.
class Semantic : public Object {
    DECLARE_MEMBERS(Semantic)
public:
    Semantic();
    // Stream form: the base, then width and height in text; the binary form
    // holds only the base.
    Semantic(std::istream& is, Object* where);
    Semantic(BinIstream& is, Object* where);
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

    // Forwarders to the editor's window.
    void showError(const char* text) const;
    void showWarning(const char* text) const;
    bool askQuestion(const char* text) const;
    void showMessage(const char* text) const;
    void clearMessage() const;
    void setStatus(const char* text) const;

    int width() const { return width_; }
    int height() const { return height_; }
    void setWidth(int n) { width_ = n; }
    void setHeight(int n) { height_ = n; }
    bool isModified() const;
    void setModified(bool flag);
    bool editable() const;
    const char* version() const { return "6.2"; }
    void openFile(const char* name);
    GraphEditor* graphEditor() const { return editor; }
    void attachEditor(Object& editor);
    // The five document commands' sensitivity.
    void enableDocumentCommands(bool flag);
    // Opens the file read-only in a child window titled title.
    const char* viewFile(const char* fileName, const char* title);
    // Documents without a window: the drawing's icons, which stay the
    // caller's, and the file it was read from.
    void setDrawing(Dictionary& icons, const char* fileName);

    // The operations a kind of drawing redefines.
    virtual void setEditorSizes();
    virtual IconNode* newIcon(const char* name, int menu, int entry);
    virtual OrderedCltn& iconNames(OrderedCltn& cltn);
    virtual OrderedCltn& initialIcons(OrderedCltn& cltn);
    virtual void commandNames(OrderedCltn& cltn);
    virtual const char* executeCommand(const char* name);
    virtual const char* checkCollision(IconNode& icon, const OrderedCltn& collisions);
    virtual int clampPosition(IconNode& icon, Point& point);
    virtual void uniqueName(IconNode& icon, const Dictionary& icons);
    virtual int findPlace(IconNode& icon, int x0, int y0, int x1, int y1, int stepX, int stepY);
    virtual void childEditorEvent(Object& child, Cback& cb, Object* senderData, Object* userData);
    virtual void saveComment(const char* text, Object* userData);
    virtual String& loadComment(String& result, Object* userData);
    virtual void closeComment(Object* userData);
    virtual const char* checkLink(IconNode& from, IconNode& to, const Class& linkClass, const FloatPoint& p1,
                                  const FloatPoint& p2);
    virtual const char* canLinkFrom(IconNode& icon, IconArc& link, const FloatPoint& point);
    virtual const char* canLinkTo(IconNode& icon, IconArc& link, const FloatPoint& point);
    virtual OrderedCltn* placeLink(IconArc& link, IconNode& from, IconNode& to, const FloatPoint& p1,
                                   const FloatPoint& p2);
    virtual ParamEditor* newParamEditor(IconNode& icon, const char* title, OrderedCltn& labels,
                                        OrderedCltn& values);
    virtual int modifyIcon(IconNode& icon, const char* title);
    virtual int openParamEditor(IconNode& icon, const Class& cls, const char* title);
    virtual void deleteIcon(IconNode* icon);
    virtual const char* commentIcon(IconNode& icon);
    virtual const char* openIcon(IconNode& icon);
    virtual OrderedCltn& linkNames(OrderedCltn& cltn);
    virtual void fileSaved();
    virtual void fileLoaded();
    virtual void fileCreated();
    virtual void copyIconData(IconNode& newIcon, IconNode& oldIcon);
    virtual IconNode* transformIcon(IconNode* icon, const char* className);
    virtual void transformNames(IconNode& icon, OrderedCltn& cltn);
    virtual void clearDrawing();
    virtual void iconInserted(IconNode& icon);
    virtual void prepareIcon(IconNode& icon);
    virtual void iconMoved(IconNode& icon);
    virtual void iconRemoved(IconNode& icon);
    virtual int canPaste(const OrderedCltn& cltn);
    virtual int resizeIcon(IconNode& icon, double width, double height);
    virtual int resizeFont(IconNode& icon, double scale);
    virtual void linksFromIcon(IconNode& icon, OrderedCltn& cltn);
    virtual int needsPlacing(IconNode& icon);
    virtual int snapPosition(IconNode& icon, FloatPoint& point);
    virtual void iconDragged(IconNode& icon, const FloatPoint& point);
    virtual void moveStarted(IconNode& icon);
    virtual void moveEnded(IconNode& icon);
    virtual IconNode* relinkTarget(IconArc& link, int end, IconNode& from, IconNode& to, const FloatPoint& p1,
                                   const FloatPoint& p2, int flag);
    virtual IconArc* newLink(const char* name);
    virtual void deleteLink(IconArc* link);
    virtual const char* checkNewLink(IconNode& from, IconNode& to, IconArc& link, const FloatPoint& p1,
                                     const FloatPoint& p2);
    virtual String& linkTitle(String& result, IconArc& link);
    virtual const Class& linkClass(const char* name);
    virtual void zoomCenter(double x, double y, double size);
    virtual String& documentCreator(String& result);
    virtual String& documentFileName(String& result, int kind);
    virtual String& writeGraphicFile(String& result, int kind, const char* baseName);
    virtual const char* fileExtension();
    // Writes the document of the kind, composing it when none is given;
    // answers null or the message.
    virtual const char* createDocument(int kind, Section* document = 0);
    virtual Section* composeDocument(int kind);
    virtual void beforeDocumentWrite(Section& document, int kind);
    // Called before an item's document joins its section: a kind of drawing may change either.
    virtual void beforeSectionInsert(Section& section, Section& document, const IconMetaData& item);
    virtual const char* viewDocument(int kind);
    // The fields that a kind of drawing gives to the document of an icon.
    virtual void documentFields(IconNode& icon);
    // The document's title item, a new one.
    virtual IconMetaData* titleMetaData();
    virtual String& commentFileName(String& result, IconNode& icon);

    // The pooled parameter dialogues tell their end here.
    void paramPressed(Cback& cb);

protected:
    // Appends a command row: a String, or an ArrayOb of text, mnemonic and accelerator.
    static void addCommand(OrderedCltn& cltn, const char* text, const char* mnemonic,
                           const char* accelerator);

private:
    GraphEditor& attached() const;
    const Dictionary& drawingIcons() const;
    String drawingBase() const;
    // The pictures of the icons for a drawing read without a window.
    void drawingPictures(OrderedCltn& pictures) const;
    void makeDocumentSection(std::vector<IconMetaData*>& items, Section& document);
    void fillDocument(std::vector<IconMetaData*>& items, Section& document);
    void addMetaDataToSection(Section& root, const IconMetaData& item);
    void returnToPool(ParamEditor& dialog, const Class& cls);
    ParamEditor* takeFromPool(const Class& cls);

    int width_;
    int height_;
    bool modified;
    GraphEditor* editor;
    Dictionary* headlessIcons = 0;
    String headlessFile;
};

#endif
