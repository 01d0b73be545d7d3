// Callbacks: Cback, the callback record, raising, dependents and the wake-up queue.
#include "quill/cback.h"

#include <chrono>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <thread>
#include <vector>

#include "quill/clock.h"
#include "quill/heap.h"
#include "quill/objalloc.h"
#include "quill/objio.h"
#include "quill/orderedc.h"
#include "quill/quillerr.h"
#include "quill/startup.h"

DEFINE_CLASS(Cback, Object, 1, 0)
DEFINE_CLASS(CbackData, Assoc, 1, 0)

Symbol DefaultCback("DefaultCback");
Symbol AnyCback("AnyCback");
Symbol DependenceCback("DependenceCback");
Symbol AbortErrorCback("AbortErrorCback");

unsigned cbackSerial = 0;

namespace {

const unsigned LIST_CAPACITY = 16;
const unsigned QUEUE_CAPACITY = 16;
const long CLOCK_WRAP = 2000000000L;

Heap* queue = 0;
double currentTimeValue = 0.0;
double timeScale = 1.0;
bool realTimeMode = false;
Clock* timeClock = 0;
long lastClockMillis = 0;
bool loopStop = false;
int loopResult = 0;
WakeupTrace wakeupTrace = 0;
void* wakeupTraceArgument = 0;

Heap& wakeupQueue() {
    if (!queue) queue = new Heap(QUEUE_CAPACITY, Heap::MIN);
    return *queue;
}

// One listener as it stood when a raise began.
struct SnapshotEntry {
    Cback* cb;
    double serial;
};

bool isCallData(const void* p) {
    return validObject(p) && static_cast<const Object*>(p)->isMemberOf(class_CallData);
}

// Takes a Cback off both of its lists and deletes it.
void discard(Object& owner, Cback* cb) {
    Object* ret = owner.removeCback(*cb, true);
    QASSERT_TEXT(ret == cb, "ret == cbPt");
    if (cb->consumer) CAST(Object, cb->consumer)->removeConsumerCback(*cb);
    delete cb;
}

void changePending(Object* owner, int delta) {
    if (!validObject(owner)) return;
    if (!owner->cbackData) owner->cbackData = new CbackData;
    owner->cbackData->pendingWakeups += delta;
}

void removeWakeupsOf(Object& ob) {
    Heap& q = wakeupQueue();
    OrderedCltn mine;
    for (unsigned i = 0; i < q.size(); ++i)
        if (CAST(Cback, q.at(int(i)))->owner == &ob) mine.add(*q.at(int(i)));
    for (unsigned i = 0; i < mine.size(); ++i) {
        q.removeSame(*mine[int(i)]);
        --ob.cbackData->pendingWakeups;
        delete mine[int(i)];
    }
}

void dispatchPendingEvents() {
    if (!eventPendingHook || !eventDispatchHook) return;
    while (eventPendingHook()) eventDispatchHook();
}

// Deletes a fired queue entry however its listeners leave.
struct EntryGuard {
    Cback* cb;
    ~EntryGuard() { delete cb; }
};

}  // namespace

// Cback

Cback::Cback()
    : function(0), wakeup(0.0), owner(nil), event(DefaultCback), userData(0), callData(0), consumer(0) {}

Cback::Cback(CbackFunction f, Object* o, const Symbol& e, Object* u, CallData* d)
    : function(f), wakeup(0.0), owner(o), event(e), userData(u), callData(d), consumer(0) {
    holdCallData();
}

Cback::Cback(CbackMethod m, Object* c, Object* o, const Symbol& e, Object* u, CallData* d)
    : function(reinterpret_cast<CbackFunction>(reinterpret_cast<void (*)()>(m))),
      wakeup(0.0),
      owner(o),
      event(e),
      userData(u),
      callData(d),
      consumer(c) {
    holdCallData();
}

