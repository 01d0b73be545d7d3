// RecentFiles: a text file of names, one a line, the most recent first.
#include "panel/recent.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

RecentFiles::RecentFiles(const std::string& path) : path(path) {
    std::ifstream in(path);
    std::string line;
    while (list.size() < CAPACITY && std::getline(in, line))
        if (!line.empty()) list.push_back(line);
}

std::string RecentFiles::defaultPath() {
    const char* home = std::getenv("HOME");
    return std::string(home ? home : ".") + "/.config/Tarn/recent.tarn";
}

void RecentFiles::add(const std::string& name) {
    list.erase(std::remove(list.begin(), list.end(), name), list.end());
    list.insert(list.begin(), name);
    if (list.size() > CAPACITY) list.resize(CAPACITY);
    write();
}

// A folder that can't be made leaves the list to this session.
void RecentFiles::write() const {
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
    std::ofstream out(path);
    for (const std::string& name : list) out << name << '\n';
}
