// Message boxes, questions and file dialogues: one seam that tests and batch runs answer without a person.
#ifndef TRELLIS_ASK_H
#define TRELLIS_ASK_H

class String;

enum MessageKind { MESSAGE_INFO, MESSAGE_WARNING, MESSAGE_ERROR };

// Answers in place of the person. Without one the platform's boxes and
// dialogues ask; on the offscreen platform messages go to the error
// stream, questions take their default and file dialogues are cancelled.
class DialogAnswerer {
public:
    virtual ~DialogAnswerer() {}
    virtual void message(int kind, const char* title, const char* text) = 0;
    virtual bool question(const char* title, const char* text, bool byDefault) = 0;
    // Sets name and answers true, or answers false for a cancelled dialogue.
    virtual bool fileName(const char* title, const char* prompt, const char* filter, bool forSave,
                          String& name) = 0;
};

// Answers the former answerer; null gives the seam back to the platform.
DialogAnswerer* setDialogAnswerer(DialogAnswerer* answerer);

void showMessage(const char* text, const char* title = "Message", int kind = MESSAGE_INFO);
bool askQuestion(const char* text, const char* title = "Question", bool byDefault = true);
// name holds the proposal on entry. filter is an extension such as ".txt",
// or empty.
bool askFileName(String& name, const char* title, const char* prompt, const char* filter, bool forSave);
// The same for a directory; an answerer sees it as a file dialogue with an empty filter.
bool askDirectory(String& name, const char* title, const char* prompt);

#endif