Cback::Cback(const Cback& cb)
    : Object(cb),
      function(cb.function),
      wakeup(cb.wakeup),
      owner(cb.owner),
      event(cb.event),
      userData(cb.userData),
      callData(cb.callData),
      consumer(cb.consumer) {
    holdCallData();
}

Cback::Cback(std::istream& is, Object* where)
    : Object(is, where), function(0), wakeup(0.0), owner(nil), userData(0), callData(0), consumer(0) {
    QASSERT_TEXT(where != 0, "&where!=0");
    notYetImplemented("reader");
}

Cback::Cback(BinIstream& is, Object* where)
    : Object(is, where), function(0), wakeup(0.0), owner(nil), userData(0), callData(0), consumer(0) {
    QASSERT_TEXT(where != 0, "&where!=0");
    notYetImplemented("reader");
}

Cback::~Cback() noexcept(false) { dropCallData(); }

Cback& Cback::operator=(const Cback& cb) {
    if (&cb == this) return *this;
    function = cb.function;
    wakeup = cb.wakeup;
    owner = cb.owner;
    event = cb.event;
    userData = cb.userData;
    setCallData(cb.callData);
    consumer = cb.consumer;
    return *this;
}

void Cback::holdCallData() {
    if (isCallData(callData)) callData->addReference();
}

void Cback::dropCallData() {
    if (isCallData(callData)) callData->removeReference();
}

void Cback::setCallData(CallData* data) {
    if (data == callData) return;
    dropCallData();
    callData = data;
    holdCallData();
}

bool Cback::isEqual(const Object& ob) const {
    if (ob.isMemberOf(class_Symbol)) return event.isEqual(ob);
    if (!ob.isMemberOf(class_Cback)) return false;
    const Cback& p = static_cast<const Cback&>(ob);
    return (!function || !p.function || function == p.function) &&
           (owner == nil || p.owner == nil || owner == p.owner) && event.isEqual(p.event) &&
           (!consumer || !p.consumer || consumer == p.consumer) &&
           (!userData || !p.userData || userData == p.userData) &&
           (!callData || !p.callData || callData == p.callData) &&
           (wakeup == 0.0 || p.wakeup == 0.0 || wakeup == p.wakeup);
}

unsigned Cback::hash() const { return event.hash() ^ unsigned(uintptr_t(owner)); }

int Cback::compare(const Object& ob) const {
    assertArgClass(ob, class_Cback, "compare");
    double other = static_cast<const Cback&>(ob).wakeup;
    if (wakeup > other) return 1;
    if (wakeup < other) return -1;
    return 0;
}

// The bytes of the copy already point at the same CallData: one more reference.
void Cback::clearCopiedState() {
    Object::clearCopiedState();
    event.clearCopiedState();
    holdCallData();
}

void Cback::call(Cback& arg) const {
    if (!function) return;
    if (consumer)
        method()(*CAST(Object, consumer), arg);
    else
        function(arg);
}

// CbackData

CbackData::CbackData() : pendingWakeups(0) {}

OrderedCltn* CbackData::cbackList() const { return key_ == nil ? 0 : CAST(OrderedCltn, key_); }

OrderedCltn* CbackData::consumedList() const { return value_ == nil ? 0 : CAST(OrderedCltn, value_); }

// The key and value are set directly: an Assoc's value setter would tell
// the record's own dependents, and the record has none.
OrderedCltn& CbackData::makeCbackList() {
    if (key_ == nil) key_ = new OrderedCltn(LIST_CAPACITY);
    return *cbackList();
}

OrderedCltn& CbackData::makeConsumedList() {
    if (value_ == nil) value_ = new OrderedCltn(LIST_CAPACITY);
    return *consumedList();
}

void CbackData::dropCbackList() {
    OrderedCltn* list = cbackList();
    key_ = nil;
    delete list;
}

void CbackData::dropConsumedList() {
    OrderedCltn* list = consumedList();
    value_ = nil;
    delete list;
}

// Object: the lists

