// SPDX-License-Identifier: MIT
#include "benchmarks/report.h"

#include <algorithm>
#include <cstdio>
#include <fstream>

namespace bench {
namespace {

/// The times of the widest vector level, the fastest peer and the pass; 0 if missing.
struct Verdict {
    double ours = 0, peer = 0, pass = 0;
    std::string peerName = "";

    explicit Verdict(const Times& times) {
        Times others = times;
        for (const omnar::Level level : omnar::allLevels) {
            if (const auto entry = others.extract(omnar::name(level))) ours = entry.mapped();
        }
        if (const auto plain = others.extract(plainPass)) pass = plain.mapped();
        for (const auto& [name, time] : others) {
            if (peer != 0 && peer <= time) continue;
            peer = time;
            peerName = name;
        }
    }
    double ratioToPeer() const { return peer / ours; }
    double ratioToPass() const { return pass / ours; }
};

/// Prints four digits, or a blank cell if the number is 0.
void printCell(double number) {
    number == 0 ? std::printf("%10s", "") : std::printf("%10.*f", number < 10 ? 3 : number < 100 ? 2 : 0, number);
}

/// The name of the processor, from Linux.
std::string processor() {
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("model name")) return line.substr(line.find(':') + 2);
    }
    return "unknown processor";
}

}  // namespace

bool isSlow(const Times& times) {
    const Verdict verdict(times);
    return verdict.ours != 0 &&
           ((verdict.peer != 0 && verdict.ratioToPeer() < 1) || (verdict.pass != 0 && verdict.ratioToPass() < 0.6));
}

void printHeading() {
    std::printf("%s. Nanoseconds of CPU time per pixel, call or point of a contour.\n", processor().c_str());
    std::printf("pass: a plain pass over the bytes that the work reads and writes.\n\n%-58s", "");
    for (const omnar::Level level : omnar::allLevels) {
        if (omnar::available(level)) std::printf("%10s", omnar::name(level));
    }
    std::printf("%10s %-7s%9s%10s%10s\n", "peer", "", plainPass, "x peer", "of pass");
}

void printRow(const std::string& function, const std::string& scene, const Times& times) {
    const Verdict verdict(times);
    std::printf("%-42s %-15s", function.c_str(), scene.c_str());
    for (const omnar::Level level : omnar::allLevels) {
        if (!omnar::available(level)) continue;
        const auto time = times.find(omnar::name(level));
        printCell(time == times.end() ? 0 : time->second);
    }
    printCell(verdict.peer);
    std::printf(" %-6s", verdict.peerName.c_str());
    for (const double number : {verdict.pass, verdict.ratioToPeer(), verdict.ratioToPass()}) printCell(number);
    std::printf("\n");
    std::fflush(stdout);
}

bool writeJson(const std::string& path, const Results& results) {
    std::ofstream file(path);
    file << "{\n\"processor\": \"" << processor() << "\",\n\"level\": \"" << omnar::name(widestLevel())
         << "\",\n\"rows\": {";
    const char* rowComma = "\n";
    for (const auto& [row, times] : results) {
        file << rowComma << '"' << row << "\": {";
        rowComma = ",\n";
        const char* comma = "";
        for (const auto& [contender, time] : times) {
            char number[32];
            std::snprintf(number, sizeof number, "%.4g", time);
            file << comma << '"' << contender << "\": " << number;
            comma = ", ";
        }
        file << '}';
    }
    file << "\n}\n}\n";
    file.close();
    if (!file) std::fprintf(stderr, "cannot write %s\n", path.c_str());
    return bool(file);
}

}  // namespace bench
