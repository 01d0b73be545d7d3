// Tests of the argument store, the environment helpers, start and stop, and the signal handlers.
#include "quill/startup.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "quill/cback.h"
#include "quill/qclass.h"
#include "quill/quillerr.h"
#include "quill/quillsig.h"
#include "quill/quillstr.h"
#include "testutil.h"

namespace {

// Owns the words of an argument vector and puts them into the store; the
// store the test environment set is given back afterwards.
class ArgStore {
public:
    explicit ArgStore(std::vector<std::string> words) : words_(std::move(words)) {
        savedArgc_ = Argc;
        savedArgv_ = Argv;
        for (std::string& w : words_) pointers_.push_back(&w[0]);
        pointers_.push_back(0);
        setArgs(static_cast<int>(words_.size()), pointers_.data());
    }
    ~ArgStore() { setArgs(savedArgc_, savedArgv_); }

    std::vector<std::string> remaining() const {
        std::vector<std::string> r;
        for (int i = 0; i < Argc; i++) r.push_back(Argv[i]);
        return r;
    }

private:
    std::vector<std::string> words_;
    std::vector<char*> pointers_;
    int savedArgc_;
    char** savedArgv_;
};

// Sets or, with null, unsets a variable for the life of the object.
class EnvVar {
public:
    EnvVar(const char* name, const char* value) : name_(name) {
        const char* old = std::getenv(name);
        hadOld_ = old != 0;
        if (old) old_ = old;
        set(value);
    }
    ~EnvVar() { set(hadOld_ ? old_.c_str() : 0); }

private:
    void set(const char* value) {
        if (value)
            setenv(name_.c_str(), value, 1);
        else
            unsetenv(name_.c_str());
    }
    std::string name_;
    std::string old_;
    bool hadOld_;
};

std::string env(const char* name) {
    const char* v = std::getenv(name);
    return v ? v : "<unset>";
}

typedef std::vector<std::string> Words;

TEST(ArgStoreTest, findOptionAndFindFlagConsumeWhatTheyFind) {
    struct Row {
        const char* label;
        Words argv;
        const char* name;  // null: a null name
        bool wantsValue;
        bool found;
        const char* value;
        Words remaining;
    };
    const Row rows[] = {
        {"absent option", {"p", "-a", "x"}, "-JV_PATH", true, false, "", {"p", "-a", "x"}},
        {"in the middle", {"p", "x", "-JV_PATH", "/o", "y"}, "-JV_PATH", true, true, "/o", {"p", "x", "y"}},
        {"option as last word", {"p", "x", "-JV_PATH"}, "-JV_PATH", true, true, "", {"p", "x"}},
        {"value with a minus", {"p", "-CC_PATH", "-text", "f"}, "-CC_PATH", true, true, "-text", {"p", "f"}},
        {"value is the name", {"p", "-env", "-env", "A=1"}, "-env", true, true, "-env", {"p", "A=1"}},
        {"first of two flags", {"p", "-text", "a", "-text"}, "-text", false, true, "", {"p", "a", "-text"}},
        {"match is case-sensitive", {"p", "-Text"}, "-text", false, false, "", {"p", "-Text"}},
        {"program path is never an option", {"-text", "a"}, "-text", false, false, "", {"-text", "a"}},
        {"null name finds nothing", {"p", "-text"}, 0, false, false, "", {"p", "-text"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        ArgStore store(row.argv);
        String value("unchanged");
        bool found = row.wantsValue ? findOption(row.name, value) : findFlag(row.name);
        EXPECT_EQ(found, row.found);
        const char* expected = !row.found ? "unchanged" : row.wantsValue ? row.value : "unchanged";
        EXPECT_STREQ(value.asCharPointer(), expected);
        EXPECT_EQ(store.remaining(), row.remaining);
        EXPECT_EQ(getArgc(), static_cast<int>(row.remaining.size()));
    }
}

TEST(ArgStoreTest, getArgAssertsBelowArgc) {
    ArgStore store({"p", "a"});
    EXPECT_STREQ(getArg(1), "a");
    int code = -1;
    std::string text = raisedText([] { getArg(2); }, &code);
    EXPECT_EQ(code, ASSERTFLD);
    EXPECT_NE(text.find("\"args < Argc\""), std::string::npos) << text;
    EXPECT_NE(text.find("quill/startup.cpp"), std::string::npos) << text;
}

TEST(EnvironmentTest, expandEnvironmentReplacesKnownNames) {
    EnvVar a("TARN_T_A", "alpha");
    EnvVar empty("TARN_T_EMPTY", "");
    EnvVar unset("TARN_T_UNSET", 0);
    EnvVar longValue("TARN_T_LONG", std::string(1500, 'v').c_str());
    struct Row {
        std::string text;
        std::string expanded;
    };
    const Row rows[] = {
        {"plain", "plain"},
        {"%TARN_T_A%", "alpha"},
        {"x%TARN_T_A%y%TARN_T_A%", "xalphayalpha"},
        {"%TARN_T_EMPTY%x", "x"},
        {"%TARN_T_UNSET%", "%TARN_T_UNSET%"},
        {"50% and %TARN_T_A%", "50% and alpha"},
        {"%%", "%%"},
        {"open %TARN_T_A", "open %TARN_T_A"},
        {std::string(2000, 'a'), std::string(1023, 'a')},
        {"ab%TARN_T_LONG%", "ab" + std::string(1021, 'v')},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text.substr(0, 40));
        EXPECT_EQ(std::string(expandEnvironment(row.text.c_str()).asCharPointer()), row.expanded);
    }
}

TEST(EnvironmentTest, envOptionsAreAppliedInOrderAndConsumed) {
    EnvVar order("TARN_T_ORDER", 0);
    EnvVar next("TARN_T_NEXT", 0);
    EnvVar keep("TARN_T_KEEP", "kept");
    ArgStore store({"p", "-env", "TARN_T_ORDER=1", "pos", "-env", "TARN_T_ORDER=%TARN_T_ORDER%2", "-env",
                    "TARN_T_KEEP", "-env", "TARN_T_NEXT=%TARN_T_ORDER%3"});
    consumeEnvOptions();
    EXPECT_EQ(env("TARN_T_ORDER"), "12");
    EXPECT_EQ(env("TARN_T_NEXT"), "123");
    // A value without "=" puts nothing, and above all removes nothing.
    EXPECT_EQ(env("TARN_T_KEEP"), "kept");
    EXPECT_EQ(store.remaining(), (Words{"p", "pos"}));
}

TEST(EnvironmentTest, headlessPlatformOnlyWithoutDisplayAndChoice) {
    struct Row {
        const char* display;
        const char* wayland;
        const char* platform;
        const char* expected;
    };
    const Row rows[] = {
        {0, 0, 0, "offscreen"},
        {":0", 0, 0, "<unset>"},
        {0, "wayland-0", 0, "<unset>"},
        {0, 0, "xcb", "xcb"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.display ? "DISPLAY " : "") + (row.wayland ? "WAYLAND " : "") +
                     (row.platform ? row.platform : ""));
        EnvVar display("DISPLAY", row.display);
        EnvVar wayland("WAYLAND_DISPLAY", row.wayland);
        EnvVar platform("QT_QPA_PLATFORM", row.platform);
        chooseHeadlessPlatform();
        EXPECT_EQ(env("QT_QPA_PLATFORM"), row.expected);
    }
}

// A class of its own, so that the stop tests can count its terminator's calls.
class StopProbe : public Object {
    DECLARE_MEMBERS(StopProbe)
};
DEFINE_CLASS(StopProbe, Object, 1, 0)

int terminations = 0;
void countTermination(Class*) {
    terminations++;
    std::cerr << "terminated " << terminations << std::endl;
}

// quillStop ends the process's library for good, so these run in child processes.
TEST(QuillStopDeathTest, secondStopDoesNothingAndAnswersItsArgument) {
    EXPECT_EXIT(
        {
            class_StopProbe.setTerminator(countTermination);
            installSignalHandlers();
            signalsInstalled = true;
            bool ok = quillStop(7) == 7 && quillStop(9) == 9 && terminations == 1 && stopping &&
                      !signalsInstalled && !classesInitialized;
            struct sigaction action;
            sigaction(SIGFPE, 0, &action);
            ok = ok && action.sa_handler == SIG_DFL;
            std::exit(ok ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "^terminated 1\n$");
}

TEST(QuillStopDeathTest, deleteGlobalsFreesTheClassDictionaryAtStop) {
    struct Row {
        bool withFlag;
        int exitCode;  // 2: the dictionary is gone, 3: it is still there
    };
    for (Row row : {Row{true, 2}, Row{false, 3}}) {
        SCOPED_TRACE(row.withFlag ? "-deleteGlobals" : "no flag");
        EXPECT_EXIT(
            {
                classesInitialized = false;  // lets quillStart run again in this child
                ArgStore store(row.withFlag ? Words{"p", "-deleteGlobals", "x"} : Words{"p", "x"});
                if (quillStart(Argc, Argv, 0) != 0) _exit(10);
                if (store.remaining() != Words{"p", "x"}) _exit(11);
                if (deleteGlobalsAtExit != row.withFlag) _exit(12);
                quillStop(0);
                if (deleteGlobalsAtExit) std::exit(13);
                // _exit: the restart above dropped the first dictionary, which
                // a leak checker at exit would report.
                _exit(findClass("Object") == 0 ? 2 : 3);
            },
            ::testing::ExitedWithCode(row.exitCode), "");
    }
}

TEST(QuillStopDeathTest, startAnswersMinusOneWhenClassesAreInitialized) {
    char name[] = "p";
    char* argv[] = {name, 0};
    EXPECT_EXIT(std::exit(classesInitialized && quillStart(1, argv, 0) == -1 ? 0 : 1),
                ::testing::ExitedWithCode(0), "");
}

TEST(QuillStopDeathTest, abortRunsTheStopAndExitsWithItsCode) {
    EXPECT_EXIT(
        {
            class_StopProbe.setTerminator(countTermination);
            quillAbort(3);
        },
        ::testing::ExitedWithCode(3), "terminated 1");
}

int returnsFive() { return 5; }
int throwsInteger() { throw 42; }
int raisesError() { setError(GENERICERR, SEV_ERROR, "MINE", "one ", "two ", "three"); }
int faults() {
    installSignalHandlers();
    std::raise(SIGSEGV);
    return 1;
}

// The library is already started in the test process, so quillStart answers -1
// and tarnEntry goes on to run.
[[noreturn]] void enterInChild(MainFunction run) {
    char name[] = "p";
    char* argv[] = {name, 0};
    std::exit(tarnEntry(1, argv, run));
}

TEST(TarnEntryDeathTest, resultOrFatalReport) {
    struct Row {
        const char* label;
        MainFunction run;
        int exitCode;
        const char* stderrPattern;
    };
    const Row rows[] = {
        {"normal return", returnsFive, 5, "^$"},
        {"foreign exception", throwsInteger, 0, "\nFATAL Unhandled C\\+\\+ exception \n"},
        {"raised error", raisesError, 0, "\nFATAL \\[MINE\\] one two three\n"},
        {"signal", faults, 0, "\nFATAL \\[SYSERR\\] System Signal \\(Segment Violation\\): \n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EXIT(enterInChild(row.run), ::testing::ExitedWithCode(row.exitCode), row.stderrPattern);
    }
}

TEST(SignalTest, eachHandledSignalRaisesSysErrAgainAndAgain) {
    struct Row {
        int sig;
        const char* message;
    };
    const Row rows[] = {
        {SIGABRT, "[SYSERR] System Signal (Program sent an abort()): "},
        {SIGFPE, "[SYSERR] System Signal (Floating Exception): "},
        {SIGTERM, "[SYSERR] System Signal (Terminal Interrupt): "},
        {SIGILL, "[SYSERR] System Signal (Illegal Instruction): "},
        {SIGSEGV, "[SYSERR] System Signal (Segment Violation): "},
    };
    // The C library declares raise as throwing nothing; called through a
    // plain pointer, its caller keeps the way out that the handler takes.
    int (*volatile raiser)(int) = std::raise;
    installSignalHandlers();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.message);
        // The second delivery checks that the handler is still in place and
        // that leaving it by a throw did not leave the signal blocked.
        for (int round = 0; round < 2; round++) {
            int code = -1, severity = 0;
            std::string text = raisedText([&] { raiser(row.sig); }, &code, &severity);
            EXPECT_EQ(text, row.message);
            EXPECT_EQ(code, SYSERR);
            EXPECT_EQ(severity, SEV_FATAL);
        }
    }
    removeSignalHandlers();
    EXPECT_EQ(errorInProgress, 0);
    EXPECT_EQ(signalName(SIGINT), nullptr);  // not handled, so not named
}

// Faults of the program's own code unwind to the nearest catch like any error.
TEST(SignalTest, AFaultInOwnCodeBecomesAnError) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the sanitizer takes faults for itself";
#endif
    installSignalHandlers();
    volatile int* nowhere = nullptr;
    volatile int zero = 0;
    EXPECT_EQ(raisedText([&] { *nowhere = 1; }), "[SYSERR] System Signal (Segment Violation): ");
    EXPECT_EQ(raisedText([&] { zero = 1 / zero; }), "[SYSERR] System Signal (Floating Exception): ");
    removeSignalHandlers();
}

std::string abortHeard;
void hearAbort(Cback& cb) { abortHeard = cb.callData->asCharPointer(); }

TEST(SignalTest, AnUnhandledExceptionIsRaisedThenReported) {
    libraryObject().addCback(AbortErrorCback, hearAbort);
    testing::internal::CaptureStderr();
    unhandledException(5, "tarn", "disk gone");
    std::string report = testing::internal::GetCapturedStderr();
    libraryObject().removeCback(AbortErrorCback, hearAbort);
    EXPECT_EQ(abortHeard, "{ Unhandled exception 5 for process tarn }\n\tdisk gone");
    EXPECT_EQ(report, "\nFATAL { Unhandled exception 5 for process tarn }\n\tdisk gone\n");
}

}  // namespace