Cback& Object::addCback(Cback& cb) {
    ObjectRegion region(dependentsLockLevel);  // never held while a listener runs
    if (!cbackData) cbackData = new CbackData;
    OrderedCltn& list = cbackData->makeCbackList();
    if (++cbackSerial == 0) ++cbackSerial;
    cb.wakeup = double(cbackSerial);
    list.add(cb);
    return cb;
}

Object* Object::removeCback(Cback& pattern, bool removeSame) {
    ObjectRegion region(dependentsLockLevel);
    OrderedCltn* list = cbackData ? cbackData->cbackList() : 0;
    if (!list) {
        QASSERT_TEXT(!removeSame, "removeSame == NO");
        return nil;
    }
    Object* found = removeSame ? list->findSame(pattern) : list->find(pattern);
    if (found == nil) return nil;
    return list->removeSame(*found);
}

Cback& Object::addConsumerCback(Cback& cb) {
    ObjectRegion region(dependentsLockLevel);
    if (!cbackData) cbackData = new CbackData;
    cbackData->makeConsumedList().add(cb);
    return cb;
}

Object* Object::removeConsumerCback(Cback& cb) {
    ObjectRegion region(dependentsLockLevel);
    OrderedCltn* list = cbackData ? cbackData->consumedList() : 0;
    if (!list || list->findSame(cb) == nil) return nil;
    return list->removeSame(cb);
}

Cback& Object::addCback(const Symbol& event, CbackFunction function, Object* userData, CallData* callData) {
    return addCback(*new Cback(function, this, event, userData, callData));
}

Cback& Object::addCback(const Symbol& event, CbackMethod method, Object& consumer, Object* userData) {
    Cback& cb = addCback(*new Cback(method, &consumer, this, event, userData));
    CAST(Object, &consumer)->addConsumerCback(cb);
    return cb;
}

Object* Object::removeCback(const Symbol& event, CbackFunction function, Object* userData) {
    Cback pattern(function, nil, event, userData);
    OrderedCltn* list = cbackData ? cbackData->cbackList() : 0;
    Object* found = list ? list->find(pattern) : nil;
    if (found == nil) return nil;
    Cback* cbPt = CAST(Cback, found);
    QASSERT_TEXT(cbPt->consumer == 0, "cbPt->consumer == 0");
    removeCback(*cbPt, true);
    Object* answer = cbPt->userData;
    delete cbPt;
    return answer;
}

Object* Object::removeCback(const Symbol& event, CbackMethod method, Object& consumer, Object* userData) {
    Cback pattern(method, &consumer, nil, event, userData);
    Object* found = removeCback(pattern, false);
    if (found == nil) return nil;
    Cback* cbPt = CAST(Cback, found);
    CAST(Object, &consumer)->removeConsumerCback(*cbPt);
    Object* answer = cbPt->userData;
    delete cbPt;
    return answer;
}

void Object::removeCbacks(const Symbol& event, Object* consumer) {
    Cback pattern(CbackMethod(0), consumer, nil, event);
    OrderedCltn* list;
    Object* found;
    while ((list = cbackData ? cbackData->cbackList() : 0) && (found = list->find(pattern)) != nil)
        discard(*this, CAST(Cback, found));
}

void Object::removeAllCbacks() {
    OrderedCltn* cbackList = cbackData ? cbackData->cbackList() : 0;
    if (!cbackList) return;
    while (!cbackList->isEmpty()) discard(*this, CAST(Cback, cbackList->last()));
    QASSERT(cbackList->isEmpty());
}

void Object::removeConsumerCbacks() {
    Cback pattern(CbackFunction(0), nil, DependenceCback);
    OrderedCltn* list;
    Object* found;
    while ((list = cbackData ? cbackData->consumedList() : 0) && (found = list->find(pattern)) != nil) {
        Cback* cb = CAST(Cback, found);
        list->removeSame(*cb);
        CAST(Object, cb->owner)->removeCback(*cb, true);
        delete cb;
    }
}

