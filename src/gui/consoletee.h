// ConsoleTee: while it lives, what the program writes on the standard output also goes, line by
// line, to a console control of a panel and to a file.
#ifndef GUI_CONSOLETEE_H
#define GUI_CONSOLETEE_H

#include <fstream>
#include <streambuf>
#include <string>

class DynamicPanelWindow;

class ConsoleTee : public std::streambuf {
public:
    // An empty fileName or a control the panel does not hold leaves that copy out; the file is
    // appended to.
    ConsoleTee(DynamicPanelWindow* panel, const char* control, const char* fileName);
    ConsoleTee(const ConsoleTee&) = delete;
    ConsoleTee& operator=(const ConsoleTee&) = delete;
    ~ConsoleTee() override;

protected:
    int overflow(int c) override;
    int sync() override;

private:
    void flushLine();

    std::streambuf* original;
    DynamicPanelWindow* panel;
    std::string control, line;
    std::ofstream file;
};

#endif
