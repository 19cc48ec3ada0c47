#include "Simulator/SimDiagnostics.h"

#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

void SimLog::log(std::string_view line) {
    lines_.emplace_back(line);
    mac_.record("system log", line);
}

void SimLog::platformObjection(std::string_view description) {
    objections_.emplace_back(description);
    mac_.record("system", std::string("objects: ") + std::string(description));
}

void SimAssertionHandler::handleFailureInMethod(std::string_view method, std::string_view object, std::string_view fileName,
                                                long lineNumber, std::string_view description) {
    failures_.push_back({std::string(method), std::string(object), std::string(fileName), lineNumber, std::string(description)});
    mac_.record("system", "assertion failure in -[" + std::string(object) + " " + std::string(method) + "], " +
                              std::string(fileName) + ":" + std::to_string(lineNumber) + ": " + std::string(description));
    if (raises_) throw AssertionFailure(std::string(method), std::string(fileName), lineNumber, std::string(description));
}

}  // namespace vantro::sim
