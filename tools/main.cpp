#include <iostream>
#include <string>
#include <vector>

#include "Command.h"

int main(int argc, char** argv) {
    try {
        return vantro::tool::runTool(std::vector<std::string>(argv + 1, argv + argc), std::cout, std::cerr);
    } catch (const std::exception& error) {
        // Only writing the answer itself can fail here.
        std::cerr << "vantro-sim: " << error.what() << "\n";
        return vantro::tool::ExitFailure;
    }
}
