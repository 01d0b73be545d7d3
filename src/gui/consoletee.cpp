// ConsoleTee: the standard output copied to a panel's console and to a file.
#include "gui/consoletee.h"

#include <iostream>

#include "gui/dynwin.h"

ConsoleTee::ConsoleTee(DynamicPanelWindow* p, const char* c, const char* fileName)
    : original(std::cout.rdbuf()), panel(p && p->has(c) ? p : 0), control(c) {
    if (fileName && *fileName) file.open(fileName, std::ios::app);
    std::cout.rdbuf(this);
}

ConsoleTee::~ConsoleTee() {
    flushLine();
    std::cout.rdbuf(original);
}

int ConsoleTee::overflow(int c) {
    if (c == traits_type::eof()) return traits_type::not_eof(c);
    original->sputc(char(c));
    if (file) file.put(char(c));
    if (c == '\n')
        flushLine();
    else
        line += char(c);
    return c;
}

int ConsoleTee::sync() {
    original->pubsync();
    if (file) file.flush();
    return 0;
}

void ConsoleTee::flushLine() {
    if (panel && !line.empty()) panel->appendConsole(control.c_str(), (line + "\n").c_str());
    line.clear();
}
