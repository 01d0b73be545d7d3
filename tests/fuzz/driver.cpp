// The plain fuzz driver of builds without libFuzzer: inputs from the corpus
// files given, damaged by a seeded generator, run through the harness entry
// for a number of cases or seconds. Takes the flags -runs=N,
// -max_total_time=S, -seed=N and -artifact_prefix=P, and ignores the other
// flags of libFuzzer. A fault writes the case that caused it to P crash-input.
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "fuzzsupport.h"

namespace {

std::string current;  // the case being run
std::string crashFile = "crash-input";

void saveCurrent(int signal) {
    int fd = open(crashFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (fd >= 0) {
        ssize_t written = write(fd, current.data(), current.size());
        (void)written;
        close(fd);
    }
    ::signal(signal, SIG_DFL);
    raise(signal);
}

}  // namespace

int main(int argc, char** argv) {
    long runs = -1, seconds = 0;
    unsigned seed = 1;
    std::vector<std::string> inputs;
    for (int i = 1; i < argc; ++i) {
        if (strncmp(argv[i], "-artifact_prefix=", 17) == 0) crashFile = std::string(argv[i] + 17) + "crash-input";
        if (sscanf(argv[i], "-runs=%ld", &runs) == 1 || sscanf(argv[i], "-max_total_time=%ld", &seconds) == 1 ||
            sscanf(argv[i], "-seed=%u", &seed) == 1 || argv[i][0] == '-')
            continue;
        if (std::filesystem::is_directory(argv[i])) {
            for (const auto& entry : std::filesystem::directory_iterator(argv[i]))
                if (entry.is_regular_file()) inputs.push_back(readFile(entry.path()));
        } else {
            inputs.push_back(readFile(argv[i]));
        }
    }
    if (inputs.empty()) inputs.push_back("");
    for (int s : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL}) signal(s, saveCurrent);
    // Without a limit, each input runs once as it is: a replay.
    bool replay = runs < 0 && seconds == 0;
    std::mt19937 rng(seed);
    auto start = std::chrono::steady_clock::now();
    auto elapsed = [&] { return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(); };
    long n = 0;
    for (; replay ? n < long(inputs.size()) : (runs < 0 || n < runs) && (seconds == 0 || elapsed() < seconds); ++n) {
        current = inputs[n % inputs.size()];
        // One to four damages, now and then on two inputs spliced.
        if (!replay) {
            const std::string& other = inputs[rng() % inputs.size()];
            if (rng() % 8 == 0 && !other.empty()) current += other.substr(rng() % other.size());
            for (unsigned k = 1 + rng() % 4; k > 0; --k) current = mutate(current, rng);
        }
        FUZZ_ENTRY(reinterpret_cast<const uint8_t*>(current.data()), current.size());
    }
    double t = elapsed();
    // The harnesses silence the standard streams.
    fprintf(stderr, "Done %ld runs in %.0f s: %.0f cases/s\n", n, t, t > 0 ? n / t : 0.0);
    return 0;
}
