# Nothing: the cost of starting the interpreter.
