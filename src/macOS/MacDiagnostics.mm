// Log and AssertionHandler on the real Mac.
//
// Implements: the system log through NSLog (safe on any thread), the line as
// given with nothing added; the platform's objections to misuse, also through
// NSLog, since they arise in teardown where nothing may raise; the current
// thread's NSAssertionHandler with the method's selector, the object (the
// class of that name, for a class operation), the file, the line and the
// description. The default handler raises NSInternalInconsistencyException,
// which unwinds to the framework's caller.
// Known gaps: none.

#import <Foundation/Foundation.h>

#include "macOS/MacAreas.h"
#include "macOS/MacFoundation.h"

namespace vantro::mac {

namespace {

class MacLog final : public Log {
public:
    void log(std::string_view line) override { NSLog(@"%@", toNSString(line)); }
    void platformObjection(std::string_view description) override { NSLog(@"%@", toNSString(description)); }
};

class MacAssertionHandler final : public AssertionHandler {
public:
    void handleFailureInMethod(std::string_view method, std::string_view object, std::string_view fileName,
                               long lineNumber, std::string_view description) override {
        id receiver = NSClassFromString(toNSString(object));
        [NSAssertionHandler.currentHandler handleFailureInMethod:NSSelectorFromString(toNSString(method))
                                                          object:receiver
                                                            file:toNSString(fileName)
                                                      lineNumber:lineNumber
                                                     description:@"%@", toNSString(description)];
    }
};

}  // namespace

std::unique_ptr<Log> makeLog() { return std::make_unique<MacLog>(); }
std::unique_ptr<AssertionHandler> makeAssertionHandler() { return std::make_unique<MacAssertionHandler>(); }

}  // namespace vantro::mac
