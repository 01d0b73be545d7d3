// Istream, Ostream and StringOstream: file and string streams of the system.
#include "quill/filestrm.h"

#include <cerrno>
#include <cstring>
#include <iostream>

#include "quill/quillerr.h"

DEFINE_CLASS(Istream, Object, 1, 0)
DEFINE_CLASS(Ostream, Object, 1, 0)
DEFINE_CLASS(StringOstream, Object, 1, 0)

namespace {

// A stream buffer over a C file, for both directions. One character before
// the read area is kept across refills, so that a character read can always
// be put back.
class FileBuffer : public std::streambuf {
public:
    explicit FileBuffer(FILE* file) : file(file) {
        setg(in + 1, in + 1, in + 1);
        setp(out, out + sizeof out);
    }
    ~FileBuffer() override { writePending(); }
    // Characters read from the file but not yet from the stream.
    long unread() const { return long(egptr() - gptr()); }

protected:
    int_type underflow() override {
        if (gptr() > eback()) in[0] = gptr()[-1];
        size_t n = fread(in + 1, 1, sizeof in - 1, file);
        if (n == 0) return traits_type::eof();
        setg(in, in + 1, in + 1 + n);
        return traits_type::to_int_type(in[1]);
    }
    int_type overflow(int_type c) override {
        if (!writePending()) return traits_type::eof();
        if (!traits_type::eq_int_type(c, traits_type::eof())) {
            *pptr() = traits_type::to_char_type(c);
            pbump(1);
        }
        return traits_type::not_eof(c);
    }
    int sync() override { return writePending() && fflush(file) == 0 ? 0 : -1; }

private:
    bool writePending() {
        size_t n = size_t(pptr() - pbase());
        setp(out, out + sizeof out);
        return n == 0 || fwrite(out, 1, n, file) == n;
    }
    FILE* file;
    char in[4097];
    char out[4096];
};

// The buffer is a base so that it is built before the stream that uses it.
struct FileBufferHolder {
    explicit FileBufferHolder(FILE* file) : buffer(file) {}
    FileBuffer buffer;
};

class FileIstream : private FileBufferHolder, public std::istream {
public:
    explicit FileIstream(FILE* file) : FileBufferHolder(file), std::istream(&buffer) {}
    long unread() const { return buffer.unread(); }
};

class FileOstream : private FileBufferHolder, public std::ostream {
public:
    explicit FileOstream(FILE* file) : FileBufferHolder(file), std::ostream(&buffer) {}
};

FILE* openFile(const String& fileName, const String& mode, const char* forClass) {
    FILE* file = fopen(fileName.asCharPointer(), mode.asCharPointer());
    if (!file)
        setError(GENERICERR, SEV_ERROR, "CANNOT_OPEN", "cannot open file ",
                 formatText("%s with mode %s", fileName.asCharPointer(), mode.asCharPointer()), forClass);
    return file;
}

// Raises SYSERR for a failed step of tell or size.
long checkSystem(long result, const char* operation, const char* call) {
    if (result < 0) setError(SYSERR, SEV_ERROR, operation, call, strerror(errno));
    return result;
}

// The size of a file by a seek to its end and back to where it was.
long fileSize(FILE* file) {
    long here = checkSystem(ftell(file), "size", "ftell");
    checkSystem(fseek(file, 0, SEEK_END), "size", "fseek");
    long end = checkSystem(ftell(file), "size", "fteel");
    checkSystem(fseek(file, here, SEEK_SET), "size", "fseek");
    return end;
}

// The same for a stream that isn't ours, through its own positioning.
template <class Stream, class Tell, class Seek>
long streamSize(Stream& s, Tell tell, Seek seek) {
    long here = checkSystem(long(tell(s)), "size", "ftell");
    seek(s, 0, std::ios::end);
    checkSystem(s.fail() ? -1 : 0, "size", "fseek");
    long end = checkSystem(long(tell(s)), "size", "fteel");
    seek(s, here, std::ios::beg);
    checkSystem(s.fail() ? -1 : 0, "size", "fseek");
    return end;
}

}  // namespace

// Istream

Istream::Istream() : stream_(&std::cin), file_(0) {}

Istream::Istream(const String& fileName) : stream_(&std::cin), file_(0) { open(fileName); }

Istream::Istream(const String& fileName, const String& mode) : stream_(&std::cin), file_(0) {
    open(fileName, mode);
}

Istream::Istream(const Istream&) : Object(), stream_(0), file_(0) { shouldNotImplement("Copy constructor"); }

Istream& Istream::operator=(const Istream&) {
    shouldNotImplement("assign operator");
    return *this;
}

Istream::~Istream() noexcept(false) { close(); }

