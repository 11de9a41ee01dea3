// xpsim: a headless X-Plane that loads real plugin binaries and runs them through simulated frames.
#include <iostream>
#include <string>
#include <vector>

#include "host/Driver.h"
#include "host/Options.h"

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    xpsim::Options options;
    std::string error;
    switch (xpsim::ParseCommandLine(args, options, error)) {
        case xpsim::CommandLineResult::Help:
            std::cout << xpsim::UsageText();
            return 0;
        case xpsim::CommandLineResult::Error:
            std::cerr << "xpsim: " << error << "\n" << xpsim::ShortUsageText();
            return 2;
        case xpsim::CommandLineResult::Run:
            break;
    }
    return xpsim::RunSimulation(options, std::cerr);
}
