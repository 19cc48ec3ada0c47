#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace vantro {

// A view that a shell made (NSView). The core only asks what kind of view it
// is (isKindOfClass:, here a dynamic cast) and hands it back. Main thread.
class View {
public:
    View() = default;
    View(const View&) = delete;
    View& operator=(const View&) = delete;
    virtual ~View() = default;
};

// A view that shows one row of a table in one column (NSTableCellView). The
// table, through its binding, sets the row's object on it each time the view
// is handed out for a row. Main thread.
class TableCellView : public View {};

// A push button (NSButton). Main thread.
class Button : public View {
public:
    virtual void setTitle(std::string title) = 0;
    virtual std::string title() const = 0;
    virtual void setEnabled(bool enabled) = 0;
    virtual bool isEnabled() const = 0;
    // setTarget: and setAction: together: what a click sends, with the button
    // as sender. The layout connects it when it makes the button. The button
    // keeps the action but never its target: an action must hold its target
    // weakly and do nothing once the target is gone. A disabled button sends
    // nothing when clicked.
    virtual void setAction(std::function<void(Button& sender)> action) = 0;
};

// A column of a table (NSTableColumn), known by its identifier.
class TableColumn {
public:
    explicit TableColumn(std::string identifier) : identifier_(std::move(identifier)) {}
    const std::string& identifier() const { return identifier_; }

private:
    std::string identifier_;
};

// An array controller (NSArrayController) that a layout made: its content is
// bound to an array of its owner (the permission list's "privacyCategories"),
// and the views bound to its arranged objects (the list's table) show that
// array's elements. The core only hands it around; the layout keeps it alive.
// Main thread.
class ArrayController {
public:
    ArrayController() = default;
    ArrayController(const ArrayController&) = delete;
    ArrayController& operator=(const ArrayController&) = delete;
    virtual ~ArrayController() = default;
};

// A view-based table (NSTableView). It asks its delegate for a view per row
// and column while it reloads, and its binding sets each row's object on the
// view it got. Main thread.
class TableView : public View {
public:
    // makeViewWithIdentifier:owner: — a view registered in the layout under
    // `identifier`: one the table no longer shows when it has one (the same
    // object, with whatever object value it had), otherwise a new one made
    // from the layout with `owner` as the layout's owner. The owner is not
    // retained. nullptr when the layout registers nothing under `identifier`.
    // The table keeps the view it returns while it shows it.
    virtual std::shared_ptr<View> makeViewWithIdentifier(std::string_view identifier, const void* owner) = 0;
};

// What an NSViewController subclass gets from the platform. The platform
// loads the view from the controller's layout and then calls didLoadView once;
// it calls viewDidAppear when the view is placed on screen in a window and
// viewDidDisappear when it leaves the screen. The lifecycle calls come on the
// main thread, in the order load, then any number of appear/disappear pairs.
class ViewController {
public:
    ViewController() = default;
    ViewController(const ViewController&) = delete;
    ViewController& operator=(const ViewController&) = delete;
    virtual ~ViewController() = default;

    // isViewLoaded.
    bool isViewLoaded() const { return viewLoaded_; }

    // Called by the platform once the layout's view, outlets and bindings
    // exist: marks the view loaded, then sends viewDidLoad. Later calls do
    // nothing, as the view is loaded only once.
    void didLoadView() {
        if (viewLoaded_) return;
        viewLoaded_ = true;
        viewDidLoad();
    }

    virtual void viewDidLoad() {}
    virtual void viewDidAppear() {}
    virtual void viewDidDisappear() {}

private:
    bool viewLoaded_ = false;
};

}  // namespace vantro
