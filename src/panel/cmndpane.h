// CmndPanel, the program's default window: it opens the text editor, the design panel, the
// interpreter and the block-diagram editor in this process, and keeps the recent files and the
// examples at one double click.
#ifndef PANEL_CMNDPANE_H
#define PANEL_CMNDPANE_H

#include <string>
#include <vector>

#include "panel/basepane.h"
#include "panel/recent.h"

class CppList;

extern Class class_CmndPanel;

class CmndPanel : public BaseCmndPanel {
    DECLARE_MEMBERS(CmndPanel)
public:
    // programDirectory holds the design panel's file; recentPath keeps the recent files.
    CmndPanel(const char* programDirectory, const std::string& recentPath = RecentFiles::defaultPath());

    void menuCommand(const char* label) override;
    // kind is "Block Diagram Editor...", "Textual..." or a drawing's extension (".bdg", ".stg",
    // ".edt"); an empty file is a new document.
    void openEditorOn(const char* kind, const char* file);
    // A ".bdg" opens in the block-diagram editor, a ".stg" in the state-graph editor, a ".edt" in
    // the drawing editor, any other file in the text editor.
    void dropFile(const char* name) override;
    // The editor's kind by the name's extension.
    static const char* kindOf(const char* name);

    CppList& recentList() const { return *recent; }
    CppList& exampleList() const { return *examples; }

protected:
    const char* aboutText() const override;

private:
    void buildLists();
    void fillRecent();
    void fillExamples();
    void openChosen(const char* label, const char* extension);
    void editorEnded(Cback& cb);
    void recentActivated(Cback& cb);
    void exampleActivated(Cback& cb);

    String programDirectory;
    RecentFiles recentFiles;
    std::vector<std::string> exampleFiles;
    CppList* recent;
    CppList* examples;
};

#endif
