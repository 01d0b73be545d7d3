// Callbacks: delivery, removal during a raise, dependents, consumers, CallData and the wake-up queue.
#include "quill/cback.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "iotest.h"
#include "quill/all.h"
#include "quill/objio.h"
#include "testutil.h"

// A member listener and update that record what they hear.
class CbackProbe : public Object {
    DECLARE_MEMBERS(CbackProbe)
public:
    explicit CbackProbe(std::string n = "") : name(n) {}

    void heard(Cback& cb) {
        log.push_back(name + ":" + cb.event.name().asCharPointer());
        if (action) action(cb);
    }
    bool update(Object& sender, CallData* callData, Object& userData) override {
        updates.push_back(Update{&sender, &userData, callData});
        return true;
    }

    struct Update {
        Object *sender, *userData;
        CallData* callData;
    };
    std::string name;
    std::vector<std::string> log;
    std::vector<Update> updates;
    std::function<void(Cback&)> action;
};

DEFINE_CLASS(CbackProbe, Object, 1, 0)

namespace {

Symbol EvA("CbackTestA");
Symbol EvB("CbackTestB");

Integer tags[5] = {0, 1, 2, 3, 4};
std::vector<std::string> heard;
std::vector<std::function<void(Cback&)>> actions;

// A plain listener whose userData is an Integer tag; actions[tag] runs after it records.
void record(Cback& cb) {
    std::string tag = std::to_string(CAST(Integer, cb.userData)->value());
    heard.push_back(tag + ":" + cb.event.name().asCharPointer());
    size_t i = size_t(CAST(Integer, cb.userData)->value());
    if (i < actions.size() && actions[i]) actions[i](cb);
}

void other(Cback& cb) { heard.push_back(std::string("other:") + cb.event.name().asCharPointer()); }

class CbackTest : public ::testing::Test {
protected:
    CbackTest() {
        heard.clear();
        actions.clear();
    }
    Integer* tag(int i) { return &tags[i]; }  // the userData of record
    OrderedCltn* list(Object& ob) { return ob.cbackData ? ob.cbackData->cbackList() : 0; }
    unsigned listSize(Object& ob) { return list(ob) ? list(ob)->size() : 0; }
    unsigned consumedSize(Object& ob) {
        OrderedCltn* c = ob.cbackData ? ob.cbackData->consumedList() : 0;
        return c ? c->size() : 0;
    }
};

TEST_F(CbackTest, ListenersRunInOrderOfAdditionOnTheirEvent) {
    Object raiser;
    raiser.addCback(EvA, record, tag(1));
    raiser.addCback(EvB, record, tag(2));
    raiser.addCback(EvA, record, tag(3));
    raiser.addCback(EvA, other);
    CallData data(5);
    CallData* received = 0;
    Object* owner = 0;
    actions = {nullptr, [&](Cback& cb) {
                   received = cb.callData;
                   owner = cb.owner;
               }};

    raiser.cbackOn(EvA, &data);
    EXPECT_EQ(heard, (std::vector<std::string>{"1:CbackTestA", "3:CbackTestA", "other:CbackTestA"}));
    EXPECT_EQ(received, &data);
    EXPECT_EQ(owner, &raiser);

    heard.clear();
    raiser.cbackOn(EvB);
    EXPECT_EQ(heard, std::vector<std::string>{"2:CbackTestB"});

    Object silent;
    silent.cbackOn(EvA);
    EXPECT_EQ(silent.cbackData, nullptr);
}

TEST_F(CbackTest, SerialsAreUniqueAndSkipZero) {
    Object raiser;
    Cback& a = raiser.addCback(EvA, record, tag(1));
    Cback& b = raiser.addCback(EvA, record, tag(2));
    EXPECT_EQ(b.wakeup, a.wakeup + 1);
    EXPECT_EQ(unsigned(b.wakeup), cbackSerial);

    unsigned saved = cbackSerial;
    cbackSerial = UINT_MAX;
    Cback& c = raiser.addCback(EvA, record, tag(3));
    EXPECT_EQ(c.wakeup, 1.0);
    cbackSerial = saved;
}

TEST_F(CbackTest, ChangesDuringARaise) {
    // Listeners 1..3 listen on EvA; listener 1 makes its change on its first call.
    struct Case {
        const char* name;
        std::function<void(Object&)> change;
        std::vector<std::string> first, second;
    };
    const std::vector<std::string> all = {"1:CbackTestA", "2:CbackTestA", "3:CbackTestA"};
    const Case cases[] = {
        {"removes itself",
         [&](Object& r) { EXPECT_EQ(r.removeCback(EvA, record, tag(1)), tag(1)); },
         all,
         {"2:CbackTestA", "3:CbackTestA"}},
        {"removes the next",
         [&](Object& r) { EXPECT_EQ(r.removeCback(EvA, record, tag(2)), tag(2)); },
         {"1:CbackTestA", "3:CbackTestA"},
         {"1:CbackTestA", "3:CbackTestA"}},
        {"adds one",
         [&](Object& r) { r.addCback(EvA, record, tag(4)); },
         all,
         {"1:CbackTestA", "2:CbackTestA", "3:CbackTestA", "4:CbackTestA"}},
        // The new listener may take the removed one's memory: its serial tells them apart.
        {"replaces the next",
         [&](Object& r) {
             r.removeCback(EvA, record, tag(2));
             r.addCback(EvA, record, tag(4));
         },
         {"1:CbackTestA", "3:CbackTestA"},
         {"1:CbackTestA", "3:CbackTestA", "4:CbackTestA"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        heard.clear();
        Object raiser;
        for (int i = 1; i <= 3; ++i) raiser.addCback(EvA, record, tag(i));
        bool done = false;
        actions.assign(4, nullptr);
        actions[1] = [&](Cback&) {
            if (!done) c.change(raiser);
            done = true;
        };
        raiser.cbackOn(EvA);
        EXPECT_EQ(heard, c.first);
        heard.clear();
        raiser.cbackOn(EvA);
        EXPECT_EQ(heard, c.second);
    }
}

// The raise ends at once, touching neither the freed object nor its listeners.
TEST_F(CbackTest, OwnerDeletedByItsOwnListener) {
    unsigned long before = bytesInUse();
    {
        Object* raiser = new Object;
        CbackProbe consumer("c");
        raiser->addCback(EvA, record, tag(1));
        raiser->addCback(EvA, cbackMethod<&CbackProbe::heard>, consumer);
        raiser->addCback(EvA, record, tag(2));
        consumer.action = [&](Cback&) { delete raiser; };
        EXPECT_EQ(consumedSize(consumer), 1u);

        raiser->cbackOn(EvA);
        EXPECT_EQ(heard, std::vector<std::string>{"1:CbackTestA"});
        EXPECT_EQ(consumer.log, std::vector<std::string>{"c:CbackTestA"});
        EXPECT_EQ(consumedSize(consumer), 0u);
    }
    EXPECT_EQ(bytesInUse(), before);
}

TEST_F(CbackTest, AnyCbackBothWays) {
    Object raiser;
    raiser.addCback(AnyCback, record, tag(1));
    raiser.addCback(EvA, record, tag(2));
    raiser.addCback(EvB, record, tag(3));

    raiser.cbackOn(EvA);
    EXPECT_EQ(heard, (std::vector<std::string>{"1:CbackTestA", "2:CbackTestA"}));

    heard.clear();
    raiser.changed();
    EXPECT_EQ(heard, std::vector<std::string>{"1:DependenceCback"});

    heard.clear();
    raiser.cbackOn(AnyCback);
    EXPECT_EQ(heard, (std::vector<std::string>{"1:AnyCback", "2:AnyCback", "3:AnyCback"}));

    EXPECT_TRUE(raiser.hasCback(AnyCback));
    EXPECT_FALSE(raiser.hasCback(DependenceCback));  // AnyCback listeners don't count
    EXPECT_FALSE(Object().hasCback(AnyCback));
}

TEST_F(CbackTest, RemovalMatchesByPattern) {
    Object raiser;
    EXPECT_EQ(raiser.removeCback(EvA, record, tag(1)), nil);
    Cback anything;
    EXPECT_EQ(raiser.removeCback(anything, false), nil);  // no list yet

    raiser.addCback(EvA, record, tag(1));
    raiser.addCback(EvA, record, tag(2));
    raiser.addCback(EvA, record, tag(1));
    EXPECT_EQ(raiser.removeCback(EvA, other), nil);           // another function
    EXPECT_EQ(raiser.removeCback(EvA, record, tag(3)), nil);  // another userData
    EXPECT_EQ(raiser.removeCback(EvA, record, 0), tag(1));    // 0 matches any, first wins
    EXPECT_EQ(raiser.removeCback(EvA, record, tag(1)), tag(1));
    EXPECT_EQ(raiser.removeCback(EvA, record, tag(1)), nil);
    raiser.cbackOn(EvA);
    EXPECT_EQ(heard, std::vector<std::string>{"2:CbackTestA"});

    // The plain form doesn't take a member listener.
    CbackProbe consumer;
    raiser.addCback(EvB, cbackMethod<&CbackProbe::heard>, consumer, tag(4));
    EXPECT_EQ(raisedText([&] {
                  raiser.removeCback(EvB, CbackFunction(0), 0);
              }).find("[ASSERTFLD] Assertion failed \"cbPt->consumer == 0\""),
              0u);
    EXPECT_EQ(consumedSize(consumer), 1u);
    EXPECT_EQ(raiser.removeCback(EvB, cbackMethod<&CbackProbe::heard>, consumer), tag(4));
    EXPECT_EQ(consumedSize(consumer), 0u);
    raiser.addCback(EvB, cbackMethod<&CbackProbe::heard>, consumer);

    raiser.removeAllCbacks();
    EXPECT_EQ(listSize(raiser), 0u);
    EXPECT_EQ(consumedSize(consumer), 0u);
    Object empty;
    Cback pattern;
    EXPECT_EQ(raisedText([&] {
                  empty.removeCback(pattern, true);
              }).find("[ASSERTFLD] Assertion failed \"removeSame == NO\""),
              0u);
}

TEST_F(CbackTest, CbackMatchingAndOrder) {
    Object a, b;
    CallData d(1);
    Cback full(record, &a, EvA, tag(1), &d);
    full.wakeup = 3;
    struct Row {
        const char* name;
        Cback pattern;
        bool equal;
    };
    Row rows[] = {
        {"empty pattern", Cback(CbackFunction(0), nil, EvA), true},
        {"other function", Cback(other, nil, EvA), false},
        {"AnyCback is no wildcard here", Cback(CbackFunction(0), nil, AnyCback), false},
        {"other callData", Cback(CbackFunction(0), nil, EvA, 0, reinterpret_cast<CallData*>(8)), false},
        {"consumer set", Cback(CbackMethod(0), &b, nil, EvA), true},
    };
    for (Row& r : rows) {
        SCOPED_TRACE(r.name);
        EXPECT_EQ(full.isEqual(r.pattern), r.equal);
        EXPECT_EQ(r.pattern.isEqual(full), r.equal);
    }
    Cback later = full;
    later.wakeup = 4;
    EXPECT_FALSE(full.isEqual(later));
    EXPECT_TRUE(full.isEqual(EvA));
    EXPECT_FALSE(full.isEqual(String("CbackTestA")));
    EXPECT_EQ(full.compare(later), -1);
    EXPECT_EQ(later.compare(full), 1);
    EXPECT_EQ(raisedText([&] { full.compare(a); }).find("[BADARGCLM]"), 0u);
    EXPECT_EQ(full.hash(), later.hash());
}

TEST_F(CbackTest, DependentsHearChanged) {
    Object model;
    CbackProbe view("v"), log("l");
    model.addDependent(view, *tag(1));
    model.addDependent(log);
    model.addDependent(view, *tag(2));
    CallData data(3.5);
    model.changed(&data);
    ASSERT_EQ(view.updates.size(), 2u);
    EXPECT_EQ(view.updates[0].sender, &model);
    EXPECT_EQ(view.updates[0].callData, &data);
    EXPECT_EQ(view.updates[1].userData, tag(2));
    ASSERT_EQ(log.updates.size(), 1u);
    EXPECT_EQ(log.updates[0].userData, nil);

    OrderedCltn deps;
    model.addCback(EvA, record, tag(1));
    EXPECT_EQ(model.getDependents(deps).size(), 3u);
    EXPECT_EQ(CAST(Cback, deps[0])->consumer, &view);

    model.removeDependent(view, *tag(1));
    EXPECT_EQ(consumedSize(view), 1u);
    model.removeDependents(view);
    EXPECT_EQ(consumedSize(view), 0u);
    model.removeAllDependents();
    EXPECT_EQ(listSize(model), 1u);  // EvA's listener stays
    EXPECT_EQ(consumedSize(log), 0u);

    EXPECT_EQ(
        raisedText([&] { model.addDependent(*reinterpret_cast<Object*>(&data.magic)); }).find("[BADOBJECT]"),
        0u);

    // Setting an Assoc's value tells its dependents.
    Integer one(10), two(20);
    Assoc pair(*tag(1), one);
    pair.addDependent(log);
    EXPECT_EQ(pair.value(two), &one);
    EXPECT_EQ(log.updates.back().sender, &pair);
}

TEST_F(CbackTest, ConsumerCallbacksGoWhenEitherSideDiesOrIsRemoved) {
    unsigned long before = bytesInUse();
    {
        Object raiser;
        CbackProbe* consumer = new CbackProbe("c");
        raiser.addCback(EvA, cbackMethod<&CbackProbe::heard>, *consumer, tag(1));
        raiser.addCback(EvA, record, tag(2));
        raiser.addDependent(*consumer);
        delete consumer;
        EXPECT_EQ(listSize(raiser), 1u);
        raiser.cbackOn(EvA);
        raiser.changed();
        EXPECT_EQ(heard, std::vector<std::string>{"2:CbackTestA"});

        CbackProbe survivor("s");
        Object* dying = new Object;
        dying->addCback(EvA, cbackMethod<&CbackProbe::heard>, survivor);
        dying->addDependent(survivor);
        EXPECT_EQ(consumedSize(survivor), 2u);
        delete dying;
        EXPECT_EQ(consumedSize(survivor), 0u);

        // An object that listens to itself.
        CbackProbe* self = new CbackProbe("self");
        self->addCback(EvA, cbackMethod<&CbackProbe::heard>, *self);
        self->cbackOn(EvA);
        EXPECT_EQ(self->log, std::vector<std::string>{"self:CbackTestA"});
        delete self;
    }
    EXPECT_EQ(bytesInUse(), before);

    // removeConsumerCbacks drops only the dependents.
    Object model;
    CbackProbe view;
    model.addDependent(view);
    model.addCback(EvA, cbackMethod<&CbackProbe::heard>, view);
    view.removeConsumerCbacks();
    EXPECT_EQ(consumedSize(view), 1u);
    EXPECT_EQ(listSize(model), 1u);
    model.changed();
    EXPECT_TRUE(view.updates.empty());
    model.removeCbacks(EvA, &view);
    EXPECT_EQ(consumedSize(view), 0u);
    EXPECT_EQ(listSize(model), 0u);
}

TEST_F(CbackTest, ErrorInAListenerUnwindsAndCallDataIsReferenced) {
    Object raiser;
    raiser.addCback(EvA, record, tag(1));
    raiser.addCback(EvA, record, tag(2));
    actions = {nullptr, [](Cback&) { setError(GENERICERR, SEV_ERROR, "a", "b", "c", "d"); }};
    EXPECT_NE(raisedText([&] { raiser.cbackOn(EvA); }), "no error");
    EXPECT_EQ(heard, std::vector<std::string>{"1:CbackTestA"});
    actions.clear();
    heard.clear();
    raiser.cbackOn(EvA);
    EXPECT_EQ(heard, (std::vector<std::string>{"1:CbackTestA", "2:CbackTestA"}));

    // The CallData is referenced during the raise and by each Cback holding it.
    CallData data(7);
    int seen = -1;
    actions = {nullptr, [&](Cback& cb) { seen = cb.callData->refCount(); }};
    raiser.cbackOn(EvA, &data);
    EXPECT_GT(seen, 0);
    EXPECT_EQ(data.refCount(), 0);

    {
        Cback holder(record, &raiser, EvA, 0, &data);
        Cback copy(holder);
        EXPECT_EQ(data.refCount(), 2);
    }
    EXPECT_EQ(data.refCount(), 0);
}

// CallData

TEST(CallDataTest, WrongKindReports) {
    EXPECT_EQ(CallData((const char*)0).kind(), unsigned(CallData::NONE));
    EXPECT_EQ(CallData("abc").asString(), String("abc"));

    testing::internal::CaptureStderr();
    CallData d(2.0);
    d.asInt();
    EXPECT_EQ(d.asObject(), nil);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Bad arg, expected int: was double\nBad arg, expected Object: was double\n");
}

TEST(CallDataTest, ObjectsOwnedCopiedAndShared) {
    unsigned long before = bytesInUse();
    Integer kept(5);
    {
        Integer* owned = new Integer(4);
        CallData data(owned, true);
        EXPECT_EQ(data.asObject(), owned);
        CallData copy(data);
        EXPECT_NE(copy.asObject(), owned);  // deep
        EXPECT_TRUE(copy.isEqual(data));
        CallData copied(&kept, false), shallow(kept);
        EXPECT_NE(copied.asObject(), &kept);
        EXPECT_NE(shallow.asObject(), &kept);
        CallData notOwn(&kept, true);
        notOwn.setNotOwn();
        EXPECT_EQ(notOwn.kind(), unsigned(CallData::OBJECT_NOT_OWN));
        EXPECT_EQ(CallData(notOwn).asObject(), &kept);
        EXPECT_EQ(CallData(nil, false).asObject(), nil);
    }
    EXPECT_EQ(bytesInUse(), before);
    EXPECT_TRUE(validObject(&kept));
    EXPECT_EQ(CallData(*nil).asObject(), nil);
    EXPECT_EQ(raisedText([] {
                  CallData bad(reinterpret_cast<Object*>(16), true);
              }).find("[ASSERTFLD] Assertion failed \"validObject(val)\""),
              0u);
}

TEST(CallDataTest, Equality) {
    String s("x");
    CallData notOwnS(&s, true);
    notOwnS.setNotOwn();
    struct Row {
        const char* name;
        CallData a, b;
        bool equal;
    };
    Row rows[] = {
        {"same int", CallData(3), CallData(3), true},
        {"other int", CallData(3), CallData(4), false},
        {"int and long", CallData(3), CallData(3L), false},
        {"nones", CallData(), CallData(), true},
        {"owned and not owned", CallData("x"), notOwnS, true},
        {"other strings", CallData("x"), CallData("y"), false},
    };
    for (Row& r : rows) {
        SCOPED_TRACE(r.name);
        EXPECT_EQ(r.a.isEqual(r.b), r.equal);
        EXPECT_EQ(r.b.isEqual(r.a), r.equal);
    }
    EXPECT_FALSE(CallData(1).isEqual(Integer(1)));
}

// Every kind goes through both stream forms; an object not owned comes back owned.
TEST(CallDataTest, StreamForms) {
    Integer shared(3);
    CallData notOwn(&shared, true);
    notOwn.setNotOwn();
    CallData rows[] = {CallData(),           CallData(-7), CallData(123456L), CallData(0.5f), CallData(-2.25),
                       CallData(Integer(8)), notOwn};
    for (const CallData& cd : rows) {
        SCOPED_TRACE(CallData::kindName(cd.kind()));
        std::istringstream in(storedText(cd));
        Object* back = readFrom(in, class_CallData);
        EXPECT_TRUE(back->isEqual(cd)) << in.str();
        unsigned kind = cd.kind() == CallData::OBJECT_NOT_OWN ? unsigned(CallData::OBJECT) : cd.kind();
        EXPECT_EQ(CAST(CallData, back)->kind(), kind);
        delete back;
        std::istringstream bin(storedBinary(cd));
        BinIstream bis(bin);
        back = readFrom(bis, class_CallData);
        EXPECT_TRUE(back->isEqual(cd));
        delete back;
    }

    std::string form = storedText(CallData(42));
    EXPECT_EQ(form.substr(form.find('{')), "{7 42}\n");
    // Kinds without a constructor of their own are read all the same.
    std::string header = form.substr(0, form.find('{'));
    const char* kinds[][2] = {{"3 -5", "CallData(char -5)"},
                              {"8 4000000000", "CallData(Uint 4000000000)"},
                              {"0", "CallData(None)"}};
    for (auto& r : kinds) {
        std::istringstream in(header + "{" + r[0] + "}\n");
        Object* back = readFrom(in, class_CallData);
        std::ostringstream printed;
        back->printOn(printed);
        EXPECT_EQ(printed.str(), r[1]);
        delete back;
    }
    std::istringstream bad(header + "{13 1}\n");
    EXPECT_EQ(raisedText([&] { readFrom(bad, class_CallData); }).find("[RDSYNERR]"), 0u);

    std::istringstream cback(storedText(Cback()));
    EXPECT_EQ(cback.str().substr(cback.str().find('{')), "{}\n");
    EXPECT_EQ(raisedText([&] { readFrom(cback); }),
              "[NOTYET] Sorry, method Cback:reader() has not yet been implemented");
}

// The wake-up queue

class WakeupTest : public CbackTest {
protected:
    WakeupTest() { setTimeMode(false, 1.0, true); }
    ~WakeupTest() override {
        while (runNextWakeup()) {
        }
        setTimeMode(false, 1.0, true);
        sleepHook = 0;
        eventPendingHook = 0;
        eventDispatchHook = 0;
    }
    void listen(CbackProbe& p, std::initializer_list<Symbol> events) {
        for (const Symbol& e : events) p.addCback(e, cbackMethod<&CbackProbe::heard>, p);
    }
};

TEST_F(WakeupTest, EqualTimesLeaveInOrderAndSimulatedTimeJumps) {
    CbackProbe owner("o");
    std::vector<double> times;
    owner.action = [&](Cback&) { times.push_back(currentTime()); };
    Symbol w1("W1"), w2("W2"), w3("W3"), w4("W4");
    listen(owner, {w1, w2, w3, w4});
    owner.wakeAt(5, w1);
    owner.wakeAt(2, w2);
    owner.wakeAt(5, w3);
    owner.wakeAt(2, w4);
    EXPECT_EQ(wakeupCount(), 4u);
    EXPECT_EQ(owner.cbackData->pendingWakeups, 4);
    while (runNextWakeup()) {
    }
    EXPECT_EQ(owner.log, (std::vector<std::string>{"o:W2", "o:W4", "o:W1", "o:W3"}));
    EXPECT_EQ(times, (std::vector<double>{2, 2, 5, 5}));
    EXPECT_EQ(owner.cbackData->pendingWakeups, 0);
    EXPECT_EQ(nextWakeupTime(), -1.0);

    // An entry in the past fires without moving the clock back; wakeIn counts from now.
    owner.wakeAt(1, w2);
    owner.wakeIn(0.5, w1);
    EXPECT_EQ(nextWakeupTime(), 1.0);
    runNextWakeup();
    EXPECT_EQ(currentTime(), 5.0);
    runNextWakeup();
    EXPECT_EQ(currentTime(), 5.5);
}

TEST_F(WakeupTest, CancelRequeueAndOwnerDeath) {
    CbackProbe owner("o");
    EXPECT_TRUE(owner.cancelWakeup(owner.wakeAt(1, EvA)));
    EXPECT_EQ(owner.cbackData->pendingWakeups, 0);
    Cback stranger;
    EXPECT_FALSE(owner.cancelWakeup(stranger));

    Object* dying = new Object;
    dying->wakeAt(1, EvA);
    owner.wakeAt(2, EvB);
    dying->wakeAt(3, EvA);
    delete dying;
    EXPECT_EQ(wakeupCount(), 1u);

    listen(owner, {EvA, EvB});
    Cback& late = owner.wakeAt(9, EvA);
    late.wakeup = 1;
    requeueWakeup(late);
    while (runNextWakeup()) {
    }
    EXPECT_EQ(owner.log, (std::vector<std::string>{"o:CbackTestA", "o:CbackTestB"}));
}

TEST_F(WakeupTest, LoopRunsTheQueueAndStops) {
    CbackProbe owner("o");
    listen(owner, {EvA, EvB});
    int traced = 0;
    setWakeupTrace([](Cback&, void* arg) { ++*static_cast<int*>(arg); }, &traced);
    for (int i = 1; i <= 3; ++i) owner.wakeAt(i, EvA);
    EXPECT_EQ(runWakeupLoop(false, 10, 42), 42);
    EXPECT_EQ(owner.log.size(), 3u);
    EXPECT_EQ(traced, 3);
    setWakeupTrace(0, 0);

    owner.log.clear();
    owner.action = [](Cback& cb) {
        if (cb.event.isEqual(EvB)) stopWakeupLoop(7);
    };
    owner.wakeAt(4, EvA);
    owner.wakeAt(5, EvB);
    owner.wakeAt(6, EvA);
    EXPECT_EQ(runWakeupLoop(true, 10, 0), 7);
    EXPECT_EQ(owner.log, (std::vector<std::string>{"o:CbackTestA", "o:CbackTestB"}));
    owner.action = nullptr;
    EXPECT_EQ(runWakeupLoop(false, 10, 1), 1);  // a stopped loop doesn't stop the next one
    EXPECT_EQ(wakeupCount(), 0u);
}

std::vector<int> sleeps;
int pendingEvents = 0;
int dispatched = 0;

TEST_F(WakeupTest, RealTimeWaitsThroughTheHooks) {
    sleeps.clear();
    dispatched = 0;
    sleepHook = [](int ms) {
        sleeps.push_back(ms);
        std::this_thread::sleep_for(std::chrono::milliseconds(ms));
    };
    pendingEvents = 2;
    eventPendingHook = [] { return pendingEvents > 0 ? pendingEvents-- : 0; };
    eventDispatchHook = [] { ++dispatched; };

    setTimeMode(true, 1.0, true);
    CbackProbe owner("o");
    listen(owner, {EvA});
    owner.wakeIn(0.04, EvA);
    runWakeupLoop(false, 15, 0);
    EXPECT_EQ(owner.log.size(), 1u);
    EXPECT_GE(currentTime(), 0.04);
    EXPECT_EQ(dispatched, 2);
    ASSERT_GE(sleeps.size(), 2u);
    for (size_t i = 1; i < sleeps.size(); ++i) EXPECT_LE(sleeps[i], 15);

    // A scale of 2 halves the pace of time; a scale at or below 0 is 1.
    setTimeMode(true, 2.0, true);
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    double t = currentTime();
    EXPECT_GE(t, 0.029);
    EXPECT_LT(t, 0.06);
    setTimeMode(false, -3, false);
    EXPECT_EQ(timeScaleValue(), 1.0);
    EXPECT_FALSE(timeIsReal());
    EXPECT_EQ(currentTime(), t);  // simulated time stands still
}

}  // namespace
