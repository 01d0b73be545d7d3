// Cback, CallData and the callback record: named events, dependents and the wake-up queue.
#ifndef QUILL_CBACK_H
#define QUILL_CBACK_H

#include <iosfwd>

#include "quill/assoc.h"
#include "quill/qclass.h"
#include "quill/symbol.h"

class OrderedCltn;
class String;

extern Class class_Cback;
extern Class class_CallData;
extern Class class_CbackData;

// The reserved events.
extern Symbol DefaultCback;     // the event of a default-constructed Cback
extern Symbol AnyCback;         // a listener on it hears every event; raising it reaches every listener
extern Symbol DependenceCback;  // the event of addDependent and changed
extern Symbol AbortErrorCback;  // raised when the process reports an unhandled fatal exception

// The last serial given to a listener; never 0.
extern unsigned cbackSerial;

template <class M>
struct CbackMethodClass;
template <class T>
struct CbackMethodClass<void (T::*)(Cback&)> {
    typedef T type;
};

// A member function as a listener: addCback(event, cbackMethod<&Editor::textChanged>,
// editor, userData). Each member function gets its own plain function, and
// its address is the identity by which removeCback finds the listener again.
template <auto M>
void cbackMethod(Object& consumer, Cback& cb) {
    typedef typename CbackMethodClass<decltype(M)>::type T;
    (static_cast<T&>(consumer).*M)(cb);
}

// A listener, or an entry of the wake-up queue. In a pattern for removeCback
// every zero field (function, wakeup, userData, callData, consumer) and an
// owner of nil match anything; the event always has to be equal.
class Cback : public Object {
    DECLARE_MEMBERS(Cback)
public:
    Cback();  // event DefaultCback, all else empty
    Cback(CbackFunction function, Object* owner, const Symbol& event, Object* userData = 0,
          CallData* callData = 0);
    Cback(CbackMethod method, Object* consumer, Object* owner, const Symbol& event, Object* userData = 0,
          CallData* callData = 0);
    Cback(const Cback& cb);
    // Callback lists are never stored: both readers refuse with NOTYET "reader".
    Cback(std::istream& is, Object* where);
    Cback(BinIstream& is, Object* where);
    ~Cback() noexcept(false) override;
    Cback& operator=(const Cback& cb);

    // With a Cback: all fields match (see above). With a Symbol: the event
    // equals it. Anything else: false.
    bool isEqual(const Object& ob) const override;
    unsigned hash() const override;                // event's hash xor owner
    int compare(const Object& ob) const override;  // by wakeup
    void clearCopiedState() override;

    CbackMethod method() const {
        return reinterpret_cast<CbackMethod>(reinterpret_cast<void (*)()>(function));
    }
    // Calls the function with arg: plainly, or on the consumer after a checked cast.
    void call(Cback& arg) const;

    // The raiser's data, counted as a reference while this Cback holds it.
    void setCallData(CallData* data);

    CbackFunction function;  // for a consumer, a CbackMethod in disguise; 0 in patterns
    double wakeup;           // listener: its serial; queue entry: its time
    Object* owner;           // raises it, or will be raised on; nil in patterns
    Symbol event;
    Object* userData;    // the listener's own word, handed back on each call
    CallData* callData;  // a CallData, or any other value the raiser chose
    Object* consumer;    // 0 for a plain function

private:
    void holdCallData();
    void dropCallData();
};

// One typed value from the raiser to the listeners. The raiser owns it; the
// Cbacks that carry it count their references.
class CallData : public Object {
    DECLARE_MEMBERS(CallData)
public:
    enum Kind {
        NONE = 0,
        OBJECT,
        OBJECT_NOT_OWN,
        CHAR,
        UCHAR,
        SHORT,
        USHORT,
        INT,
        UINT,
        LONG,
        ULONG,
        FLOAT,
        DOUBLE,
        LAST_KIND = DOUBLE
    };

