// File-name helpers and fileCopy, on the C runtime's files.
#include "quill/filename.h"

#include <unistd.h>

#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "quill/quillerr.h"
#include "quill/safefile.h"

namespace {

std::string currentDirectory() {
    std::vector<char> buffer(256);
    while (!getcwd(buffer.data(), buffer.size())) {
        if (buffer.size() > 65536) return "/";
        buffer.resize(buffer.size() * 2);
    }
    return buffer.data();
}

// The words between separators of an absolute path, "." and ".." resolved.
std::vector<std::string> pathWords(const std::string& path) {
    std::vector<std::string> words;
    size_t start = 0;
    while (start <= path.size()) {
        size_t end = path.find('/', start);
        if (end == std::string::npos) end = path.size();
        std::string word = path.substr(start, end - start);
        if (word == "..") {
            if (!words.empty()) words.pop_back();
        } else if (!word.empty() && word != ".") {
            words.push_back(word);
        }
        start = end + 1;
    }
    return words;
}

// The part behind the last separator.
const char* lastWord(const char* name) {
    const char* slash = std::strrchr(name, '/');
    return slash ? slash + 1 : name;
}

// The dot that opens the extension of the last word, or null.
const char* extensionDot(const char* word) {
    const char* dot = std::strrchr(word, '.');
    return dot && dot != word ? dot : 0;
}

[[noreturn]] void cannotOpen(const char* name) {
    setError(GENERICERR, SEV_ERROR, "CANNOT_OPEN", "cannot open file ", name, " in fileCopy function");
}

[[noreturn]] void copyFailed(const char* from, const char* to) {
    setError(GENERICERR, SEV_ERROR, "FILECOPY_ERROR", "error coping file ",
             formatText("%s on file %s", from, to), "");
}

}  // namespace

String absolutePath(const char* name) {
    std::string path = name ? name : "";
    if (path.empty() || path[0] != '/') path = currentDirectory() + "/" + path;
    std::string result;
    for (const std::string& word : pathWords(path)) result += "/" + word;
    return String(result.empty() ? "/" : result.c_str());
}

String directoryPart(const char* name) {
    const char* text = name ? name : "";
    const char* slash = std::strrchr(text, '/');
    if (!slash) return String(".");
    if (slash == text) return String("/");
    return String(std::string(text, slash).c_str());
}

String baseName(const char* name) {
    const char* word = lastWord(name ? name : "");
    const char* dot = extensionDot(word);
    return String(dot ? std::string(word, dot).c_str() : word);
}

String fileNamePart(const char* name) { return String(lastWord(name ? name : "")); }

String extensionPart(const char* name) {
    const char* dot = extensionDot(lastWord(name ? name : ""));
    return String(dot ? dot : "");
}

void fileCopy(const char* from, const char* to) {
    if (!from) from = "";
    if (!to) to = "";
    std::ifstream in(from, std::ios::binary);
    if (!in) cannotOpen(from);
    // The copy replaces the target whole, or leaves it as it was.
    std::unique_ptr<SafeFile> out;
    if (errorTextOf([&] { out.reset(new SafeFile(to)); }).size() > 0) cannotOpen(to);
    char buffer[8192];
    while (in.read(buffer, sizeof buffer) || in.gcount() > 0) out->stream().write(buffer, in.gcount());
    if (in.bad() || errorTextOf([&] { out->commit(); }).size() > 0) copyFailed(from, to);
}
