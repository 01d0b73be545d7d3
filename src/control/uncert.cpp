// UncertainModel: the parameter file read line by line, and the plant evaluated at given values.
#include "control/uncert.h"

#include <fstream>
#include <sstream>

#include "algebra/exprtext.h"

namespace {

Matrix matrixOf(const DynOp& s, char name) {
    switch (name) {
        case 'A':
            return s.stateA();
        case 'B':
            return s.stateB();
        case 'C':
            return s.stateC();
        default:
            return s.getD();
    }
}

}  // namespace

bool UncertainModel::read(const char* fileName, const DynOp& plant, UncertainModel& model,
                          std::string& error) {
    std::ifstream in(fileName);
    if (!in) {
        error = std::string("cannot read the parameter file ") + fileName;
        return false;
    }
    model = UncertainModel();
    model.plant = plant.inTimeDomain(plant);
    std::string line;
    for (unsigned number = 1; std::getline(in, line); ++number) {
        if (!model.parseLine(line.substr(0, line.find('#')), error)) {
            error = std::string(fileName) + ":" + std::to_string(number) + ": " + error;
            return false;
        }
    }
    if (model.parameters_.empty()) error = std::string(fileName) + ": no uncertain parameter is declared";
    return error.empty();
}

bool UncertainModel::parseLine(const std::string& line, std::string& error) {
    std::istringstream words(line);
    std::string first;
    if (!(words >> first)) return true;
    if (first == "parameter") return parseParameter(words, error);
    if (first.size() == 1 && std::string("ABCD").find(first[0]) != std::string::npos)
        return parseEntry(first[0], words, error);
    error = "\"" + first + "\" is neither parameter nor a matrix A, B, C or D";
    return false;
}

bool UncertainModel::parseParameter(std::istream& words, std::string& error) {
    std::string name, rest;
    double low = 0.0, high = 0.0;
    if (!(words >> name >> low >> high) || (words >> rest)) {
        error = "a parameter needs a name and its two bounds";
        return false;
    }
    for (const VariableS& v : parameters_)
        if (name == v.getName().asCharPointer()) {
            error = "the parameter " + name + " is declared twice";
            return false;
        }
    parameters_.push_back(
        VariableS(RFMatrix(), int(parameters_.size()), name.c_str(), float(low), float(high)));
    return true;
}

bool UncertainModel::parseEntry(char matrix, std::istream& words, std::string& error) {
    unsigned row = 0, col = 0;
    std::string text;
    if (!(words >> row >> col) || !std::getline(words, text)) {
        error = std::string("an entry of ") + matrix + " needs its row, its column and an expression";
        return false;
    }
    Matrix M = matrixOf(*plant, matrix);
    if (row < 1 || col < 1 || row > M.rowNumber() || col > M.columnNumber()) {
        error = std::string("the entry (") + std::to_string(row) + ", " + std::to_string(col) +
                ") is outside " + matrix + ", which is " + std::to_string(M.rowNumber()) + " x " +
                std::to_string(M.columnNumber());
        return false;
    }
    text.erase(0, text.find_first_not_of(" \t"));
    Entry e{matrix, row - 1, col - 1, ExpressionS()};
    if (!parseExpression(text, parameters_, e.expression, error)) return false;
    entries.push_back(e);
    return true;
}

std::unique_ptr<DynOp> UncertainModel::at(const std::vector<double>& values) const {
    Matrix M[4] = {plant->stateA(), plant->stateB(), plant->stateC(), plant->getD()};
    for (Entry e : entries) {
        for (unsigned i = 0; i < parameters_.size() && i < values.size(); ++i)
            e.expression.setVariable(parameters_[i].getName().asCharPointer(), values[i]);
        M[std::string("ABCD").find(e.matrix)](e.row, e.col) = e.expression.evaluate()(0, 0).real();
    }
    DynOp s(M[0], M[1], M[2], M[3], plant->controlNumber(), plant->measureNumber(),
            plant->feedForwardNumber(), false);
    return plant->inTimeDomain(s);
}