bool Object::hasCback(const Symbol& event) const {
    OrderedCltn* list = cbackData ? cbackData->cbackList() : 0;
    if (!list) return false;
    if (event.isEqual(AnyCback) && !list->isEmpty()) return true;
    return list->find(event) != nil;
}

// Object: raising

// The listeners are those of the moment the raise begins: one added meanwhile
// waits for the next raise, one removed meanwhile (its memory fails
// validObject, or its serial changed with a reuse) is skipped. A listener that
// destroys this object ends the raise.
void Object::cbackOn(const Symbol& event, CallData* callData) {
    if (!cbackData) return;
    Cback raise(CbackFunction(0), this, event, 0, callData);
    std::vector<SnapshotEntry> snapshot;
    {
        ObjectRegion region(dependentsLockLevel);
        OrderedCltn* list = cbackData ? cbackData->cbackList() : 0;
        if (!list) return;
        snapshot.reserve(list->size());
        for (unsigned i = 0; i < list->size(); ++i) {
            Cback* cb = static_cast<Cback*>((*list)[int(i)]);
            snapshot.push_back(SnapshotEntry{cb, cb->wakeup});
        }
    }
    bool any = event.isEqual(AnyCback);
    for (const SnapshotEntry& entry : snapshot) {
        Cback* cb = entry.cb;
        if (!validObject(cb) || cb->wakeup != entry.serial || !cb->isMemberOf(class_Cback)) continue;
        if (any || cb->event.isEqual(event) || cb->event.isEqual(AnyCback)) {
            Cback call(*cb);
            call.event = event;
            call.owner = this;
            call.setCallData(callData);
            cb->call(call);
        }
        if (!validObject(this)) return;
    }
}

bool Object::update(Object&, CallData*, Object&) { return true; }

// Object: dependents

void Object::changed(CallData* callData) { cbackOn(DependenceCback, callData); }

void Object::addDependent(Object& ob, Object& userData) {
    validate(&ob, "addDependent_ob");
    validate(&userData, "addDependent_usrData");
    addCback(DependenceCback, cbackMethod<&Object::dependentUpdate>, ob, &userData);
}

void Object::removeDependent(Object& ob, Object& userData) {
    validate(&ob, "removeDependent_ob");
    validate(&userData, "removeDependent_usrData");
    removeCback(DependenceCback, cbackMethod<&Object::dependentUpdate>, ob, &userData);
}

void Object::removeDependents(Object& ob) {
    validate(&ob, "removeDependents_ob");
    removeCbacks(DependenceCback, &ob);
}

void Object::removeAllDependents() { removeCbacks(DependenceCback, 0); }

OrderedCltn& Object::getDependents(OrderedCltn& result) const {
    OrderedCltn* list = cbackData ? cbackData->cbackList() : 0;
    if (!list) return result;
    for (unsigned i = 0; i < list->size(); ++i) {
        Cback* cb = CAST(Cback, (*list)[int(i)]);
        if (cb->event.isEqual(DependenceCback)) result.add(*cb);
    }
    return result;
}

void Object::dependentUpdate(Cback& cb) { update(*cb.owner, cb.callData, cb.userData ? *cb.userData : *nil); }

// Object: wake-ups

Cback& Object::wakeAt(double time, const Symbol& event, CallData* callData) {
    Cback* cb = new Cback(CbackFunction(0), this, event, 0, callData);
    cb->wakeup = time;
    ObjectRegion region(dependentsLockLevel);
    changePending(this, 1);
    wakeupQueue().add(*cb);
    return *cb;
}

Cback& Object::wakeIn(double delay, const Symbol& event, CallData* callData) {
    return wakeAt(currentTime() + delay, event, callData);
}

bool Object::cancelWakeup(Cback& cb) {
    {
        ObjectRegion region(dependentsLockLevel);
        if (wakeupQueue().findSame(cb) == nil) return false;
        wakeupQueue().removeSame(cb);
        changePending(cb.owner, -1);
    }
    delete &cb;
    return true;
}

// Destruction of the record

