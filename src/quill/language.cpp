// Language: the file search, the loading of ".lng" tables and the current language.
#include "quill/language.h"

#include <cstdlib>
#include <fstream>
#include <ostream>
#include <string>

#include "quill/assoc.h"
#include "quill/quillerr.h"

Symbol languageNotInit("notInit");
Symbol languageItalian("italian");
Symbol languageEnglish("english");
Symbol Flushed("Flushed");

namespace {

Language* currentLanguage = 0;
std::string programDirectoryValue;

void terminateLanguage(Class*) { Language::clearCurrent(); }

void initLanguage(Class* c) { c->setTerminator(terminateLanguage); }

bool readable(const std::string& path) {
    std::ifstream in(path.c_str());
    return in.is_open();
}

std::string inDirectory(const std::string& directory, const char* fileName) {
    if (directory.empty() || directory.back() == '/') return directory + fileName;
    return directory + "/" + fileName;
}

std::string environmentValue(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

bool isBlank(char c) { return c == ' ' || c == '\t'; }

// One side of an entry line, from position to the first stop character
// outside quotes (or the end). A quoted side keeps its blanks; an unquoted
// one loses those at its ends. Escapes are decoded in both.
std::string readSide(const std::string& line, size_t& position, char stop) {
    while (position < line.size() && isBlank(line[position])) ++position;
    std::string side;
    bool quoted = position < line.size() && line[position] == '"';
    if (quoted) ++position;
    size_t lastKept = 0;  // length of side up to its last non-blank or escaped character
    while (position < line.size()) {
        char c = line[position];
        if (quoted ? c == '"' : c == stop) break;
        ++position;
        if (c == '\\' && position < line.size()) {
            char e = line[position++];
            side += e == 'n' ? '\n' : e == 't' ? '\t' : e;
            lastKept = side.size();
            continue;
        }
        side += c;
        if (quoted || !isBlank(c)) lastKept = side.size();
    }
    if (quoted && position < line.size()) ++position;  // the closing quote
    side.resize(lastKept);
    return side;
}

// Splits an entry line into key and text. A line without "=" has an empty text.
void splitEntry(const std::string& line, std::string& key, std::string& value) {
    size_t position = 0;
    key = readSide(line, position, '=');
    while (position < line.size() && line[position] != '=') ++position;
    if (position >= line.size()) {
        value.clear();
        return;
    }
    ++position;
    value = readSide(line, position, '\0');
}

// "<prefix><file> at line <line>", the opening of a bad line's report.
String atLine(const char* prefix, const char* file, int line) {
    String text(prefix);
    text += file;
    text += " at line ";
    text += line;
    return text;
}

bool isSkipped(const std::string& line) {
    size_t i = 0;
    while (i < line.size() && isBlank(line[i])) ++i;
    return i == line.size() || line[i] == '#';
}

}  // namespace

DEFINE_CLASS(Language, Object, 1, initLanguage)

Language::Language() : name_(currentLanguageName(1)), state_(NOT_INIT) {}

Language::Language(const char* name) : name_(String(name ? name : "").toLower()), state_(NOT_INIT) {}

Language::~Language() noexcept(false) {
    if (currentLanguage == this) currentLanguage = 0;
    table.deepDeleteContents();
}

String Language::fileName(const char* baseName) const {
    String file(baseName ? baseName : "");
    file += name_.name();
    file += ".lng";
    return file;
}

int Language::load(const char* baseName) {
    String path = findFile(fileName(baseName).asCharPointer());
    if (path.size() == 0) return 0;
    std::ifstream in(path.asCharPointer());
    std::string line;
    int lineNumber = 0;
    int added = 0;
    while (std::getline(in, line)) {
        ++lineNumber;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (isSkipped(line)) continue;
        std::string key, value;
        splitEntry(line, key, value);
        if (addPair(key.c_str(), value.c_str(), path.asCharPointer(), lineNumber)) ++added;
    }
    return added;
}

int Language::loadDefaults(const char* const* texts) {
    int added = 0;
    for (; texts && *texts; ++texts) {
        if (**texts == '\0' || hasKey(*texts)) continue;
        if (addKey(*texts, *texts)) ++added;
    }
    return added;
}

bool Language::addKey(const char* key, const char* value) {
    return addPair(key ? key : "", value ? value : "", 0, 0);
}

bool Language::addPair(const String& key, const String& value, const char* file, int line) {
    String fault;
    if (key.size() == 0) {
        fault = file ? atLine("Invalid empty key in file ", file, line) : String("Invalid empty key");
    } else if (value.size() == 0) {
        fault = file ? atLine("Invalid empty value in file ", file, line) : String("Invalid empty value");
    } else if (table.includesKey(key)) {
        if (file) {
            fault = atLine("Key of file ", file, line);
            fault += " already present in language ";
            fault += name_.name();
        } else {
            fault = String("Key already present ") + key;
        }
    } else {
        table.atPut(*new String(key), *new String(value));
        updateState();
        return true;
    }
    reportError(SEV_WARNING, fault.asCharPointer());
    return false;
}

void Language::updateState() {
    if (name_.isEqual("italian"))
        state_ = ITALIAN;
    else
        state_ = ENGLISH;  // the keys themselves are English
}

const char* Language::text(const char* key) const {
    if (!key) return "";
    Object* pair = table.assocAt(String(key));
    if (pair == nil) return key;
    return static_cast<LookupKey*>(pair)->value()->asCharPointer();
}

bool Language::hasKey(const char* key) const { return key && table.includesKey(String(key)); }

void Language::flush() {
    table.deepDeleteContents();
    state_ = NOT_INIT;
    cbackOn(Flushed);
}

const Symbol& Language::stateName() const {
    switch (state_) {
        case ITALIAN:
            return languageItalian;
        case ENGLISH:
            return languageEnglish;
        default:
            return languageNotInit;
    }
}

void Language::printOn(std::ostream& os) const {
    os << className() << "(" << name_.name().asCharPointer() << ": " << table.size() << " texts)";
}

String Language::findFile(const char* fileName) {
    if (!fileName || !*fileName) return String();
    std::string candidates[] = {
        fileName,
        environmentValue("TARN_LANG_PATH").empty()
            ? std::string()
            : inDirectory(environmentValue("TARN_LANG_PATH"), fileName),
        environmentValue("TARN_PATH").empty() ? std::string()
                                              : inDirectory(environmentValue("TARN_PATH") + "/bin", fileName),
        programDirectoryValue.empty() ? std::string() : inDirectory(programDirectoryValue, fileName),
    };
    for (const std::string& candidate : candidates)
        if (!candidate.empty() && readable(candidate)) return String(candidate.c_str());
    return String();
}

void Language::setProgramDirectory(const char* directory) {
    programDirectoryValue = directory ? directory : "";
}

Language* Language::current() { return currentLanguage; }

void Language::setCurrent(Language* language) {
    QASSERT(currentLanguage == 0);
    currentLanguage = language;
}

void Language::clearCurrent() {
    Language* language = currentLanguage;
    currentLanguage = 0;
    delete language;
}

String currentLanguageName(int index) {
    QASSERT(index == 0 || index == 1);
    String name;
    if (currentLanguage)
        name = currentLanguage->name().name();
    else
        name = environmentValue("TARN_LANG").c_str();
    if (name.size() == 0) name = "english";
    return index == 1 ? name.toLower() : name;
}

const char* languageText(const char* key) {
    return currentLanguage ? currentLanguage->text(key) : (key ? key : "");
}
