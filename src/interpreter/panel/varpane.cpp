// DebugPanes: the values of the paused frame and the calls under way, read from the Executer.
#include "interpreter/panel/varpane.h"

#include <sstream>
#include <string>

#include "interpreter/executer.h"
#include "interpreter/funcdecl.h"
#include "interpreter/variable.h"
#include "trellis/form.h"
#include "trellis/label.h"
#include "trellis/list.h"
#include "trellis/text.h"

namespace {

const int GAP = 4;
const int LABEL_HEIGHT = 20;

// "name = value", a value of several lines beneath its name, indented.
void writeValue(std::ostream& os, Variable* variable) {
    String value = DebugPanes::collapsed(Variable::dereference(variable)->getValueString());
    std::string text = value.asCharPointer();
    os << "  " << variable->getName().asCharPointer() << " =";
    if (text.find('\n') == std::string::npos) {
        os << " " << text << "\n";
        return;
    }
    std::istringstream lines(text);
    std::string line;
    os << "\n";
    while (std::getline(lines, line)) os << "      " << line << "\n";
}

void writeScope(std::ostream& os, const OrderedCltn& scope, unsigned from) {
    for (unsigned i = from; i < scope.size(); ++i) writeValue(os, static_cast<Variable*>(scope.at(int(i))));
}

}  // namespace

DebugPanes::DebugPanes(CppForm& f, CppWidget& source, CppWidget& top, CppWidget& bottom) {
    CppLabel* variablesLabel = new CppLabel("VariablesLabel", &f, "Variables");
    variables = new CppText("Variables", &f, true, 20, 36);
    variables->setReadOnly(true);
    CppLabel* stackLabel = new CppLabel("CallStackLabel", &f, "Call Stack");
    stack = new CppList("CallStack", &f, 6, 36);
    for (CppWidget* w : {static_cast<CppWidget*>(variablesLabel), static_cast<CppWidget*>(variables),
                         static_cast<CppWidget*>(stackLabel), static_cast<CppWidget*>(stack)}) {
        f.attachHorizontal(&source, w, GAP);
        f.attachHorizontal(w, &f, GAP);
    }
    f.attachVertical(&top, variablesLabel, GAP);
    f.attachVertical(variablesLabel, variables, 0);
    f.attachBottomPercent(*variables, 62);
    f.attachVertical(variables, stackLabel, GAP);
    f.attachVertical(stackLabel, stack, 0);
    f.attachBottomToSibling(*stack, bottom, 2);
    variablesLabel->resize(200, LABEL_HEIGHT);
    stackLabel->resize(200, LABEL_HEIGHT);
}

void DebugPanes::refresh(Executer& executer, const std::vector<int>& frameLines) {
    std::ostringstream os;
    int frames = executer.frameCount();
    if (frames > 0) {
        os << "Locals of " << executer.frameFunction(frames - 1)->getName().asCharPointer() << "\n";
        const OrderedCltn& scopes = executer.frameScopes(frames - 1);
        for (unsigned s = 0; s < scopes.size(); ++s)
            writeScope(os, *static_cast<OrderedCltn*>(scopes.at(int(s))), 0);
    }
    os << "Globals\n";
    writeScope(os, executer.getGlobals(), Variable::predefinedVariables().size());
    variables->setText(os.str().c_str());
    stack->removeAll();
    for (int f = frames - 1; f >= 0; --f) {
        int line = f < int(frameLines.size()) ? frameLines[f] : 0;
        stack->addItem(formatText("%s  line %d", executer.frameFunction(f)->getName().asCharPointer(), line));
    }
}

void DebugPanes::clear() {
    variables->setText("");
    stack->removeAll();
}

String DebugPanes::variablesText() const { return variables->getText(); }

String DebugPanes::collapsed(const String& value) {
    std::string text = value.asCharPointer();
    std::string::size_type end = 0;
    int lines = 0;
    while (lines < MAX_VALUE_LINES && (end = text.find('\n', end)) != std::string::npos) {
        ++end;
        ++lines;
    }
    if (lines < MAX_VALUE_LINES || end >= text.size()) return value;
    int rest = 0;
    for (std::string::size_type i = end; i < text.size(); ++i) rest += text[i] == '\n';
    if (text.back() != '\n') ++rest;
    return String(text.substr(0, end).c_str()) + formatText("... (%d more lines)", rest);
}
