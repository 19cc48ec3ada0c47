// Controls on the real Mac.
//
// Implements: Button over NSButton (setTitle:, title, setEnabled:, isEnabled,
// and an action that becomes the button's target and action, sent with the
// wrapper as sender); TableView over a view-based NSTableView
// (makeViewWithIdentifier:owner:, answering a view's core twin when it has
// one); ArrayController over NSArrayController. Main thread.
// Known gaps: the owner the core passes to makeViewWithIdentifier is not
// used, the wrapper's own owner is (the core cannot name an Objective-C
// object); a view without a core twin is wrapped afresh on every call, so
// two calls that give the same NSView give two wrappers.

#import <AppKit/AppKit.h>

#include <functional>
#include <string>

#include "macOS/MacControls.h"
#include "macOS/MacFoundation.h"

// The target of a button whose action the core set. It holds the wrapper
// weakly: the wrapper owns it.
@interface VantroButtonAction : NSObject
- (instancetype)initWithButton:(std::weak_ptr<vantro::Button>)button
                        action:(std::function<void(vantro::Button&)>)action;
- (void)send:(id)sender;
@end

@implementation VantroButtonAction {
    std::weak_ptr<vantro::Button> _button;
    std::function<void(vantro::Button&)> _action;
}

- (instancetype)initWithButton:(std::weak_ptr<vantro::Button>)button
                        action:(std::function<void(vantro::Button&)>)action {
    if ((self = [super init])) {
        _button = std::move(button);
        _action = std::move(action);
    }
    return self;
}

- (void)send:(id)sender {
    (void)sender;
    // Copies: the action may set another action, which releases this object,
    // or let go of the wrapper.
    auto button = _button.lock();
    auto action = _action;
    if (button && action) action(*button);
}

@end

namespace vantro::mac {

namespace {

class MacButton final : public Button, public std::enable_shared_from_this<MacButton> {
public:
    explicit MacButton(NSButton* button) : button_(button) {}

    ~MacButton() override {
        // NSControl does not retain its target: a button that outlives its
        // wrapper must not keep sending to the action object released here.
        NSButton* button = button_;
        if (action_ && [button target] == action_) {
            [button setTarget:nil];
            [button setAction:nullptr];
        }
    }

    void setTitle(std::string title) override { [button() setTitle:toNSString(title)]; }
    std::string title() const override { return toString([button() title]); }
    void setEnabled(bool enabled) override { [button() setEnabled:enabled]; }
    bool isEnabled() const override { return [button() isEnabled]; }

    void setAction(std::function<void(Button& sender)> action) override {
        action_ = [[VantroButtonAction alloc] initWithButton:weak_from_this() action:std::move(action)];
        NSButton* button = button_;
        [button setTarget:action_];
        [button setAction:@selector(send:)];
    }

private:
    NSButton* button() const { return button_; }

    __weak NSButton* button_;
    VantroButtonAction* action_ = nil;
};

// A view the table made that has no core twin: the core only hands it back.
class MacView final : public View {
public:
    explicit MacView(NSView* view) : view_(view) {}
    NSView* view() const { return view_; }

private:
    NSView* view_;
};

class MacTableView final : public TableView {
public:
    MacTableView(NSTableView* table, id _Nullable owner) : table_(table), owner_(owner) {}

    std::shared_ptr<View> makeViewWithIdentifier(std::string_view identifier, const void* owner) override {
        (void)owner;
        NSTableView* table = table_;
        NSView* view = [table makeViewWithIdentifier:toNSString(identifier) owner:owner_];
        if (!view) return nullptr;
        if ([view conformsToProtocol:@protocol(VantroCoreViewTwin)]) return [(id<VantroCoreViewTwin>)view vantroCoreView];
        return std::make_shared<MacView>(view);
    }

private:
    __weak NSTableView* table_;
    __weak id owner_;
};

class MacArrayController final : public ArrayController {
public:
    explicit MacArrayController(NSArrayController* controller) : controller_(controller) {}
    NSArrayController* controller() const { return controller_; }

private:
    __weak NSArrayController* controller_;
};

}  // namespace

std::shared_ptr<Button> makeButton(NSButton* button) { return std::make_shared<MacButton>(button); }

std::shared_ptr<TableView> makeTableView(NSTableView* table, id _Nullable owner) {
    return std::make_shared<MacTableView>(table, owner);
}

std::shared_ptr<ArrayController> makeArrayController(NSArrayController* controller) {
    return std::make_shared<MacArrayController>(controller);
}

}  // namespace vantro::mac
