// RecentFiles: the last files opened from the panel, kept between sessions.
#ifndef PANEL_RECENT_H
#define PANEL_RECENT_H

#include <string>
#include <vector>

class RecentFiles {
public:
    static const unsigned CAPACITY = 10;

    // The list kept in the file at path, read at once; a missing file is an empty list.
    explicit RecentFiles(const std::string& path);
    // "$HOME/.config/Tarn/recent.tarn".
    static std::string defaultPath();

    // The most recent first.
    const std::vector<std::string>& names() const { return list; }
    // The name goes to the front, once, and the list is written back.
    void add(const std::string& name);

private:
    void write() const;

    std::string path;
    std::vector<std::string> list;
};

#endif