void destroyCbacks(Object& ob) {
    CbackData* data = ob.cbackData;
    if (data->cbackList()) {
        ob.removeAllCbacks();
        data->dropCbackList();
    }
    if (OrderedCltn* consumed = data->consumedList()) {
        for (unsigned i = 0; i < consumed->size(); ++i) {
            Cback* cb = CAST(Cback, (*consumed)[int(i)]);
            CAST(Object, cb->owner)->removeCback(*cb, true);
        }
        for (unsigned i = 0; i < consumed->size(); ++i) delete (*consumed)[int(i)];
        consumed->removeAll();
        data->dropConsumedList();
    }
    if (data->pendingWakeups > 0) removeWakeupsOf(ob);
    ob.cbackData = 0;
    delete data;
}

// Time and the queue

double currentTime() {
    if (realTimeMode) {
        long now = timeClock->elapsed();
        currentTimeValue += double(now - lastClockMillis) / 1000.0 / timeScale;
        lastClockMillis = now;
        if (now > CLOCK_WRAP) {
            timeClock->reset();
            lastClockMillis = 0;
        }
    }
    return currentTimeValue;
}

void setTimeMode(bool realTime, double scale, bool reset) {
    if (scale <= 0) scale = 1.0;
    if (realTime && !timeClock) timeClock = new Clock;
    if (realTime && !realTimeMode) lastClockMillis = timeClock->elapsed();
    realTimeMode = realTime;
    timeScale = scale;
    if (reset) {
        if (timeClock) timeClock->reset();
        lastClockMillis = 0;
        currentTimeValue = 0.0;
    }
}

bool timeIsReal() { return realTimeMode; }
double timeScaleValue() { return timeScale; }

double nextWakeupTime() {
    Heap& q = wakeupQueue();
    return q.isEmpty() ? -1.0 : CAST(Cback, q.first())->wakeup;
}

unsigned wakeupCount() { return wakeupQueue().size(); }

bool runNextWakeup() {
    Cback* cb;
    {
        ObjectRegion region(dependentsLockLevel);
        Heap& q = wakeupQueue();
        if (q.isEmpty()) return false;
        cb = CAST(Cback, q.removeFirst());
    }
    EntryGuard guard{cb};
    if (!realTimeMode && currentTimeValue < cb->wakeup) currentTimeValue = cb->wakeup;
    changePending(cb->owner, -1);
    if (wakeupTrace) wakeupTrace(*cb, wakeupTraceArgument);
    if (validObject(cb->owner)) cb->owner->cbackOn(cb->event, cb->callData);
    return true;
}

void requeueWakeup(Cback& cb) {
    ObjectRegion region(dependentsLockLevel);
    Heap& q = wakeupQueue();
    if (q.findSame(cb) != nil) {
        q.touch(cb);
        return;
    }
    changePending(cb.owner, 1);
    q.add(cb);
}

// Waits for the first entry in real time; simulated time jumps to it.
int runWakeupLoop(bool forever, int sleepTime, int result) {
    loopResult = result;
    Heap& q = wakeupQueue();
    while (!loopStop && (!q.isEmpty() || forever)) {
        dispatchPendingEvents();
        if (q.isEmpty()) {
            sleepMillis(sleepTime);
            continue;
        }
        if (realTimeMode) {
            double now = currentTime();
            double due = CAST(Cback, q.first())->wakeup;
            if (due > now) {
                double wait = (due - now) * 1000.0 * timeScale;
                if (wait > sleepTime)
                    sleepMillis(sleepTime);
                else if (wait > 1)
                    sleepMillis(int(wait));
                continue;
            }
        }
        runNextWakeup();
    }
    loopStop = false;
    return loopResult;
}

void stopWakeupLoop(int result) {
    loopResult = result;
    loopStop = true;
}

void setWakeupTrace(WakeupTrace function, void* argument) {
    wakeupTrace = function;
    wakeupTraceArgument = argument;
}

