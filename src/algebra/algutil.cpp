// Algebra: matrix text, labelled printing and one object to or from a file.
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "algebra/algebra.h"
#include "quill/objio.h"
#include "quill/safefile.h"

WorkspaceLookup workspaceMatrixLookup = 0;

namespace {

void replaceAll(std::string& s, const char* from, const char* to) {
    size_t n = std::string(from).size(), m = std::string(to).size();
    for (size_t at = s.find(from); at != std::string::npos; at = s.find(from, at + m)) s.replace(at, n, to);
}

bool holdsLooseBlank(const std::string& s) {
    return s.find(" ;") != std::string::npos || s.find(" ]") != std::string::npos ||
           s.find("[ ") != std::string::npos || s.find(" [") != std::string::npos;
}

Matrix lookedUp(const std::string& text) {
    std::string name(text);
    name.erase(0, name.find_first_not_of(' '));
    name.erase(name.find_last_not_of(' ') + 1);
    Matrix m;
    int found = workspaceMatrixLookup ? workspaceMatrixLookup(name.c_str(), m) : -1;
    if (found < 0)
        std::cout << "Warning, the workspace is empty" << std::endl;
    else if (found == 0)
        std::cout << "Warning, the name " << name << " is not in the workspace" << std::endl;
    return found > 0 ? m : Matrix();
}

// The rows as read; the first row sets the width.
std::vector<std::vector<double>> tokenized(const std::string& s) {
    std::vector<std::vector<double>> rows(1);
    for (size_t at = s.find('[') + 1; at <= s.size();) {
        size_t end = s.find_first_of(" ;]", at);
        if (end == std::string::npos) end = s.size();
        if (end > at) rows.back().push_back(std::strtod(s.substr(at, end - at).c_str(), 0));
        if (end == s.size() || s[end] == ']') break;
        if (s[end] == ';') rows.emplace_back();
        at = end + 1;
    }
    return rows;
}

}  // namespace

// Bracket text is a matrix literal; any other text names a workspace matrix. A row
// whose length differs from the first row's is reported; the matrix keeps the
// first row's width, short rows padded with zeros.
Matrix Algebra::parseMatrix(const char* text) {
    std::string s(text ? text : "");
    if (s.find('[') == std::string::npos) return lookedUp(s);
    replaceAll(s, ",", " ");
    while (holdsLooseBlank(s)) {
        replaceAll(s, " ;", ";");
        replaceAll(s, " ]", "]");
        replaceAll(s, "[ ", "[");
        replaceAll(s, " [", "[");
    }
    std::vector<std::vector<double>> rows = tokenized(s);
    unsigned width = unsigned(rows[0].size());
    bool reported = false;
    Matrix m(unsigned(rows.size()), width);
    for (unsigned i = 0; i < rows.size(); ++i) {
        if (rows[i].size() != width && !reported) {
            std::cout << "different matrix row lengths" << std::endl;
            reported = true;
        }
        for (unsigned j = 0; j < width && j < rows[i].size(); ++j) m(i, j) = rows[i][j];
    }
    return m;
}

void Algebra::printNamed(const Matrix& m, const char* label) {
    std::cout << label << " " << m << "\n" << std::flush;
}

void Algebra::printNamed(double x, const char* label) {
    std::cout << label << " " << x << "\n" << std::flush;
}

// The file is replaced whole or not at all; why it could not be is shown on the console.
bool Algebra::storeToFile(const Object& object, const char* fileName) {
    String failure = writeSafely(fileName, [&object](std::ostream& os) { storeObject(os, object); });
    if (failure.size() > 0) std::cout << failure.asCharPointer() << std::endl;
    return failure.size() == 0;
}

// A read error (another class in the file, a damaged file) is shown on the console.
bool Algebra::readFromFile(Object*& object, const char* className, const char* fileName) {
    object = nil;
    std::ifstream is(fileName);
    if (!is) return false;
    String error;
    Object* read = readFromChecked(error, is, className);
    if (!read || read == nil) {
        if (error.size() > 0) std::cout << error.asCharPointer() << std::endl;
        return false;
    }
    object = read;
    return true;
}
