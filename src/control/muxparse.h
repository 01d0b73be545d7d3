// The multiplexing text of a signal link and the channel selection of the plot: a destination range
// and a source range separated by a comma, each a single index, "first:last", or empty for all, as in
// "1:2,3:4", ":,1:3" or "2,5".
#ifndef CONTROL_MUXPARSE_H
#define CONTROL_MUXPARSE_H

#include <string>

// The wording of the format message, which differs between the callers; the other messages are shared.
enum class MuxWording {
    Link,  // "inconsistent format to select I/O variables"
    Plot   // "inconsistent format to choose variables"
};

// In the free response a text that ends after the destination ("2" or "1:3") selects source 1.
enum class MuxMode { Ranges, FreeResponse };

// The ranges read, 1-based and inclusive. When the text is refused, message holds the reason and the
// four indices are 0.
struct Multiplexing {
    int destFirst = 0, destLast = 0, sourceFirst = 0, sourceLast = 0;
    std::string message;

    bool ok() const { return message.empty(); }
};

// Reads text against the number of source indices (inputs) and destination indices (outputs). An open
// range (":," for the destination, nothing for the source) runs from 1 to its limit, unless only one of
// the two is open: that one then takes the other's width, and a width above its limit is refused. Text left
// after the source range, an index that is not a positive integer and a range that runs backwards are format
// errors. Nothing is printed: the link writes the message to the error stream as a warning and the plot's
// dialogue shows it as a refusal, so each caller passes it on in its own way.
Multiplexing parseMultiplexing(const std::string& text, MuxWording wording, MuxMode mode, int sourceLimit,
                               int destLimit);

#endif
