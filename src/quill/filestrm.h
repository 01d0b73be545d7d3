// Istream, Ostream and StringOstream: the system's text streams as objects.
#ifndef QUILL_FILESTRM_H
#define QUILL_FILESTRM_H

#include <cstdio>
#include <istream>
#include <ostream>
#include <streambuf>

#include "quill/qclass.h"
#include "quill/quillstr.h"

extern Class class_Istream;
extern Class class_Ostream;
extern Class class_StringOstream;

// A text input stream over a file that it owns, or over a stream that it
// doesn't (the standard input by default). Not storable, not copyable.
class Istream : public Object {
    DECLARE_MEMBERS(Istream)
public:
    Istream();                                 // the standard input
    explicit Istream(const String& fileName);  // mode "r"
    Istream(const String& fileName, const String& mode);
    Istream(const Istream& other);             // refused: "Copy constructor"
    Istream& operator=(const Istream& other);  // refused: "assign operator"
    ~Istream() noexcept(false) override;

    // CANNOT_OPEN when the file can't be opened.
    void open(const String& fileName);
    void open(const String& fileName, const String& mode);
    // Closes, then reads from is, which stays the caller's.
    void attach(std::istream& is);
    // Deletes the stream and closes the file when a file is open.
    void close();
    // The position, and the file's size by a seek to its end and back; SYSERR on failure.
    long tell() const;
    unsigned size() const override;

    std::istream& stream() const { return *stream_; }
    operator std::istream&() const { return *stream_; }
    FILE* file() const { return file_; }
    bool isOpen() const { return file_ != 0; }

    void storer(std::ostream& os) const override;  // refused: "storer"
    void storer(BinOstream& os) const override;

private:
    std::istream* stream_;  // the stream read, owned when file_ is set
    FILE* file_;            // the open file, null for a stream not owned
};

// A text output stream over a file that it owns, or over a stream that it
// doesn't (the standard output by default). Not storable, not copyable.
class Ostream : public Object {
    DECLARE_MEMBERS(Ostream)
public:
    Ostream();                                 // the standard output
    explicit Ostream(const String& fileName);  // mode "w"
    Ostream(const String& fileName, const String& mode);
    Ostream(const Ostream& other);             // refused: "Copy constructor"
    Ostream& operator=(const Ostream& other);  // refused: "assign operator"
    ~Ostream() noexcept(false) override;

    void open(const String& fileName);
    void open(const String& fileName, const String& mode);
    void attach(std::ostream& os);
    void close();
    long tell() const;
    unsigned size() const override;

    std::ostream& stream() const { return *stream_; }
    operator std::ostream&() const { return *stream_; }
    FILE* file() const { return file_; }
    bool isOpen() const { return file_ != 0; }

    void storer(std::ostream& os) const override;  // refused: "storer"
    void storer(BinOstream& os) const override;

private:
    std::ostream* stream_;
    FILE* file_;
};

// An output stream into a String that grows as needed.
class StringOstream : public Object {
    DECLARE_MEMBERS(StringOstream)
public:
    StringOstream();
    StringOstream(const StringOstream&) = delete;
    StringOstream& operator=(const StringOstream&) = delete;
    ~StringOstream() noexcept(false) override;

    std::ostream& stream() { return os; }
    operator std::ostream&() { return os; }
    // The text written so far.
    const String& string();
    // Empties the text and clears the stream state.
    void reset();

    void storer(std::ostream& os) const override;  // refused: "storer"
    void storer(BinOstream& os) const override;

private:
    // Collects output in a small area and appends it to the String in pieces.
    class Buffer : public std::streambuf {
    public:
        explicit Buffer(String& text) : text(text) { setp(area, area + sizeof area); }
        int sync() override;

    protected:
        int_type overflow(int_type c) override;
        std::streamsize xsputn(const char* s, std::streamsize n) override;

    private:
        void append(const char* s, size_t n);
        String& text;
        char area[256];
    };

    String text;
    Buffer buffer;
    std::ostream os;
};

#endif
