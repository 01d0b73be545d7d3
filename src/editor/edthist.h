// EditHistory: the undo and redo of a graph editor's gestures, each kept as the icons it touched, before and
// after.
#ifndef EDITOR_EDTHIST_H
#define EDITOR_EDTHIST_H

#include <deque>
#include <string>
#include <vector>

class GraphEditor;
class IconNode;
class OrderedCltn;

// A gesture names the icons it is about to change (begin), the icons it
// made (created), and ends; the history stores those icons with their links
// as fragments, before and after. Undo takes the after icons off the
// drawing and puts the before ones back; redo the reverse.
class EditHistory {
public:
    enum { DEPTH = 200 };  // the gestures kept

    // A gesture: the icons before it, and after.
    struct Step {
        std::string gesture;
        std::vector<std::string> beforeNames;
        std::string before;
        std::vector<std::string> afterNames;
        std::string after;
    };

    explicit EditHistory(GraphEditor& editor) : editor(editor), open(false) {}

    // A gesture that outlives others (a parameter dialogue): its start,
    // kept by the caller, and its end with the icons of those names.
    Step snapshot(const char* gesture, const OrderedCltn& touched) const;
    void record(Step step, const std::vector<std::string>& created = std::vector<std::string>());

    void begin(const char* gesture, const OrderedCltn& touched);
    void begin(const char* gesture);
    void created(IconNode& icon);
    void end();
    void cancel();
    bool undo();
    bool redo();
    bool canUndo() const { return !done.empty(); }
    bool canRedo() const { return !undone.empty(); }
    // The gesture that undo would revert, or empty.
    std::string nextUndo() const;
    void clear();

private:
    void capture(OrderedCltn& icons, std::vector<std::string>& names, std::string& text) const;
    void replace(const std::vector<std::string>& goes, const std::string& comes);

    GraphEditor& editor;
    bool open;
    Step current;
    std::vector<std::string> createdNames;
    std::deque<Step> done;
    std::deque<Step> undone;
};

#endif
