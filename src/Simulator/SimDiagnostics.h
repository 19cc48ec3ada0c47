#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "Platform/Diagnostics.h"

namespace vantro::sim {

class SimulatedMac;

// The system log: every line is kept and put on the timeline.
class SimLog : public Log {
public:
    explicit SimLog(SimulatedMac& mac) : mac_(mac) {}
    void log(std::string_view line) override;
    void platformObjection(std::string_view description) override;

    const std::vector<std::string>& lines() const { return lines_; }
    const std::vector<std::string>& objections() const { return objections_; }

private:
    SimulatedMac& mac_;
    std::vector<std::string> lines_;
    std::vector<std::string> objections_;
};

// What the default assertion handler raises: NSInternalInconsistencyException.
struct AssertionFailure : std::runtime_error {
    AssertionFailure(std::string inMethod, std::string inFile, long atLine, std::string text)
        : std::runtime_error(text), method(std::move(inMethod)), file(std::move(inFile)), line(atLine),
          description(std::move(text)) {}
    std::string method;
    std::string file;
    long line;
    std::string description;
};

// The assertion handler. By default it raises, as the platform's does; a test
// (or a host) can make it return instead. Every failure is kept either way.
class SimAssertionHandler : public AssertionHandler {
public:
    explicit SimAssertionHandler(SimulatedMac& mac) : mac_(mac) {}
    void handleFailureInMethod(std::string_view method, std::string_view object, std::string_view fileName, long lineNumber,
                               std::string_view description) override;

    void setRaises(bool raises) { raises_ = raises; }
    struct Failure {
        std::string method, object, file;
        long line;
        std::string description;
    };
    const std::vector<Failure>& failures() const { return failures_; }

private:
    SimulatedMac& mac_;
    bool raises_ = true;
    std::vector<Failure> failures_;
};

}  // namespace vantro::sim
