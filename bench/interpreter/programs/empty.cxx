// Nothing: the cost of starting the interpreter.
int main() {
    return 0;
}
