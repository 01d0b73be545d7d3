// Helpers of the toolkit's tests: the error stream and answers in place of a person.
#ifndef TESTS_TRELLIS_TRLTEST_H
#define TESTS_TRELLIS_TRLTEST_H

#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "../quill/testutil.h"
#include "quill/quillstr.h"
#include "trellis/ask.h"

// What the program writes on the error stream while it lives.
class CerrCapture {
public:
    CerrCapture() : former(std::cerr.rdbuf(text.rdbuf())) {}
    ~CerrCapture() { std::cerr.rdbuf(former); }
    std::string str() const { return text.str(); }

private:
    std::ostringstream text;
    std::streambuf* former;
};

// Answers the dialogues in a test: it records the messages and questions,
// answers the questions from a list (then by their default) and the file
// dialogues with a name, or cancels them with an empty one.
class Answers : public DialogAnswerer {
public:
    Answers() : former(setDialogAnswerer(this)) {}
    ~Answers() override { setDialogAnswerer(former); }

    void message(int, const char* title, const char* text) override {
        messages.push_back(std::string(title) + ": " + text);
    }
    bool question(const char*, const char* text, bool byDefault) override {
        questions.push_back(text);
        if (replies.empty()) return byDefault;
        bool reply = replies.front();
        replies.erase(replies.begin());
        return reply;
    }
    bool fileName(const char* title, const char*, const char*, bool, String& name) override {
        dialogues.push_back(title);
        if (file.empty()) return false;
        name = file.c_str();
        return true;
    }

    std::vector<std::string> messages;
    std::vector<std::string> questions;
    std::vector<std::string> dialogues;
    std::vector<bool> replies;
    std::string file;

private:
    DialogAnswerer* former;
};

#endif
