// Build Documents: each name of the list read as a drawing and its document written.
#include "panel/batch.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "editor/drawfile.h"

int buildDocuments(const char* listFile, const char* kind, std::string& log) {
    std::ifstream list(listFile);
    if (!list) {
        log += std::string(listFile) + " not exists or cannot be read\n";
        return 0;
    }
    std::filesystem::path folder = std::filesystem::path(listFile).parent_path();
    int built = 0;
    std::string line;
    while (std::getline(list, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty()) continue;
        std::string name = (folder / line).string();
        log += "Build document file " + name + "\n";
        if (access(name.c_str(), R_OK) != 0) {
            log += name + " not exists or cannot be read\n";
            continue;
        }
        String message = writeDrawingDocument(kind, name.c_str());
        if (message.size() > 0)
            log += std::string(message.asCharPointer()) + "\n";
        else
            ++built;
    }
    return built;
}