void sleepMillis(int milliseconds) {
    if (sleepHook) {
        sleepHook(milliseconds);
        return;
    }
    if (milliseconds > 0) std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

// CallData

DEFINE_CLASS(CallData, Object, 1, 0)

namespace {

const char* const KIND_NAMES[] = {"None", "Object", "ObjectNotOwn", "char",  "Uchar", "short", "Ushort",
                                  "int",  "Uint",   "long",         "Ulong", "float", "double"};

// Bytes of heap storage a kind keeps; 0 for none and for the object kinds.
size_t storageSize(unsigned kind) {
    switch (kind) {
        case CallData::CHAR:
        case CallData::UCHAR:
            return 1;
        case CallData::SHORT:
        case CallData::USHORT:
            return 2;
        case CallData::INT:
        case CallData::UINT:
            return 4;
        case CallData::LONG:
        case CallData::ULONG:
            return sizeof(long);
        case CallData::FLOAT:
            return sizeof(float);
        case CallData::DOUBLE:
            return sizeof(double);
        default:
            return 0;
    }
}

bool isObjectKind(unsigned kind) { return kind == CallData::OBJECT || kind == CallData::OBJECT_NOT_OWN; }

// The stored bits read as a T; whatever T lacks stays 0.
template <class T>
T storedBits(unsigned kind, const void* value) {
    T v = T();
    size_t n = storageSize(kind);
    if (value && n) memcpy(&v, value, n < sizeof v ? n : sizeof v);
    return v;
}

}  // namespace

CallData::CallData() : kind_(NONE), value_(0), refCount_(0) {}
CallData::CallData(int v) : CallData() { allocate(INT, &v); }
CallData::CallData(long v) : CallData() { allocate(LONG, &v); }
CallData::CallData(float v) : CallData() { allocate(FLOAT, &v); }
CallData::CallData(double v) : CallData() { allocate(DOUBLE, &v); }

CallData::CallData(const char* text) : CallData() {
    if (!text) return;
    kind_ = OBJECT;
    value_ = new String(text);
}

CallData::CallData(const Object& val) : CallData() {
    QASSERT(validObject(&val));
    kind_ = OBJECT;
    value_ = val.shallowCopy();
}

CallData::CallData(Object* val, bool own) : CallData() {
    QASSERT(validObject(val));
    kind_ = OBJECT;
    value_ = (own || val == nil) ? val : val->deepCopy();
}

CallData::CallData(const CallData& cd) : Object(cd), kind_(NONE), value_(0), refCount_(0) {
    copyValue(cd.kind_, cd.value_);
}

CallData::CallData(std::istream& is, Object* where)
    : Object(is, where), kind_(NONE), value_(0), refCount_(0) {
    QASSERT_TEXT(where != 0, "&where!=0");
    readValue(is);
}

CallData::CallData(BinIstream& is, Object* where) : Object(is, where), kind_(NONE), value_(0), refCount_(0) {
    QASSERT_TEXT(where != 0, "&where!=0");
    readValue(is);
}

CallData::~CallData() noexcept(false) { freeValue(); }

CallData& CallData::operator=(const CallData& cd) {
    if (&cd == this) return *this;
    freeValue();
    copyValue(cd.kind_, cd.value_);
    return *this;
}

void CallData::allocate(unsigned kind, const void* bits) {
    kind_ = kind;
    size_t n = storageSize(kind);
    value_ = n ? objectAlloc(n) : 0;
    if (n) memcpy(value_, bits, n);
}

// An owned object is copied deeply, one not owned is shared.
void CallData::copyValue(unsigned kind, const void* value) {
    if (kind == OBJECT) {
        kind_ = kind;
        value_ = static_cast<const Object*>(value)->deepCopy();
    } else if (kind == OBJECT_NOT_OWN || kind == NONE) {
        kind_ = kind;
        value_ = const_cast<void*>(value);
    } else {
        allocate(kind, value);
    }
}

void CallData::freeValue() {
    if (kind_ == OBJECT)
        deepDelete(static_cast<Object*>(value_));
    else if (storageSize(kind_))
        objectFree(value_);
    value_ = 0;
    kind_ = NONE;
}

const char* CallData::kindName(unsigned kind) { return kind <= LAST_KIND ? KIND_NAMES[kind] : "Unknown"; }

bool CallData::checkKind(unsigned expected) const {
    if (kind_ == expected) return true;
    std::cerr << "Bad arg, expected " << kindName(expected) << ": was " << kindName(kind_) << std::endl;
    return false;
}

bool CallData::checkObjectKind() const { return isObjectKind(kind_) || checkKind(OBJECT); }

int CallData::asInt() const {
    checkKind(INT);
    return storedBits<int>(kind_, value_);
}

long CallData::asLong() const {
    checkKind(LONG);
    return storedBits<long>(kind_, value_);
}

float CallData::asFloat() const {
    checkKind(FLOAT);
    return storedBits<float>(kind_, value_);
}

double CallData::asDouble() const {
    checkKind(DOUBLE);
    return storedBits<double>(kind_, value_);
}

Object* CallData::asObject() const {
    if (!checkObjectKind()) return nil;
    return static_cast<Object*>(value_);
}

// The text of a String; any other value gives its printed form.
const char* CallData::asCharPointer() const {
    if (!checkObjectKind()) return Object::asCharPointer();
    Object* ob = static_cast<Object*>(value_);
    return ob->isKindOf(class_String) ? static_cast<String*>(ob)->asCharPointer() : ob->asCharPointer();
}

String CallData::asString() const { return String(asCharPointer()); }

void CallData::setNotOwn() {
    if (kind_ == OBJECT) kind_ = OBJECT_NOT_OWN;
}

bool CallData::isEqual(const Object& ob) const {
    if (&ob == this) return true;
    if (!ob.isKindOf(class_CallData)) return false;
    const CallData& other = static_cast<const CallData&>(ob);
    unsigned a = kind_ == OBJECT_NOT_OWN ? unsigned(OBJECT) : kind_;
    unsigned b = other.kind_ == OBJECT_NOT_OWN ? unsigned(OBJECT) : other.kind_;
    if (a != b || a > LAST_KIND) return false;
    if (a == NONE) return true;
    if (a == OBJECT) return *static_cast<const Object*>(value_) == *static_cast<const Object*>(other.value_);
    return memcmp(value_, other.value_, storageSize(a)) == 0;
}

void CallData::writeValue(std::ostream& os) const {
    if (isObjectKind(kind_))
        static_cast<Object*>(value_)->printOn(os);
    else if (kind_ > LAST_KIND)
        os << "Unknown";
    else
        writeNumber(os);
}

void CallData::printOn(std::ostream& os) const {
    os << className() << "(" << kindName(kind_);
    if (kind_ != NONE) {
        os << " ";
        writeValue(os);
    }
    os << ")";
}

// The bytes of the copy still point at the original's value: give it its own.
void CallData::clearCopiedState() {
    Object::clearCopiedState();
    unsigned kind = kind_;
    void* value = value_;
    kind_ = NONE;
    value_ = 0;
    refCount_ = 0;
    copyValue(kind, value);
}

// Stream form

namespace {

template <class T>
T readField(std::istream& is) {
    return readNumber<T>(is);
}

// Characters stand in the text form as their numeric values.
template <>
signed char readField<signed char>(std::istream& is) {
    return (signed char)readField<int>(is);
}

template <>
unsigned char readField<unsigned char>(std::istream& is) {
    return (unsigned char)readField<unsigned>(is);
}

template <class T>
T readField(BinIstream& is) {
    T v = T();
    is >> v;
    return v;
}

template <>
signed char readField<signed char>(BinIstream& is) {
    return (signed char)readField<char>(is);
}

// The binary form has one 2-byte integer kind.
template <>
unsigned short readField<unsigned short>(BinIstream& is) {
    return (unsigned short)readField<short>(is);
}

// Numbers as text, characters by their numeric values; raw bytes on the binary
// form, which has one 2-byte integer kind.
template <class T>
void writeField(std::ostream& os, T v) {
    os << v;
}
void writeField(std::ostream& os, signed char v) { os << int(v); }
void writeField(std::ostream& os, unsigned char v) { os << unsigned(v); }
template <class T>
void writeField(BinOstream& os, T v) {
    os << v;
}
void writeField(BinOstream& os, signed char v) { os << char(v); }
void writeField(BinOstream& os, unsigned short v) { os << short(v); }

void badKind(unsigned kind) { setError(RDSYNERR, SEV_ERROR, "a CallData kind", formatText("%u", kind)); }

}  // namespace

void CallData::storer(std::ostream& os) const {
    Object::storer(os);
    if (kind_ > LAST_KIND) {
        std::cerr << "Bad kind in storer " << kind_ << std::endl;
        return;
    }
    os << kind_ << ' ';
    if (isObjectKind(kind_))
        static_cast<Object*>(value_)->storeOn(os);
    else
        writeValue(os);
}

// Kinds 9 and 10 take 4 bytes, as every long of the binary form.
void CallData::storer(BinOstream& os) const {
    Object::storer(os);
    if (kind_ > LAST_KIND) {
        std::cerr << "Bad kind in storer " << kind_ << std::endl;
        return;
    }
    os << kind_;
    if (isObjectKind(kind_))
        static_cast<Object*>(value_)->storeOn(os);
    else
        writeNumber(os);
}

// Writes the value of a number kind; NONE writes nothing.
template <class Stream>
void CallData::writeNumber(Stream& os) const {
    switch (kind_) {
        case CHAR:
            writeField(os, storedBits<signed char>(kind_, value_));
            break;
        case UCHAR:
            writeField(os, storedBits<unsigned char>(kind_, value_));
            break;
        case SHORT:
            writeField(os, storedBits<short>(kind_, value_));
            break;
        case USHORT:
            writeField(os, storedBits<unsigned short>(kind_, value_));
            break;
        case INT:
            writeField(os, storedBits<int>(kind_, value_));
            break;
        case UINT:
            writeField(os, storedBits<unsigned>(kind_, value_));
            break;
        case LONG:
            writeField(os, storedBits<long>(kind_, value_));
            break;
        case ULONG:
            writeField(os, storedBits<unsigned long>(kind_, value_));
            break;
        case FLOAT:
            writeField(os, storedBits<float>(kind_, value_));
            break;
        case DOUBLE:
            writeField(os, storedBits<double>(kind_, value_));
            break;
        default:
            break;
    }
}

// Reads one value of type T and keeps it under kind.
template <class T, class Stream>
void CallData::readKind(Stream& is, unsigned kind) {
    T v = readField<T>(is);
    allocate(kind, &v);
}

template <class Stream>
void CallData::readValueFrom(Stream& is) {
    unsigned kind = readField<unsigned>(is);
    switch (kind) {
        case NONE:
            break;
        case OBJECT:
        case OBJECT_NOT_OWN:
            kind_ = OBJECT;
            value_ = readFrom(is);
            break;
        case CHAR:
            readKind<signed char>(is, kind);
            break;
        case UCHAR:
            readKind<unsigned char>(is, kind);
            break;
        case SHORT:
            readKind<short>(is, kind);
            break;
        case USHORT:
            readKind<unsigned short>(is, kind);
            break;
        case INT:
            readKind<int>(is, kind);
            break;
        case UINT:
            readKind<unsigned>(is, kind);
            break;
        case LONG:
            readKind<long>(is, kind);
            break;
        case ULONG:
            readKind<unsigned long>(is, kind);
            break;
        case FLOAT:
            readKind<float>(is, kind);
            break;
        case DOUBLE:
            readKind<double>(is, kind);
            break;
        default:
            badKind(kind);
    }
}

void CallData::readValue(std::istream& is) { readValueFrom(is); }
void CallData::readValue(BinIstream& is) { readValueFrom(is); }
