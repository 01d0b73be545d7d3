// UncertainModel: a plant whose matrix entries hang on named uncertain parameters that vary in a
// range, read from a text file of parameters and entry expressions.
#ifndef CONTROL_UNCERT_H
#define CONTROL_UNCERT_H

#include <memory>
#include <string>
#include <vector>

#include "algebra/exprs.h"
#include "control/dynop.h"

// The parameter file, one statement a line ('#' starts a comment):
//     parameter <name> <low> <high>
//     <A|B|C|D> <row> <column> <expression>     rows and columns counted from 1
// An expression is infix over numbers and the parameters declared before it: + - *, unary minus
// and brackets, e.g. "-2 * a" or "a * (1 + b)".
class UncertainModel {
public:
    // The model of the plant (copied) read from fileName; false with the message in error, which
    // names the file and the line.
    static bool read(const char* fileName, const DynOp& plant, UncertainModel& model, std::string& error);

    const std::vector<VariableS>& parameters() const { return parameters_; }
    // The plant with each parameter at its value (in the order of parameters()), in the plant's
    // time domain and with its partition.
    std::unique_ptr<DynOp> at(const std::vector<double>& values) const;

private:
    struct Entry {
        char matrix;
        unsigned row, col;
        ExpressionS expression;
    };
    bool parseLine(const std::string& line, std::string& error);
    bool parseParameter(std::istream& words, std::string& error);
    bool parseEntry(char matrix, std::istream& words, std::string& error);

    std::unique_ptr<DynOp> plant;
    std::vector<VariableS> parameters_;
    std::vector<Entry> entries;
};

#endif