void Istream::open(const String& fileName) { open(fileName, "r"); }

void Istream::open(const String& fileName, const String& mode) {
    FILE* file = openFile(fileName, mode, " for Istream class");
    close();
    file_ = file;
    stream_ = new FileIstream(file);
}

void Istream::attach(std::istream& is) {
    close();
    stream_ = &is;
}

void Istream::close() {
    if (!file_) return;
    delete stream_;
    fclose(file_);
    stream_ = 0;
    file_ = 0;
}

long Istream::tell() const {
    if (!file_) return checkSystem(long(stream_->tellg()), "tell", "ftell");
    long position = checkSystem(ftell(file_), "tell", "ftell");
    return position - static_cast<FileIstream*>(stream_)->unread();
}

unsigned Istream::size() const {
    if (file_) return unsigned(fileSize(file_));
    return unsigned(streamSize(
        *stream_, [](std::istream& s) { return s.tellg(); },
        [](std::istream& s, long at, std::ios::seekdir dir) { s.seekg(at, dir); }));
}

void Istream::storer(std::ostream&) const { shouldNotImplement("storer"); }
void Istream::storer(BinOstream&) const { shouldNotImplement("storer"); }

// Ostream

Ostream::Ostream() : stream_(&std::cout), file_(0) {}

Ostream::Ostream(const String& fileName) : stream_(&std::cout), file_(0) { open(fileName); }

Ostream::Ostream(const String& fileName, const String& mode) : stream_(&std::cout), file_(0) {
    open(fileName, mode);
}

Ostream::Ostream(const Ostream&) : Object(), stream_(0), file_(0) { shouldNotImplement("Copy constructor"); }

Ostream& Ostream::operator=(const Ostream&) {
    shouldNotImplement("assign operator");
    return *this;
}

Ostream::~Ostream() noexcept(false) { close(); }

void Ostream::open(const String& fileName) { open(fileName, "w"); }

void Ostream::open(const String& fileName, const String& mode) {
    FILE* file = openFile(fileName, mode, " for Ostream class");
    close();
    file_ = file;
    stream_ = new FileOstream(file);
}

void Ostream::attach(std::ostream& os) {
    close();
    stream_ = &os;
}

void Ostream::close() {
    if (!file_) return;
    delete stream_;  // writes what is pending
    fclose(file_);
    stream_ = 0;
    file_ = 0;
}

long Ostream::tell() const {
    stream_->flush();
    if (!file_) return checkSystem(long(stream_->tellp()), "tell", "ftell");
    return checkSystem(ftell(file_), "tell", "ftell");
}

unsigned Ostream::size() const {
    stream_->flush();
    if (file_) return unsigned(fileSize(file_));
    return unsigned(streamSize(
        *stream_, [](std::ostream& s) { return s.tellp(); },
        [](std::ostream& s, long at, std::ios::seekdir dir) { s.seekp(at, dir); }));
}

void Ostream::storer(std::ostream&) const { shouldNotImplement("storer"); }
void Ostream::storer(BinOstream&) const { shouldNotImplement("storer"); }

// StringOstream

StringOstream::StringOstream() : text(), buffer(text), os(&buffer) {}

StringOstream::~StringOstream() noexcept(false) {}

const String& StringOstream::string() {
    buffer.sync();
    return text;
}

void StringOstream::reset() {
    buffer.sync();
    text = "";
    os.clear();
}

void StringOstream::storer(std::ostream&) const { shouldNotImplement("storer"); }
void StringOstream::storer(BinOstream&) const { shouldNotImplement("storer"); }

// The String's capacity doubles, so that a long text costs linear time.
void StringOstream::Buffer::append(const char* s, size_t n) {
    if (n == 0) return;
    unsigned needed = text.size() + unsigned(n);
    if (needed > text.capacity()) {
        unsigned doubled = 2 * text.capacity();
        text.reSize(needed > doubled ? needed : doubled);
    }
    text.replaceRange(text.size(), 0, s, unsigned(n));
}

int StringOstream::Buffer::sync() {
    append(pbase(), size_t(pptr() - pbase()));
    setp(area, area + sizeof area);
    return 0;
}

StringOstream::Buffer::int_type StringOstream::Buffer::overflow(int_type c) {
    sync();
    if (!traits_type::eq_int_type(c, traits_type::eof())) {
        *pptr() = traits_type::to_char_type(c);
        pbump(1);
    }
    return traits_type::not_eof(c);
}

std::streamsize StringOstream::Buffer::xsputn(const char* s, std::streamsize n) {
    if (n < epptr() - pptr()) {
        memcpy(pptr(), s, size_t(n));
        pbump(int(n));
        return n;
    }
    sync();
    append(s, size_t(n));
    return n;
}