    CallData();  // kind NONE
    CallData(int v);
    CallData(long v);
    CallData(float v);
    CallData(double v);
    CallData(const char* text);       // a new String, or NONE for a null pointer
    CallData(const Object& val);      // a shallow copy; nil stays nil
    CallData(Object* val, bool own);  // a deep copy unless own; nil is kept
    CallData(const CallData& cd);     // deep
    // Stream form: the kind, a blank and the value; an object that was not
    // owned reads back as owned.
    CallData(std::istream& is, Object* where);
    CallData(BinIstream& is, Object* where);
    ~CallData() noexcept(false) override;
    CallData& operator=(const CallData& cd);  // deep

    // The getters check the kind: a wrong one is reported on the error stream
    // and the stored bits are used all the same.
    int asInt() const;
    long asLong() const;
    float asFloat() const;
    double asDouble() const;
    using Object::asCharPointer;
    const char* asCharPointer() const override;  // the text of a String
    Object* asObject() const;
    String asString() const;

    unsigned kind() const { return kind_; }
    bool isObject() const { return kind_ == OBJECT; }
    // The object is to survive this CallData.
    void setNotOwn();
    int refCount() const { return refCount_; }
    void addReference() { ++refCount_; }
    void removeReference() { --refCount_; }

    bool isEqual(const Object& ob) const override;
    void printOn(std::ostream& os) const override;  // CallData(int 7)
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;

    // "None", "Object", ..., "double"; "Unknown" beyond.
    static const char* kindName(unsigned kind);

private:
    void copyValue(unsigned kind, const void* value);
    void writeValue(std::ostream& os) const;
    void freeValue();
    void allocate(unsigned kind, const void* bits);
    void readValue(std::istream& is);
    void readValue(BinIstream& is);
    template <class Stream>
    void readValueFrom(Stream& is);
    template <class Stream>
    void writeNumber(Stream& os) const;
    template <class T, class Stream>
    void readKind(Stream& is, unsigned kind);
    bool checkKind(unsigned expected) const;
    bool checkObjectKind() const;

    unsigned kind_;
    void* value_;  // heap storage of the value, or the object
    int refCount_;
};

// The callback record of one object: its own Cbacks under the key, the
// Cbacks of others that it consumes under the value.
struct CbackData : public Assoc {
    DECLARE_MEMBERS(CbackData)
public:
    CbackData();

    OrderedCltn* cbackList() const;     // null while the key is nil
    OrderedCltn* consumedList() const;  // null while the value is nil
    OrderedCltn& makeCbackList();
    OrderedCltn& makeConsumedList();
    void dropCbackList();     // deletes the list, the key becomes nil
    void dropConsumedList();  // the same for the value

    int pendingWakeups;  // queue entries that name this object as owner
};

// Run by ~Object when an object has a callback record: takes the object off
// every list it stands in, deletes its Cbacks, its queue entries and the record.
void destroyCbacks(Object& ob);

// Time of the wake-up queue, in seconds. Simulated time only moves when an
// entry fires; real time follows the clock, divided by the scale.
double currentTime();
// A scale at or below 0 is 1. With reset, the clock and the time go back to 0.
void setTimeMode(bool realTime, double scale = 1.0, bool reset = false);
bool timeIsReal();
double timeScaleValue();
// The time of the first entry, or -1 when the queue is empty.
double nextWakeupTime();
unsigned wakeupCount();
// Fires the first entry on its owner, then deletes it; false when the queue is empty.
bool runNextWakeup();
// Puts an entry back in order after its time changed, or into the queue again.
void requeueWakeup(Cback& cb);
// Runs the queue until it is empty (or forever), keeping the window system
// alive between entries; answers the result given, or the one of stopWakeupLoop.
int runWakeupLoop(bool forever, int sleepTime, int result);
void stopWakeupLoop(int result);
// Called with each entry just before it fires.
typedef void (*WakeupTrace)(Cback& entry, void* argument);
void setWakeupTrace(WakeupTrace function, void* argument);

// Sleeps through the toolkit's hook when set, else through the system.
void sleepMillis(int milliseconds);

#endif
