// CppGC and its table; colour names through resources, grey levels and Qt's names.
#include "trellis/cppgc.h"

#include <QColor>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

DEFINE_CLASS(CppGC, Object, 1, 0)

namespace {

std::map<std::string, std::string>& resources() {
    static std::map<std::string, std::string>* names =
        new std::map<std::string, std::string>{{"highlight", "blue"}};
    return *names;
}

// "grey50", "gray100": a grey of that percent.
bool greyLevel(const char* name, double& level) {
    if (std::strncmp(name, "grey", 4) != 0 && std::strncmp(name, "gray", 4) != 0) return false;
    const char* digits = name + 4;
    if (!*digits) return false;
    char* end = 0;
    long percent = std::strtol(digits, &end, 10);
    if (*end || percent < 0 || percent > 100) return false;
    level = percent / 100.0;
    return true;
}

}  // namespace

// The table starts with the default context, so that any other one made
// first can't take its number.
std::vector<CppGC*>& CppGC::table() {
    static std::vector<CppGC*>* contexts = new std::vector<CppGC*>{new CppGC(0)};
    return *contexts;
}

CppGC::CppGC(int number)
    : foreground("black"),
      background("white"),
      lineWidth(1.0),
      dashed(false),
      fontFamily("Helvetica"),
      fontSize(12.0),
      function(COPY),
      number_(number),
      references(1) {}

CppGC::CppGC() : CppGC(int(table().size())) { table().push_back(this); }

CppGC::~CppGC() noexcept(false) {
    if (number_ < int(table().size()) && table()[number_] == this) table()[number_] = 0;
}

CppGC& CppGC::defaultGC() { return *table()[0]; }

CppGC& CppGC::byNumber(int number) {
    if (number < 0 || number >= int(table().size()) || !table()[number]) return defaultGC();
    return *table()[number];
}

void CppGC::release() {
    if (number_ == 0 || --references > 0) return;
    delete this;
}

bool colorOf(const char* name, double& red, double& green, double& blue) {
    auto resource = resources().find(name);
    if (resource != resources().end()) name = resource->second.c_str();
    double level;
    if (greyLevel(name, level)) {
        red = green = blue = level;
        return true;
    }
    if (!QColor::isValidColorName(QLatin1String(name))) return false;
    QColor color = QColor::fromString(QLatin1String(name));
    red = color.redF();
    green = color.greenF();
    blue = color.blueF();
    return true;
}

void setColorResource(const char* name, const char* color) { resources()[name] = color; }

void removeColorResource(const char* name) { resources().erase(name); }
