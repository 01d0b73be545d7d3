// Help topics looked up by keyword in "helpfile.tarn" and shown by the desktop or in a box.
#include "trellis/help.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include "quill/filename.h"
#include "trellis/ask.h"
#include "trellis/qtext.h"

namespace {

bool readable(const std::string& path) { return std::ifstream(path).good(); }

std::string joined(const char* directory, const char* separator, const char* name) {
    std::string path = directory;
    if (!path.empty() && path.back() != '/') path += separator;
    return path + name;
}

}  // namespace

String helpFilePath(const char* helpFile) {
    const char* name = helpFile && *helpFile ? helpFile : "helpfile.tarn";
    if (readable(name)) return String(name);
    const char* helpPath = std::getenv("TARN_HELP_PATH");
    if (helpPath && *helpPath && readable(joined(helpPath, "/", name)))
        return String(joined(helpPath, "/", name).c_str());
    const char* tarnPath = std::getenv("TARN_PATH");
    if (tarnPath && *tarnPath) {
        std::string path = std::string(tarnPath) + "/help/" + name;
        if (readable(path)) return String(path.c_str());
    }
    return String();
}

bool helpTopic(const char* keyword, const char* helpFile, String& topic, String& message) {
    std::string word = keyword && *keyword ? keyword : "contents";
    String path = helpFilePath(helpFile);
    std::ifstream in(path.asCharPointer());
    if (path.size() == 0 || !in) {
        message = "Help file not found\n";
        message += "\n Keyword = ";
        message += word.c_str();
        return false;
    }
    std::string line;
    while (std::getline(in, line)) {
        if (line.compare(0, word.size(), word) != 0) continue;
        if (line.size() > word.size() && line[word.size()] != ' ' && line[word.size()] != '\t') continue;
        topic = String(line.substr(word.size()).c_str()).stripBoth();
        return true;
    }
    message = "No Help Present";
    message += "\n Keyword = ";
    message += word.c_str();
    return false;
}

void showHelp(const char* keyword, const char* helpFile) {
    String topic, message;
    if (!helpTopic(keyword, helpFile, topic, message)) return showMessage(message.asCharPointer(), "Help");
    String file = directoryPart(helpFilePath(helpFile).asCharPointer()) + "/" + topic;
    if (!QFileInfo(toQt(file)).isFile()) return showMessage(topic.asCharPointer(), "Help");
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(toQt(absolutePath(file.asCharPointer())))))
        showMessage((String("Error showing help: ") + topic).asCharPointer(), "Help", MESSAGE_ERROR);
}
