#pragma once

#include <string_view>

namespace vantro {

// The system log (NSLog). Any thread.
class Log {
public:
    Log() = default;
    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;
    virtual ~Log() = default;

    virtual void log(std::string_view line) = 0;
    // A misuse that the platform would raise for (removing an observer that
    // was never registered). Raising is not possible where it happens (in
    // teardown), so the platform records the complaint instead.
    virtual void platformObjection(std::string_view description) = 0;
};

// The current assertion handler (NSAssertionHandler currentHandler). The
// platform's default handler raises, so the call does not return; a host may
// install one that returns, and the caller then goes on.
class AssertionHandler {
public:
    AssertionHandler() = default;
    AssertionHandler(const AssertionHandler&) = delete;
    AssertionHandler& operator=(const AssertionHandler&) = delete;
    virtual ~AssertionHandler() = default;

    virtual void handleFailureInMethod(std::string_view method, std::string_view object, std::string_view fileName,
                                       long lineNumber, std::string_view description) = 0;
};

}  // namespace vantro
