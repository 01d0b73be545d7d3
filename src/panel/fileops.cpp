// Move, copy and remove: the name asked, the file tests, the question, then the deed.
#include "panel/fileops.h"

#include <cstdio>
#include <filesystem>

#include "quill/quillstr.h"
#include "trellis/ask.h"
#include "trellis/filetest.h"

namespace {

// The words of one operation.
struct Words {
    const char* prompt;
    const char* title;
    const char* refusal;
    const char* targetPrompt;
    const char* confirmation;
};

const Words moving = {"File to move", "Move file", "\n\n  The file cannot be moved.", "New name to move",
                      "Confirm to move the file \n"};
const Words copying = {"File to copy", "Copy file", "\n\n  The file cannot be copied.", "New name to copy",
                       "Confirm to copy the file \n"};

// The name given, or the one asked for; false when the dialogue was cancelled.
bool chooseName(const char* given, String& name, const char* title, const char* prompt) {
    if (given) {
        name = given;
        return true;
    }
    return askFileName(name, title, prompt, "", false) && name.size() > 0;
}

bool refuse(const String& name, const String& reason, const char* refusal, const char* title) {
    String text(name);
    text += reason;
    text += refusal;
    showMessage(text.asCharPointer(), title, MESSAGE_ERROR);
    return false;
}

// The source readable, the target free or writable, and the person's yes.
bool checkedPair(const char* from, const char* to, const Words& words, String& source, String& target) {
    if (!chooseName(from, source, words.title, words.prompt)) return false;
    String reason;
    if (!isReadableFile(source.asCharPointer(), reason))
        return refuse(source, reason, words.refusal, words.title);
    if (!chooseName(to, target, words.title, words.targetPrompt)) return false;
    if (!isWritableFile(target.asCharPointer(), false, reason))
        return refuse(target, reason, "\n\n  The file cannot be overwritten.", words.title);
    String question(words.confirmation);
    question += source + "\n       to\n" + target;
    return askQuestion(question.asCharPointer(), words.title);
}

bool reportFailure(const String& name, const std::error_code& error, const char* refusal, const char* title) {
    if (!error) return true;
    return refuse(name, String((", " + error.message()).c_str()), refusal, title);
}

}  // namespace

bool moveFile(const char* from, const char* to) {
    String source, target;
    if (!checkedPair(from, to, moving, source, target)) return false;
    std::error_code error;
    std::filesystem::rename(source.asCharPointer(), target.asCharPointer(), error);
    if (error) {
        // Another file system: a copy, then the source goes.
        error.clear();
        std::filesystem::copy_file(source.asCharPointer(), target.asCharPointer(),
                                   std::filesystem::copy_options::overwrite_existing, error);
        if (!error) std::filesystem::remove(source.asCharPointer(), error);
    }
    return reportFailure(source, error, moving.refusal, moving.title);
}

bool copyFile(const char* from, const char* to) {
    String source, target;
    if (!checkedPair(from, to, copying, source, target)) return false;
    std::error_code error;
    std::filesystem::copy_file(source.asCharPointer(), target.asCharPointer(),
                               std::filesystem::copy_options::overwrite_existing, error);
    return reportFailure(source, error, copying.refusal, copying.title);
}

bool removeFile(const char* given) {
    const char* refusal = "\n\n  The file cannot be deleted.";
    String name, reason;
    if (!chooseName(given, name, "Remove file", "File to remove")) return false;
    if (!isExistingFile(name.asCharPointer(), reason) || !isWritableFile(name.asCharPointer(), false, reason))
        return refuse(name, reason, refusal, "Remove file");
    if (!askQuestion((name + "\n\n  Confirm to delete the file ?").asCharPointer(), "Remove file"))
        return false;
    std::error_code error;
    std::filesystem::remove(name.asCharPointer(), error);
    return reportFailure(name, error, refusal, "Remove file");
}
