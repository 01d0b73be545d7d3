// The multiplexing text read by a state machine over the pieces between "," and ":".
#include "control/muxparse.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <vector>

namespace {

const char* const TerminalMessage = "Unconsistent format, a terminal input index must be assigned";

// A piece of the text, blanks trimmed, and the delimiter that ends it: ',' or ':', or 0 at the end.
struct Token {
    std::string text;
    char delimiter;
};

std::string trimmed(const std::string& s) {
    size_t begin = 0, end = s.size();
    while (begin < end && std::isspace((unsigned char)s[begin])) ++begin;
    while (end > begin && std::isspace((unsigned char)s[end - 1])) --end;
    return s.substr(begin, end - begin);
}

// Always ends with a token of delimiter 0, empty when the text ends with a delimiter.
std::vector<Token> tokenise(const std::string& text) {
    std::vector<Token> tokens;
    size_t start = 0, end;
    while ((end = text.find_first_of(",:", start)) != std::string::npos) {
        tokens.push_back({trimmed(text.substr(start, end - start)), text[end]});
        start = end + 1;
    }
    tokens.push_back({trimmed(text.substr(start)), 0});
    return tokens;
}

// The value of a text of digits, saturated above INT_MAX; 0 for any other text.
long long digitsValue(const std::string& text) {
    long long value = 0;
    for (char c : text) {
        if (!std::isdigit((unsigned char)c)) return 0;
        value = std::min(value * 10 + (c - '0'), (long long)INT_MAX + 1);
    }
    return value;
}

enum class Side { Dest, Source };

class Parser {
public:
    Parser(MuxWording wording, MuxMode mode, int sourceLimit, int destLimit)
        : formatMessage(wording == MuxWording::Link ? "inconsistent format to select I/O variables"
                                                    : "inconsistent format to choose variables"),
          mode(mode),
          sourceLimit(sourceLimit),
          destLimit(destLimit) {}

    Multiplexing parse(const std::string& text);

private:
    enum State { DestFirst, DestOpen, DestLast, SourceFirst, SourceLast, Done, Refused };

    State step(State state, const Token& token);
    State destFirst(const Token& token);
    State destOpen(const Token& token);
    State destLast(const Token& token);
    State sourceFirst(const Token& token);
    State sourceLast(const Token& token);
    State finish(const std::vector<Token>& tokens, size_t next);
    State freeResponse();
    bool read(const Token& token, Side side, int& index, int least = 1);
    std::string tooLarge(const std::string& value, Side side) const;
    State refuse(const std::string& message);

    const char* formatMessage;
    MuxMode mode;
    int sourceLimit, destLimit;
    bool destIsOpen = false, sourceIsOpen = false;
    Multiplexing result;
};

// Every state ends or refuses at the last token, so the loop never passes it.
Multiplexing Parser::parse(const std::string& text) {
    std::vector<Token> tokens = tokenise(text);
    State state = DestFirst;
    size_t next = 0;
    while (state != Done && state != Refused) state = step(state, tokens.at(next++));
    if (state == Done) finish(tokens, next);
    return result;
}

Parser::State Parser::step(State state, const Token& token) {
    switch (state) {
        case DestFirst:
            return destFirst(token);
        case DestOpen:
            return destOpen(token);
        case DestLast:
            return destLast(token);
        case SourceFirst:
            return sourceFirst(token);
        default:
            return sourceLast(token);
    }
}

// ":" alone opens the whole range, "n:" starts a range, "n," is a single index.
Parser::State Parser::destFirst(const Token& token) {
    if (token.text.empty() && token.delimiter == ':') {
        result.destFirst = 1;
        result.destLast = destLimit;
        destIsOpen = true;
        return DestOpen;
    }
    if (!read(token, Side::Dest, result.destFirst)) return Refused;
    result.destLast = result.destFirst;
    if (token.delimiter == ':') return DestLast;
    if (token.delimiter == ',') return SourceFirst;
    return mode == MuxMode::FreeResponse ? freeResponse() : refuse(formatMessage);
}

// The whole range is written ":," only.
Parser::State Parser::destOpen(const Token& token) {
    return token.text.empty() && token.delimiter == ',' ? SourceFirst : refuse(formatMessage);
}

Parser::State Parser::destLast(const Token& token) {
    if (token.delimiter == ':') return refuse(formatMessage);
    if (!read(token, Side::Dest, result.destLast, result.destFirst)) return Refused;
    if (token.delimiter == ',') return SourceFirst;
    return mode == MuxMode::FreeResponse ? freeResponse() : refuse(TerminalMessage);
}

// Nothing is the whole range, "n:" starts a range, "n" is a single index.
Parser::State Parser::sourceFirst(const Token& token) {
    if (token.text.empty()) {
        result.sourceFirst = 1;
        result.sourceLast = sourceLimit;
        sourceIsOpen = true;
        return Done;
    }
    if (!read(token, Side::Source, result.sourceFirst)) return Refused;
    result.sourceLast = result.sourceFirst;
    return token.delimiter == ':' ? SourceLast : Done;
}

Parser::State Parser::sourceLast(const Token& token) {
    if (token.text.empty()) return refuse(TerminalMessage);
    return read(token, Side::Source, result.sourceLast, result.sourceFirst) ? Done : Refused;
}

// Refuses text after the source range, then closes the one open range to the other's width, which
// may exceed the open side's limit.
Parser::State Parser::finish(const std::vector<Token>& tokens, size_t next) {
    for (; next < tokens.size(); ++next)
        if (!tokens[next].text.empty()) return refuse(formatMessage);
    Multiplexing& r = result;
    if (destIsOpen && !sourceIsOpen) r.destLast = r.sourceLast - r.sourceFirst + 1;
    if (sourceIsOpen && !destIsOpen) r.sourceLast = r.destLast - r.destFirst + 1;
    if (r.destLast > destLimit) return refuse(tooLarge(std::to_string(r.destLast), Side::Dest));
    if (r.sourceLast > sourceLimit) return refuse(tooLarge(std::to_string(r.sourceLast), Side::Source));
    return Done;
}

Parser::State Parser::freeResponse() {
    result.sourceFirst = result.sourceLast = 1;
    return Done;
}

// An index is a positive integer from least to the side's limit; a smaller one, or other text, is a
// format error.
bool Parser::read(const Token& token, Side side, int& index, int least) {
    long long value = digitsValue(token.text);
    int limit = side == Side::Dest ? destLimit : sourceLimit;
    if (value < least || value > limit) {
        refuse(value < least ? formatMessage : tooLarge(token.text, side));
        return false;
    }
    index = int(value);
    return true;
}

std::string Parser::tooLarge(const std::string& value, Side side) const {
    if (side == Side::Dest)
        return value + " must not be greater than the number of outputs " + std::to_string(destLimit);
    return value + " must not be greater than the number of inputs " + std::to_string(sourceLimit);
}

// A refusal keeps no index.
Parser::State Parser::refuse(const std::string& message) {
    result = Multiplexing();
    result.message = message;
    return Refused;
}

}  // namespace

Multiplexing parseMultiplexing(const std::string& text, MuxWording wording, MuxMode mode, int sourceLimit,
                               int destLimit) {
    return Parser(wording, mode, sourceLimit, destLimit).parse(text);
}
